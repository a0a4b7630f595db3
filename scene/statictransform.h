#pragma once

class Object;

/// Multiplies the rasterizer's current matrix by where an object stands without animation: position, -pivot,
/// rotation about z, y and x, pivot.
void applyStaticTransform(const Object& object);
