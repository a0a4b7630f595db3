// Big .3DS files: hilly ground in tiles with texture coordinates, four smoothing groups a tile and 50
// materials.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/writer3ds.h"

constexpr int tileMaterials = 50;

inline Vertex3D tileHill(float x, float y)
{
    return {x, y, 6.0f * std::sin(x * 0.11f) * std::cos(y * 0.07f) + std::sin(x * 0.7f + y)};
}

// A tile of 2 * columns * rows triangles whose lower left corner is at x, y.
inline Mesh3ds makeTile(int number, int columns, int rows, float x, float y)
{
    Mesh3ds tile;
    tile.name = "tile" + std::to_string(number);
    for (int j = 0; j <= rows; j++)
        for (int i = 0; i <= columns; i++)
        {
            tile.vertices.push_back(tileHill(x + float(i), y + float(j)));
            tile.textureCoords.push_back({float(i), float(j)});
        }

    std::vector<MaterialGroup3ds> groups(4);
    for (int j = 0; j < rows; j++)
        for (int i = 0; i < columns; i++)
        {
            const auto a = uint16_t(j * (columns + 1) + i);
            const auto c = uint16_t(a + columns + 1);
            const size_t quarter = size_t(2 * (2 * j / rows) + 2 * i / columns);
            for (const Face3ds& face :
                 {Face3ds{a, uint16_t(a + 1), c}, Face3ds{uint16_t(a + 1), uint16_t(c + 1), c}})
            {
                groups[size_t(i + j) % 4].faces.push_back(uint16_t(tile.faces.size()));
                tile.faces.push_back(face);
                tile.smoothing.push_back(1u << quarter);
            }
        }
    for (size_t g = 0; g < groups.size(); g++)
    {
        groups[g].material = "material" + std::to_string((size_t(number) * 4 + g) % tileMaterials);
        tile.groups.push_back(groups[g]);
    }
    return tile;
}

// A scene with materials, lights and a camera, still without meshes.
inline Scene3ds makeTileScene()
{
    Scene3ds scene;
    for (int i = 0; i < tileMaterials; i++)
    {
        const Color3ds color = {float(i) / tileMaterials, 0.5f, 0.25f};
        scene.materials.push_back({.name = "material" + std::to_string(i),
                                   .ambient = {color},
                                   .diffuse = {color},
                                   .specular = {color},
                                   .transparency = Percent3ds{0}});
    }
    for (int i = 0; i < 4; i++)
        scene.lights.push_back({.name = "light" + std::to_string(i), .color = {{1, 1, 1, COLOR_3DS_FLOAT}}});
    scene.cameras.push_back({.name = "camera"});
    return scene;
}
