#include "tests/support/completescene.h"

Scene3ds completeScene()
{
    const std::vector<Color3ds> pair = {{0.8f, 0.4f, 0.2f}, {0.5f, 0.2f, 0.1f, COLOR_3DS_LINEAR_BYTE}};
    const Map3ds map = {.file = "A.TGA",
                        .percent = Percent3ds{50},
                        .tiling = uint16_t(16),
                        .scaleU = 2.0f,
                        .offsetV = 0.5f,
                        .rotation = 30.0f};
    Map3ds opacity = map;
    opacity.slot = MAP_3DS_OPACITY;
    return {.materials = {{.name = "A",
                           .ambient = pair,
                           .diffuse = {{1, 0, 0, COLOR_3DS_FLOAT}},
                           .transparency = Percent3ds{10},
                           .selfIllumination = Percent3ds{50},
                           .twoSided = true,
                           .wireSize = 1.0f,
                           .maps = {map, opacity}},
                          {.name = "B", .diffuse = pair}},
            .meshes = {{.name = "M",
                        .vertices = {{0, 0, 0}, {4, 0, 0}, {0, 2, 0}, {0, 0, 1}},
                        .faces = {{0, 1, 2}, {0, 2, 3}, {0, 1, 3}},
                        .textureCoords = {{0, 0}, {1, 0}, {0, 1}, {1, 1}},
                        .smoothing = {1, 2, 1},
                        .groups = {{"A", {0}}, {"B", {1, 2}}},
                        .axes = std::array<float, 12>{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}},
                       {.name = "N",
                        .hidden = true,
                        .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
                        .faces = {{0, 1, 2}},
                        .smoothing = {1},
                        .smoothingBeside = true}},
            .lights = {{.name = "L",
                        .position = {1, 2, 3},
                        .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                        .innerRange = 1.0f,
                        .outerRange = 9.0f,
                        .multiplier = 2.0f,
                        .spot = Spot3ds{}}},
            .cameras = {{.name = "C", .eye = {0, -9, 0}, .range = {{1, 100}}}},
            .nodes = {{.id = int16_t(0),
                       .name = "M",
                       .pivot = Vertex3D{0, 0, 0},
                       .positions = {{.frame = 0}, {.frame = 10}},
                       .rotations = {{.frame = 0, .angle = 1}}}},
            .segment = {{0, 10}}};
}
