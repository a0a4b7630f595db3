#include "tests/support/writer3ds.h"

#include <cassert>
#include <cmath>
#include <cstring>

ChunkWriter& ChunkWriter::u8(uint8_t value)
{
    data.push_back(value);
    return *this;
}

ChunkWriter& ChunkWriter::u16(uint16_t value)
{
    return u8(static_cast<uint8_t>(value)).u8(static_cast<uint8_t>(value >> 8));
}

ChunkWriter& ChunkWriter::u32(uint32_t value)
{
    return u16(static_cast<uint16_t>(value)).u16(static_cast<uint16_t>(value >> 16));
}

ChunkWriter& ChunkWriter::f32(float value)
{
    uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return u32(bits);
}

ChunkWriter& ChunkWriter::text(const std::string& value)
{
    data.insert(data.end(), value.begin(), value.end());
    return u8(0);
}

ChunkWriter& ChunkWriter::bytes(const std::vector<uint8_t>& values)
{
    data.insert(data.end(), values.begin(), values.end());
    return *this;
}

ChunkWriter& ChunkWriter::zeros(size_t count)
{
    data.resize(data.size() + count);
    return *this;
}

ChunkWriter& ChunkWriter::open(uint16_t id)
{
    starts.push_back(data.size());
    return header(id, 0);
}

ChunkWriter& ChunkWriter::close()
{
    assert(!starts.empty());
    const size_t start = starts.back();
    starts.pop_back();
    const auto length = static_cast<uint32_t>(data.size() - start);
    for (size_t i = 0; i < 4; i++)
        data[start + 2 + i] = static_cast<uint8_t>(length >> (8 * i));
    return *this;
}

std::vector<uint8_t> ChunkWriter::finish()
{
    while (!starts.empty())
        close();
    return std::move(data);
}

static uint8_t toByte(float channel)
{
    return static_cast<uint8_t>(std::lround(channel * 255.0f));
}

static uint16_t count16(size_t count)
{
    assert(count <= 0xFFFF);
    return static_cast<uint16_t>(count);
}

void writeColor(ChunkWriter& out, const Color3ds& color)
{
    out.open(color.form);
    if (color.form == COLOR_3DS_BYTE || color.form == COLOR_3DS_LINEAR_BYTE)
        out.u8(toByte(color.r)).u8(toByte(color.g)).u8(toByte(color.b));
    else
        out.f32(color.r).f32(color.g).f32(color.b);
    out.close();
}

void writePercent(ChunkWriter& out, const Percent3ds& percent)
{
    if (percent.isFloat)
        out.open(0x0031).f32(percent.value).close();
    else
        out.open(0x0030).i16(static_cast<int16_t>(percent.value)).close();
}

static void writeFloat(ChunkWriter& out, uint16_t id, const std::optional<float>& value)
{
    if (value)
        out.open(id).f32(*value).close();
}

void writeMap(ChunkWriter& out, const Map3ds& map)
{
    out.open(map.slot);
    if (map.percent)
        writePercent(out, *map.percent);
    out.open(0xA300).text(map.file).close();
    if (map.tiling)
        out.open(0xA351).u16(*map.tiling).close();
    writeFloat(out, 0xA354, map.scaleU);
    writeFloat(out, 0xA356, map.scaleV);
    writeFloat(out, 0xA358, map.offsetU);
    writeFloat(out, 0xA35A, map.offsetV);
    writeFloat(out, 0xA35C, map.rotation);
    out.close();
}

static void writeColors(ChunkWriter& out, uint16_t id, const std::vector<Color3ds>& colors)
{
    if (colors.empty())
        return;
    out.open(id);
    for (const Color3ds& color : colors)
        writeColor(out, color);
    out.close();
}

static void writePercent(ChunkWriter& out, uint16_t id, const std::optional<Percent3ds>& percent)
{
    if (!percent)
        return;
    out.open(id);
    writePercent(out, *percent);
    out.close();
}

void writeMaterial(ChunkWriter& out, const Material3ds& material)
{
    out.open(0xAFFF);
    out.open(0xA000).text(material.name).close();
    writeColors(out, 0xA010, material.ambient);
    writeColors(out, 0xA020, material.diffuse);
    writeColors(out, 0xA030, material.specular);
    writePercent(out, 0xA040, material.shininess);
    writePercent(out, 0xA041, material.shininessStrength);
    writePercent(out, 0xA050, material.transparency);
    writePercent(out, 0xA084, material.selfIllumination);
    if (material.shading)
        out.open(0xA100).i16(*material.shading).close();
    if (material.twoSided)
        out.empty(0xA081);
    if (material.wire)
        out.empty(0xA085);
    writeFloat(out, 0xA087, material.wireSize);
    for (const Map3ds& map : material.maps)
        writeMap(out, map);
    out.close();
}

static void openObject(ChunkWriter& out, const std::string& name, bool hidden)
{
    out.open(0x4000).text(name);
    if (hidden)
        out.empty(0x4010);
}

static void writeSmoothing(ChunkWriter& out, const std::vector<uint32_t>& smoothing)
{
    if (smoothing.empty())
        return;
    out.open(0x4150);
    for (uint32_t group : smoothing)
        out.u32(group);
    out.close();
}

static void writeFaces(ChunkWriter& out, const Mesh3ds& mesh)
{
    out.open(0x4120).u16(count16(mesh.faces.size()));
    for (const Face3ds& face : mesh.faces)
        out.u16(face.a).u16(face.b).u16(face.c).u16(face.flags);
    for (const MaterialGroup3ds& group : mesh.groups)
    {
        out.open(0x4130).text(group.material).u16(count16(group.faces.size()));
        for (uint16_t face : group.faces)
            out.u16(face);
        out.close();
    }
    if (!mesh.smoothingBeside)
        writeSmoothing(out, mesh.smoothing);
    out.close();
    if (mesh.smoothingBeside)
        writeSmoothing(out, mesh.smoothing);
}

void writeMesh(ChunkWriter& out, const Mesh3ds& mesh)
{
    openObject(out, mesh.name, mesh.hidden);
    out.open(0x4100);
    out.open(0x4110).u16(count16(mesh.vertices.size()));
    for (const Vertex3D& vertex : mesh.vertices)
        out.vector(vertex);
    out.close();
    if (!mesh.textureCoords.empty())
    {
        out.open(0x4140).u16(count16(mesh.textureCoords.size()));
        for (const Vertex2D& coords : mesh.textureCoords)
            out.f32(coords.x).f32(coords.y);
        out.close();
    }
    if (mesh.axes)
    {
        out.open(0x4160);
        for (float value : *mesh.axes)
            out.f32(value);
        out.close();
    }
    writeFaces(out, mesh);
    out.close().close();
}

void writeLight(ChunkWriter& out, const Light3ds& light)
{
    openObject(out, light.name, light.hidden);
    out.open(0x4600).vector(light.position);
    if (light.multiplierFirst)
        writeFloat(out, 0x465B, light.multiplier);
    for (const Color3ds& color : light.color)
        writeColor(out, color);
    if (light.off)
        out.empty(0x4620);
    writeFloat(out, 0x465A, light.outerRange);
    writeFloat(out, 0x4659, light.innerRange);
    if (!light.multiplierFirst)
        writeFloat(out, 0x465B, light.multiplier);
    if (light.spot)
        out.open(0x4610).vector(light.spot->target).f32(light.spot->hotspot).f32(light.spot->falloff).close();
    out.close().close();
}

void writeCamera(ChunkWriter& out, const Camera3ds& camera)
{
    openObject(out, camera.name, camera.hidden);
    out.open(0x4700).vector(camera.eye).vector(camera.target).f32(camera.roll).f32(camera.lens);
    if (camera.range)
        out.open(0x4720).f32((*camera.range)[0]).f32((*camera.range)[1]).close();
    out.close().close();
}

// Opens a track chunk up to its first key.
static void openTrack(ChunkWriter& out, uint16_t id, uint16_t flags, size_t keys)
{
    out.open(id).u16(flags).zeros(8).u32(static_cast<uint32_t>(keys));
}

static void writeKeyHead(ChunkWriter& out, int32_t frame, const Spline3ds& spline)
{
    out.i32(frame).u16(spline.flags);
    for (float value : spline.values)
        out.f32(value);
}

// A track without keys isn't written.
template <class Key, class WriteValue>
static void writeTrack(ChunkWriter& out, uint16_t id, uint16_t flags, const std::vector<Key>& keys,
                       WriteValue writeValue)
{
    if (keys.empty())
        return;
    openTrack(out, id, flags, keys.size());
    for (const Key& key : keys)
    {
        writeKeyHead(out, key.frame, key.spline);
        writeValue(key);
    }
    out.close();
}

void writeNode(ChunkWriter& out, const Node3ds& node)
{
    out.open(node.kind);
    if (node.id)
        out.open(0xB030).i16(*node.id).close();
    out.open(0xB010).text(node.name).u16(0).u16(0).i16(node.parent).close();
    if (!node.instance.empty())
        out.open(0xB011).text(node.instance).close();
    if (node.pivot)
        out.open(0xB013).vector(*node.pivot).close();
    const auto writeVector = [&](const PositionKey3ds& key) { out.vector(key.position); };
    writeTrack(out, 0xB020, node.trackFlags, node.positions, writeVector);
    writeTrack(out, 0xB021, node.trackFlags, node.rotations,
               [&](const RotationKey3ds& key) { out.f32(key.angle).vector(key.axis); });
    writeTrack(out, 0xB022, node.trackFlags, node.scales, writeVector);
    writeTrack(out, 0xB024, node.trackFlags, node.rolls, [&](const RollKey3ds& key) { out.f32(key.angle); });
    out.close();
}

static void writeKeyframer(ChunkWriter& out, const Scene3ds& scene)
{
    const int32_t last = scene.segment ? (*scene.segment)[1] : 0;
    out.open(0xB000);
    out.open(0xB00A).u16(5).text("").i32(last).close();
    if (scene.segment)
        out.open(0xB008).i32((*scene.segment)[0]).i32(last).close();
    for (const Node3ds& node : scene.nodes)
        writeNode(out, node);
    out.close();
}

std::vector<uint8_t> build3ds(const Scene3ds& scene)
{
    ChunkWriter out;
    out.open(0x4D4D);
    if (scene.version)
        out.open(0x0002).u32(*scene.version).close();
    out.open(0x3D3D);
    if (scene.meshVersion)
        out.open(0x3D3E).u32(*scene.meshVersion).close();
    for (const Material3ds& material : scene.materials)
        writeMaterial(out, material);
    for (const Mesh3ds& mesh : scene.meshes)
        writeMesh(out, mesh);
    for (const Light3ds& light : scene.lights)
        writeLight(out, light);
    for (const Camera3ds& camera : scene.cameras)
        writeCamera(out, camera);
    out.close();
    if (!scene.nodes.empty() || scene.segment)
        writeKeyframer(out, scene);
    return out.finish();
}
