// Small scenes for the command-line program.
#pragma once

#include <string>
#include <vector>

#include "tests/support/writer3ds.h"

/// A material of one colour, in the form that the strict reading takes as well.
Material3ds plainMaterial(const std::string& name, float r, float g, float b);

/// A box of 12 faces with corners low and high, each side a smoothing group with corners of its own.
Mesh3ds box(const std::string& name, const Vertex3D& low, const Vertex3D& high,
            const std::string& material = "");

/// A square in the plane y = depth that faces -y, from low to high in x and z.
Mesh3ds wall(const std::string& name, float depth, float low, float high, const std::string& material = "");

/// A square grid in the plane z = height that faces up.
Mesh3ds floorGrid(const std::string& name, float height, float low, float high, int cells);

/// A scene of one red box from -1 to 1.
Scene3ds boxScene();

/// A camera that looks along +y at x, z = 0 from y = -distance.
Camera3ds frontCamera(const std::string& name, float x, float distance);
