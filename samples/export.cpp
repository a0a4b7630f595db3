// Writing the scene as a .3DS file.
//
// Some readers count a material's own header among its contents and so read one chunk more than it has. An
// empty chunk behind each material is what they take then, and the next material stays whole. Colours are
// floats, since such readers also take byte channels as signed.
//
// Ten metres make one unit: hosts with a near plane of 0.01 then keep enough depth resolution over the whole
// harbour for shutters that lie close to their wall.

#include "samples/export.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>

#include "samples/motion.h"
#include "tests/support/imagewriter.h"
#include "tests/support/writer3ds.h"

namespace sample
{

constexpr float unitsPerMetre = 0.1f;

static Vertex3D toFile(Vec3 v)
{
    return {v.x * unitsPerMetre, v.y * unitsPerMetre, v.z * unitsPerMetre};
}

// A shadow ray passes by every face that has a coordinate in common with the lit vertex. On a plan of
// straight lines that would be most of them, so each place is moved by up to a millimetre; equal places stay
// equal.
static Vec3 jittered(Vec3 p)
{
    uint32_t bits[3];
    std::memcpy(bits, &p, sizeof(bits));
    const auto nudge = [&](uint32_t axis)
    { return 0.002f * (randomValue(bits[0], bits[1], bits[2] + axis) - 0.5f); };
    return {p.x + nudge(0), p.y + nudge(1), p.z + nudge(2)};
}

static Color3ds colourOf(Rgba c, float strength)
{
    return {c.r * strength, c.g * strength, c.b * strength, COLOR_3DS_FLOAT};
}

static std::string nameOf(int material)
{
    return std::string(materialOf(material).name) + (material < materialCount ? "" : " R");
}

static Material3ds toFile(int number)
{
    const Material material = materialOf(number);
    Material3ds out;
    out.name = nameOf(number);
    out.ambient = {colourOf(material.colour, 0.4f)};
    out.diffuse = {colourOf(material.colour, 1)};
    out.specular = {colourOf({0.9f, 0.9f, 0.9f, 1}, material.reflection ? 1.0f : 0.1f)};
    out.shininess = Percent3ds{material.reflection ? 60.0f : 10.0f};
    if (material.selfIllumination > 0)
        out.selfIllumination = Percent3ds{static_cast<float>(material.selfIllumination)};
    out.twoSided = material.twoSided;
    out.shading = static_cast<int16_t>(2);
    const auto addMap = [&](uint16_t slot, const std::string& file, float percent)
    {
        Map3ds map;
        map.slot = slot;
        map.file = file;
        map.percent = Percent3ds{percent};
        if (material.clamped)
            map.tiling = static_cast<uint16_t>(0x10);
        out.maps.push_back(map);
    };
    if (!material.image.empty())
        addMap(MAP_3DS_TEXTURE1, material.image, 100);
    if (material.seeThrough)
        addMap(MAP_3DS_OPACITY, material.image, 100);
    if (material.reflection)
        addMap(MAP_3DS_REFLECTION, material.reflection, 40);
    return out;
}

// A mesh as it stands in the file, with the places that its motion needs.
struct PlacedMesh
{
    Mesh3ds mesh;
    Vec3 middle; ///< of its box, in metres; the origin of its own axes
    Vec3 pivot;  ///< in metres
};

static PlacedMesh place(const Mesh& source)
{
    PlacedMesh placed;
    Mesh3ds& mesh = placed.mesh;
    mesh.name = source.name;
    Vertex3D low = {1e9f, 1e9f, 1e9f}, high = {-1e9f, -1e9f, -1e9f};
    for (const Vec3 p : source.points)
    {
        const Vertex3D v = toFile(jittered(p));
        mesh.vertices.push_back(v);
        low = {std::min(low.x, v.x), std::min(low.y, v.y), std::min(low.z, v.z)};
        high = {std::max(high.x, v.x), std::max(high.y, v.y), std::max(high.z, v.z)};
    }
    for (const Vec2 uv : source.coords)
        mesh.textureCoords.push_back({uv.x, uv.y});
    std::map<int, size_t> groups; // in order of first appearance, which is the order of drawing
    for (size_t i = 0; i < source.faces.size(); ++i)
    {
        const Face& f = source.faces[i];
        mesh.faces.push_back({f.a, f.b, f.c, 7});
        mesh.smoothing.push_back(f.smoothing);
        const auto [group, isNew] = groups.emplace(f.material, mesh.groups.size());
        if (isNew)
            mesh.groups.push_back({nameOf(f.material), {}});
        mesh.groups[group->second].faces.push_back(static_cast<uint16_t>(i));
    }
    const Vertex3D middle = {(low.x + high.x) * 0.5f, (low.y + high.y) * 0.5f, (low.z + high.z) * 0.5f};
    mesh.axes = std::array<float, 12>{1, 0, 0, 0, 1, 0, 0, 0, 1, middle.x, middle.y, middle.z};
    placed.middle = Vec3{middle.x, middle.y, middle.z} * (1 / unitsPerMetre);
    placed.pivot = source.hasPivot ? source.pivot : placed.middle;
    return placed;
}

static std::vector<PositionKey3ds> positionKeys(const std::vector<PositionKey>& keys, Vec3 rest)
{
    std::vector<PositionKey3ds> out;
    out.reserve(keys.size() + 1);
    for (const PositionKey& key : keys)
        out.push_back({key.frame, toFile(rest + key.position), {}});
    if (out.empty())
        out.push_back({0, toFile(rest), {}});
    return out;
}

// Every object gets a node, also what stands still: a player that moves one of them moves them all.
static Node3ds nodeOf(const Mesh& source, const PlacedMesh& placed, const PlacedMesh* parent)
{
    Node3ds node;
    node.name = source.name;
    node.pivot = toFile(placed.pivot - placed.middle);
    node.positions = positionKeys(source.positions, parent ? placed.pivot - parent->pivot : placed.pivot);
    for (const RotationKey& key : source.rotations)
        node.rotations.push_back({key.frame, key.radians, toFile(key.axis * (1 / unitsPerMetre)), {}});
    if (node.rotations.empty())
        node.rotations.push_back({0, 0, {0, 0, 1}, {}});
    return node;
}

static void addCameraNodes(std::vector<Node3ds>& nodes, const Camera& camera)
{
    for (const uint16_t kind : {NODE_3DS_CAMERA, NODE_3DS_CAMERA_TARGET})
    {
        Node3ds node;
        node.kind = kind;
        node.name = camera.name;
        for (const CameraKey& key : camera.keys)
            node.positions.push_back({key.frame, toFile(kind == NODE_3DS_CAMERA ? key.eye : key.target), {}});
        nodes.push_back(node);
    }
}

static void writeMaterials(ChunkWriter& out, const Scene& scene)
{
    for (const int number : usedMaterials(scene))
    {
        writeMaterial(out, toFile(number));
        out.empty(0x0000);
    }
}

static void writeKeyframes(ChunkWriter& out, const Scene& scene, std::vector<Node3ds> nodes)
{
    for (const Camera& camera : scene.cameras)
        addCameraNodes(nodes, camera);
    for (const Light& light : scene.lights)
    {
        Node3ds node;
        node.kind = NODE_3DS_LIGHT;
        node.name = light.name;
        node.positions = {{0, toFile(light.place), {}}};
        nodes.push_back(node);
    }
    out.open(0xB000);
    out.open(0xB00A).u16(5).text("HARBOUR").i32(lastFrame).close();
    out.open(0xB008).i32(0).i32(lastFrame).close();
    out.open(0xB009).i32(0).close();
    int16_t id = 0;
    for (Node3ds& node : nodes)
    {
        node.id = id++;
        writeNode(out, node);
    }
    out.close();
}

std::vector<uint8_t> encodeScene(const Scene& scene)
{
    ChunkWriter out;
    out.open(0x4D4D);
    out.open(0x0002).u32(3).close();
    out.open(0x3D3D);
    out.open(0x3D3E).u32(3).close();
    writeMaterials(out, scene);

    std::vector<PlacedMesh> placed;
    std::vector<Node3ds> nodes;
    std::map<std::string, size_t> index;
    for (const Mesh& mesh : scene.meshes)
    {
        placed.push_back(place(mesh));
        writeMesh(out, placed.back().mesh);
        index[mesh.name] = placed.size() - 1;
    }
    for (size_t i = 0; i < scene.meshes.size(); ++i)
    {
        const auto parent = index.find(scene.meshes[i].parent);
        const bool hasParent = parent != index.end();
        nodes.push_back(nodeOf(scene.meshes[i], placed[i], hasParent ? &placed[parent->second] : nullptr));
        nodes.back().parent = hasParent ? static_cast<int16_t>(parent->second) : static_cast<int16_t>(-1);
    }
    for (const Light& light : scene.lights)
    {
        Light3ds l;
        l.name = light.name;
        l.position = toFile(light.place);
        l.color = {colourOf(light.colour, 1)};
        l.innerRange = light.innerRange * unitsPerMetre;
        l.outerRange = light.outerRange * unitsPerMetre;
        writeLight(out, l);
    }
    for (const Camera& camera : scene.cameras)
    {
        Camera3ds c;
        c.name = camera.name;
        c.eye = toFile(camera.keys.front().eye);
        c.target = toFile(camera.keys.front().target);
        c.lens = camera.lens;
        writeCamera(out, c);
    }
    out.close();
    writeKeyframes(out, scene, nodes);
    return out.finish();
}

static uint8_t toByte(float channel)
{
    return static_cast<uint8_t>(std::lround(clamp01(channel) * 255));
}

std::vector<uint8_t> encodePicture(const std::string& name, const Image& image)
{
    ::Picture picture(image.width, image.height);
    for (int y = 0; y < image.height; ++y)
    {
        for (int x = 0; x < image.width; ++x)
        {
            const Rgba& c = image.at(x, image.height - 1 - y);
            uint8_t* bytes = picture.at(x, y);
            for (const float channel : {c.r, c.g, c.b, c.a})
                *bytes++ = toByte(channel);
        }
    }
    if (name.ends_with(".jpg"))
        return writeJpeg(picture, 90);
    TgaOptions options;
    options.bits = 32;
    options.packed = true;
    return writeTga(picture, options);
}

} // namespace sample
