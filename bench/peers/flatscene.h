// A scene as nothing but arrays: what every contestant for frames draws, whatever it makes of it first.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vornik/core/vectors.h"

class OGroup;

struct FlatImage
{
    int32_t width = 0, height = 0;
    int32_t mipmap = 0;
    std::vector<uint8_t> rgba = {}; ///< [width * height * 4], as OpenGL takes it
};

struct FlatRange
{
    int32_t first, last; ///< faces, both inclusive
    int32_t image;
    int32_t twoSided;
};

struct FlatMesh
{
    Vertex3D position = {0, 0, 0}; ///< meshes are moved, not turned
    std::vector<Vertex3D> vertices = {}, normals = {};
    std::vector<Vertex2D> coords = {};
    std::vector<Color> colors = {};
    std::vector<Facelist> faces = {};
    std::vector<FlatRange> ranges = {};
};

struct FlatScene
{
    float view[16] = {}, projection[16] = {}; ///< as OpenGL has them
    std::vector<FlatImage> images = {};
    std::vector<FlatMesh> meshes = {};
};

/// What the solid pass draws of a group, with the matrices that stand on OpenGL's stacks and the images read
/// back from it.
FlatScene flatten(const OGroup& group);

bool writeFlatScene(const FlatScene& scene, const std::string& file);
FlatScene readFlatScene(const std::string& file);
