// Matrices, view, projection and drawing state: for OpenGL mostly one call each.

#include "vornik/rasterizer/state.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "rasterizer/constants.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/object.h"

void vrkInitMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glLoadIdentity();
}

void vrkPushMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glPushMatrix();
}

void vrkPopMatrix()
{
    if (vrkSelectedRasterizer == 0)
        glPopMatrix();
}

void vrkRotate(float degrees, float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glRotatef(degrees, x, y, z);
}

void vrkTranslate(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glTranslatef(x, y, z);
}

void vrkScale(float x, float y, float z)
{
    if (vrkSelectedRasterizer == 0)
        glScalef(x, y, z);
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
}

void vrkGetModelViewMatrix(float* m)
{
    if (vrkSelectedRasterizer == 0 && m)
        glGetFloatv(GL_MODELVIEW_MATRIX, m);
}

void vrkGetModelViewMatrix(double* m)
{
    if (vrkSelectedRasterizer == 0 && m)
        glGetDoublev(GL_MODELVIEW_MATRIX, m);
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
    return 0;
}

void vrkLookAt(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ, float upX,
               float upY, float upZ)
{
    if (vrkSelectedRasterizer == 0)
        gluLookAt(eyeX, eyeY, eyeZ, targetX, targetY, targetZ, upX, upY, upZ);
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
    return 0;
}

int vrkDisable(int constant)
{
    GLenum capability;
    if (vrkSelectedRasterizer == 0 && translate(constant, &capability))
        glDisable(capability);
    return 0;
}

bool vrkIsEnabled(int constant)
{
    GLenum capability;
    if (vrkSelectedRasterizer == 0 && translate(constant, &capability))
        return glIsEnabled(capability) > 0;
    return false;
}

int vrkShadeModel(int constant)
{
    GLenum model;
    if (vrkSelectedRasterizer == 0 && translate(constant, &model))
        glShadeModel(model);
    return 0;
}

void vrkBlendFunc(int source, int destination)
{
    GLenum sourceFactor;
    GLenum destinationFactor;
    if (vrkSelectedRasterizer == 0 && translate(source, &sourceFactor) &&
        translate(destination, &destinationFactor))
        glBlendFunc(sourceFactor, destinationFactor);
}

void vrkDepthFunc(int constant)
{
    GLenum function;
    if (vrkSelectedRasterizer == 0 && translate(constant, &function))
        glDepthFunc(function);
}

void vrkDepthMask(int constant)
{
    GLenum write;
    if (vrkSelectedRasterizer == 0 && translate(constant, &write))
        glDepthMask(static_cast<GLboolean>(write)); // the low byte
}

void vrkAlphaFunc(int constant, float reference)
{
    GLenum function;
    if (vrkSelectedRasterizer == 0 && translate(constant, &function))
        glAlphaFunc(function, reference);
}

void vrkSetClearColor(Color* c)
{
    if (vrkSelectedRasterizer == 0 && c)
        glClearColor(c->r, c->g, c->b, c->a);
}
