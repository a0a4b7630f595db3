// Fog. The density forms set the fog start to GL_EXP2 and leave the mode alone: what a host sees then is
// whatever mode it, or an earlier linear fog, has set.

#include "vornik/rasterizer/fog.h"

#include <GL/gl.h>

#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

static void setDensity(float density)
{
    glFogf(GL_FOG_START, static_cast<float>(GL_EXP2));
    glFogf(GL_FOG_DENSITY, density);
}

static void setColor(const Color& c)
{
    const GLfloat channels[] = {c.r, c.g, c.b, c.a};
    glFogfv(GL_FOG_COLOR, channels);
}

int vrkSetFog(Color c, float start, float end)
{
    vrkEnable(VRK_FOG);
    if (vrkSelectedRasterizer == 0)
    {
        glFogi(GL_FOG_MODE, GL_LINEAR);
        glFogf(GL_FOG_START, start);
        glFogf(GL_FOG_END, end);
        setColor(c);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setLinearFog(c, start, end);
    return 0;
}

int vrkSetFog(Color c, float density)
{
    vrkEnable(VRK_FOG);
    if (vrkSelectedRasterizer == 0)
    {
        setDensity(density);
        setColor(c);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setDensityFog(c, density);
    return 0;
}

void vrkSetFogDensity(float density)
{
    if (vrkSelectedRasterizer == 0)
        setDensity(density);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::fogDensity, density);
}

void vrkSetFogStart(float value)
{
    if (vrkSelectedRasterizer == 0)
        glFogf(GL_FOG_START, value);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::fogStart, value);
}

void vrkSetFogEnd(float value)
{
    if (vrkSelectedRasterizer == 0)
        glFogf(GL_FOG_END, value);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::fogStart, value); // the start, not the end
}
