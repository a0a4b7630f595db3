// Matrices, view, projection and drawing state: mostly one call each.

#include "vornik/rasterizer/state.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <iterator>

#include "rasterizer/constants.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/object.h"

// The world matrices of Direct3D while it is selected and started, else null.
static D3DMatrixStack* worldMatrices()
{
    D3DRasterizer* d3d = selectedDirect3D();
    return d3d && d3d->matrixStack ? &*d3d->matrixStack : nullptr;
}

void vrkInitMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glLoadIdentity();
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->loadIdentity();
}

void vrkPushMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glPushMatrix();
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->push();
}

void vrkPopMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glPopMatrix();
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->pop();
}

void vrkRotate(float degrees, float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glRotatef(degrees, x, y, z);
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->rotateLocal(vrkRad(degrees), x, y, z);
}

void vrkTranslate(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glTranslatef(x, y, z);
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->translateLocal(x, y, z);
}

void vrkScale(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glScalef(x, y, z);
    else if (D3DMatrixStack* stack = worldMatrices())
        stack->scaleLocal(x, y, z);
}

void vrkMultMatrix(float (*m)[4][4])
{
    if (!m)
        return;
    if (vrkSelectedRasterizer == 0)
    {
        // The block is a grid of rows, of which each gives its first float.
        float gathered[16];
        for (int i = 0; i < 16; ++i)
            gathered[i] = m[i / 4][i % 4][0];
        glMultMatrixf(gathered);
    }
    else if (D3DMatrixStack* stack = worldMatrices())
    {
        float first[16];
        for (int i = 0; i < 16; ++i)
            first[i] = (*m)[i / 4][i % 4];
        stack->multiplyLocal(first);
    }
}

void vrkGetModelViewMatrix(float* m)
{
    if (!m)
        return;
    if (vrkSelectedRasterizer == 0)
        glGetFloatv(GL_MODELVIEW_MATRIX, m);
    else if (const D3DMatrixStack* stack = worldMatrices())
        std::copy(std::begin(stack->top()), std::end(stack->top()), m);
}

void vrkGetModelViewMatrix(double* m)
{
    if (!m)
        return;
    if (vrkSelectedRasterizer == 0)
        glGetDoublev(GL_MODELVIEW_MATRIX, m);
    else if (const D3DMatrixStack* stack = worldMatrices())
        std::copy(std::begin(stack->top()), std::end(stack->top()), m);
}

void vrkGetProjectionMatrix(float* m)
{
    if (vrkSelectedRasterizer == 0 && m)
        glGetFloatv(GL_PROJECTION_MATRIX, m);
}

void vrkGetProjectionMatrix(double* m)
{
    if (vrkSelectedRasterizer == 0 && m)
        glGetDoublev(GL_PROJECTION_MATRIX, m);
}

void vrkGetViewportMatrix(int* v)
{
    if (vrkSelectedRasterizer == 0 && v)
        glGetIntegerv(GL_VIEWPORT, v);
}

void vrkSetMatrixType(int constant)
{
    GLenum mode;
    if (vrkSelectedRasterizer == 0 && translate(constant, &mode))
        glMatrixMode(mode);
}

void vrkPushAttrib(int constant)
{
    GLenum mask;
    if (vrkSelectedRasterizer == 0 && translate(constant, &mask))
        glPushAttrib(mask);
}

void vrkPopAttrib()
{
    if (vrkSelectedRasterizer == 0)
        glPopAttrib();
}

int vrkLookWithCamera(Camera* camera)
{
    if (!camera)
        return vrkPutToErrorLog("Camera used in functioncall is NULL!", 24);
    if (vrkSelectedRasterizer == 0)
    {
        glRotatef(camera->roll, 0.0f, 0.0f, 1.0f);
        const Vertex3D& eye = camera->eye;
        const Vertex3D& target = camera->target;
        gluLookAt(eye.x, eye.y, eye.z, target.x, target.y, target.z, 0.0, 0.0, 1.0);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->lookAt(&camera->eye, &camera->target, {0.0f, 0.0f, 1.0f});
    return 0;
}

void vrkLookAt(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ, float upX,
               float upY, float upZ)
{
    if (vrkSelectedRasterizer == 0)
        gluLookAt(eyeX, eyeY, eyeZ, targetX, targetY, targetZ, upX, upY, upZ);
    else if (D3DRasterizer* d3d = selectedDirect3D())
    {
        Vertex3D eye = {eyeX, eyeY, eyeZ};
        Vertex3D target = {targetX, targetY, targetZ};
        d3d->lookAt(&eye, &target, {upX, upY, upZ});
    }
}

static void rebuildProjection()
{
    if (vrkSelectedRasterizer == 0)
    {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(vrkViewport.fov, vrkViewport.aspect, vrkViewport.nearClip, vrkViewport.farClip);
        glMatrixMode(GL_MODELVIEW);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setProjection(vrkViewport.fov, vrkViewport.aspect, vrkViewport.nearClip, vrkViewport.farClip);
}

void vrkSetFOV(float degrees)
{
    vrkViewport.fov = degrees;
    rebuildProjection();
}

void vrkSetFOV(Camera* camera)
{
    if (camera)
        vrkSetFOV(camera->fov);
}

float vrkGetFOV()
{
    return vrkViewport.fov;
}

Viewport* vrkGetViewport()
{
    return &vrkViewport;
}

void vrkSetViewport(const Viewport* viewport)
{
    if (!viewport)
        return;
    vrkViewport = *viewport;
    rebuildProjection();
}

int vrkEnable(int constant)
{
    GLenum capability;
    if (vrkSelectedRasterizer == 0 && translate(constant, &capability))
        glEnable(capability);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->enable(constant);
    return 0;
}

int vrkDisable(int constant)
{
    GLenum capability;
    if (vrkSelectedRasterizer == 0 && translate(constant, &capability))
        glDisable(capability);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->disable(constant);
    return 0;
}

bool vrkIsEnabled(int constant)
{
    GLenum capability;
    if (!translate(constant, &capability))
        return false;
    if (vrkSelectedRasterizer == 0)
        return glIsEnabled(capability) > 0;
    if (D3DRasterizer* d3d = selectedDirect3D())
        return d3d->isEnabled(static_cast<int>(capability));
    return false;
}

int vrkShadeModel(int constant)
{
    GLenum model;
    if (!translate(constant, &model))
        return 0;
    if (vrkSelectedRasterizer == 0)
        glShadeModel(model);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::shadeMode, model);
    return 0;
}

void vrkBlendFunc(int source, int destination)
{
    GLenum sourceFactor;
    GLenum destinationFactor;
    if (!translate(source, &sourceFactor) || !translate(destination, &destinationFactor))
        return;
    if (vrkSelectedRasterizer == 0)
        glBlendFunc(sourceFactor, destinationFactor);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setBlend(sourceFactor, destinationFactor);
}

void vrkDepthFunc(int constant)
{
    GLenum function;
    if (!translate(constant, &function))
        return;
    if (vrkSelectedRasterizer == 0)
        glDepthFunc(function);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::zFunc, function);
}

void vrkDepthMask(int constant)
{
    GLenum write;
    if (!translate(constant, &write))
        return;
    if (vrkSelectedRasterizer == 0)
        glDepthMask(static_cast<GLboolean>(write)); // the low byte
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setRenderState(d3d::zWriteEnable, write);
}

void vrkAlphaFunc(int constant, float reference)
{
    GLenum function;
    if (!translate(constant, &function))
        return;
    if (vrkSelectedRasterizer == 0)
        glAlphaFunc(function, reference);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setAlphaFunction(function, reference);
}

void vrkSetClearColor(Color* c)
{
    if (!c)
        return;
    if (vrkSelectedRasterizer == 0)
        glClearColor(c->r, c->g, c->b, c->a);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->setClearColor(c);
}
