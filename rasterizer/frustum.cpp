// The view volume of a camera, and what lies in it.

#include "vornik/rasterizer/frustum.h"

#include <GL/gl.h>

#include <cmath>
#include <initializer_list>

#include "core/directions.h"
#include "core/facecorners.h"
#include "rasterizer/constants.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"

struct CameraFrame
{
    Vertex3D view, up, right;
};

// Moves from and at where they lie on each other, so that there is a direction. Straight along z up stays
// shorter than a unit vector and right is zero.
static CameraFrame makeFrame(Vertex3D* from, Vertex3D* at)
{
    const float least = 1e-6f;
    const Vertex3D worldUp = {0.0f, 0.0f, 1.0f};
    CameraFrame frame = {*at - *from, {}, {}};
    if (lengthOf(frame.view) < least)
    {
        *at = {from->x + 1.0f, from->y, from->z};
        *from = {0.0f, 0.0f, 0.0f};
        frame.view = *at - *from;
    }
    frame.view.normalize();

    frame.up = worldUp - scaled(frame.view, worldUp * frame.view);
    if (lengthOf(frame.up) < least)
    {
        frame.up = worldUp - scaled(frame.view, frame.view.z);
        if (lengthOf(frame.up) < least)
            return frame;
    }
    frame.up.normalize();
    frame.view.normalize();
    frame.right = unit(frame.up ^ frame.view);
    return frame;
}

void vrkMakeFrustrum(Camera* camera, Frustrum* frustrum)
{
    if (!camera || !frustrum)
        return;
    const float half = vrkViewport.fov * 0.5f;
    const float sideHalf = vrkViewport.aspect * half;
    const CameraFrame frame = makeFrame(&camera->eye, &camera->target);
    const float tanH = std::tan(vrkRad(sideHalf));
    const float tanV = std::tan(vrkRad(half));

    frustrum->normal[0] = unit(frame.up - scaled(frame.view, tanV));
    frustrum->normal[1] = unit(scaled(-frame.view, tanV) - frame.up);
    frustrum->normal[2] = unit(frame.right - scaled(frame.view, tanH));
    frustrum->normal[3] = unit(scaled(-frame.view, tanH) - frame.right);
    for (int i = 0; i < 4; ++i)
        frustrum->point[i] = camera->eye;
    // The far plane stands off from the world's origin, not from the eye.
    frustrum->normal[4] = unit(frame.view);
    frustrum->point[4] = scaled(frustrum->normal[4], vrkViewport.farClip);
}

bool vrkIsObjectInFrustrum(Frustrum* frustrum, Mesh* mesh)
{
    if (!frustrum || !mesh)
        return true;
    for (int i = 0; i < 4; ++i)
        if ((mesh->position - frustrum->point[i]) * frustrum->normal[i] > mesh->radius)
            return false;
    return true;
}

bool vrkPointInsideObject(Mesh* mesh, Vertex3D* point)
{
    if (!mesh || !point || !mesh->faces || !mesh->calculatedVertices)
        return true;
    for (int i = 0; i < mesh->faceCount; ++i)
    {
        const Facelist& face = mesh->faces[i];
        if (!hasCorners(face, mesh->vertexCount))
            continue;
        const Vertex3D* v = mesh->calculatedVertices;
        const Vertex3D normal = calcNormal(&v[face.a], &v[face.b], &v[face.c]);
        // All three corners lie in the plane, yet each rounds in its own way.
        for (const uint16_t corner : {face.a, face.b, face.c})
            if ((*point - (v[corner] + mesh->position)) * normal > 0.0f)
                return false;
    }
    return true;
}

bool vrkIsVisible(float x, float y, float z)
{
    if (vrkSelectedRasterizer != 0)
        return false;
    float depth = 0.0f;
    glReadPixels(truncated(x), truncated(y), 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    return depth >= z;
}
