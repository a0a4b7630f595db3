#include "rasterizer/d3d/viewmatrix.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/directions.h"

static const float least = 9.999999974752427e-07f;

// The part of an axis that stands upright on the view.
static Vertex3D uprightPart(const Vertex3D& axis, const Vertex3D& view)
{
    return axis - scaled(view, axis * view);
}

void buildViewMatrix(float (&m)[16], Vertex3D* from, Vertex3D* at, const Vertex3D& up)
{
    Vertex3D view = *at - *from;
    if (lengthOf(view) < least)
    {
        *at = {from->x + 1.0f, from->y, from->z};
        *from = {0.0f, 0.0f, 0.0f};
        view = *at - *from;
    }
    // A view without length, or one that is no number, has no direction.
    const float distance = lengthOf(view);
    if (!(distance > 0.0f))
        return;
    view /= distance;

    Vertex3D upright = uprightPart(up, view);
    if (lengthOf(upright) < least)
        upright = uprightPart({0.0f, 1.0f, 0.0f}, view);
    if (lengthOf(upright) < least)
        upright = uprightPart({0.0f, 0.0f, 1.0f}, view);
    if (lengthOf(upright) < least)
        return;
    upright /= lengthOf(upright);
    const Vertex3D right = upright ^ view;

    const float rows[16] = {right.x,          upright.x,          view.x,          0.0f, //
                            right.y,          upright.y,          view.y,          0.0f, //
                            right.z,          upright.z,          view.z,          0.0f, //
                            -(*from * right), -(*from * upright), -(*from * view), 1.0f};
    std::copy(std::begin(rows), std::end(rows), m);
}

bool buildProjectionMatrix(float (&m)[16], float fov, float aspect, float nearClip, float farClip)
{
    const float half = fov * 0.5f;
    const float sine = std::sin(half);
    if (std::fabs(farClip - nearClip) < 0.01f || std::fabs(sine) < 0.01f)
        return false;
    const float depth = farClip / (farClip - nearClip);
    const float height = std::cos(half) / sine;
    std::fill(std::begin(m), std::end(m), 0.0f);
    m[0] = height * aspect;
    m[5] = height;
    m[10] = depth;
    m[11] = 1.0f;
    m[14] = -depth * nearClip;
    return true;
}
