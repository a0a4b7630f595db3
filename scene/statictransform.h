#pragma once

class Object;

/// Multiplies the rasterizer's current matrix by an object's own rotation: about z, y and x.
void applyRotationOf(const Object& object);

/// Multiplies it by where an object stands without animation: position, -pivot, rotation, pivot.
void applyStaticTransform(const Object& object);
