// View and projection of rasterizer 1. Its space is left-handed while the engine's world is right-handed, so
// the picture is OpenGL's seen in a mirror.
#pragma once

#include "vornik/core/vectors.h"

/// Fills the view matrix of an eye. Where from and at coincide, both are moved so that there is a direction.
/// An up along the view is replaced by the y and then by the z axis.
/// @param m  [out]; as it was if there is no direction at all
void buildViewMatrix(float (&m)[16], Vertex3D* from, Vertex3D* at, const Vertex3D& up);

/// Fills a projection. @param fov  vertical, radians. @param aspect  height by width
/// @return false, with m as it was, if the clips or the edges of the view lie on each other
bool buildProjectionMatrix(float (&m)[16], float fov, float aspect, float nearClip, float farClip);
