#include "tests/apps/scenes.h"

Material3ds plainMaterial(const std::string& name, float r, float g, float b)
{
    Material3ds material;
    material.name = name;
    material.ambient = material.diffuse = material.specular = {{r, g, b, COLOR_3DS_BYTE}};
    // Counted twice by the strict reading, which then stops before the next chunk.
    material.specular.push_back({r, g, b, COLOR_3DS_LINEAR_BYTE});
    return material;
}

static void useMaterial(Mesh3ds* mesh, const std::string& material)
{
    if (material.empty())
        return;
    MaterialGroup3ds group;
    group.material = material;
    for (size_t i = 0; i < mesh->faces.size(); ++i)
        group.faces.push_back(static_cast<uint16_t>(i));
    mesh->groups = {group};
}

// Two faces over four corners that run counter-clockwise as seen from the front.
static void addSquare(Mesh3ds* mesh, const std::vector<Vertex3D>& corners, uint32_t smoothing)
{
    const uint16_t first = static_cast<uint16_t>(mesh->vertices.size());
    const Vertex2D coords[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (size_t i = 0; i < 4; ++i)
    {
        mesh->vertices.push_back(corners[i]);
        mesh->textureCoords.push_back(coords[i]);
    }
    const auto at = [first](int i) { return static_cast<uint16_t>(first + i); };
    mesh->faces.push_back({at(0), at(1), at(2)});
    mesh->faces.push_back({at(0), at(2), at(3)});
    mesh->smoothing.insert(mesh->smoothing.end(), 2, smoothing);
}

Mesh3ds box(const std::string& name, const Vertex3D& l, const Vertex3D& h, const std::string& material)
{
    Mesh3ds mesh;
    mesh.name = name;
    addSquare(&mesh, {{l.x, l.y, l.z}, {h.x, l.y, l.z}, {h.x, l.y, h.z}, {l.x, l.y, h.z}}, 1);
    addSquare(&mesh, {{h.x, h.y, l.z}, {l.x, h.y, l.z}, {l.x, h.y, h.z}, {h.x, h.y, h.z}}, 2);
    addSquare(&mesh, {{h.x, l.y, l.z}, {h.x, h.y, l.z}, {h.x, h.y, h.z}, {h.x, l.y, h.z}}, 4);
    addSquare(&mesh, {{l.x, h.y, l.z}, {l.x, l.y, l.z}, {l.x, l.y, h.z}, {l.x, h.y, h.z}}, 8);
    addSquare(&mesh, {{l.x, l.y, h.z}, {h.x, l.y, h.z}, {h.x, h.y, h.z}, {l.x, h.y, h.z}}, 16);
    addSquare(&mesh, {{l.x, h.y, l.z}, {h.x, h.y, l.z}, {h.x, l.y, l.z}, {l.x, l.y, l.z}}, 32);
    useMaterial(&mesh, material);
    return mesh;
}

Mesh3ds wall(const std::string& name, float depth, float low, float high, const std::string& material)
{
    Mesh3ds mesh;
    mesh.name = name;
    addSquare(&mesh, {{low, depth, low}, {high, depth, low}, {high, depth, high}, {low, depth, high}}, 1);
    useMaterial(&mesh, material);
    return mesh;
}

Mesh3ds floorGrid(const std::string& name, float height, float low, float high, int cells)
{
    Mesh3ds mesh;
    mesh.name = name;
    const float step = (high - low) / static_cast<float>(cells);
    for (int row = 0; row < cells; ++row)
        for (int column = 0; column < cells; ++column)
        {
            const float x = low + step * static_cast<float>(column);
            const float y = low + step * static_cast<float>(row);
            addSquare(
                &mesh,
                {{x, y, height}, {x + step, y, height}, {x + step, y + step, height}, {x, y + step, height}},
                1);
        }
    return mesh;
}

Scene3ds boxScene()
{
    Scene3ds scene;
    scene.materials = {plainMaterial("red", 0.8f, 0.1f, 0.1f)};
    scene.meshes = {box("Box", {-1, -1, -1}, {1, 1, 1}, "red")};
    return scene;
}

Camera3ds frontCamera(const std::string& name, float x, float distance)
{
    Camera3ds camera;
    camera.name = name;
    camera.eye = {x, -distance, 0};
    camera.target = {x, 0, 0};
    return camera;
}
