// Builds .3DS files in memory, for tests, benchmarks and the sample scene.
//
// Two levels: ChunkWriter nests chunks and fills in their lengths, so that a test can write any file, broken
// ones too; the records below it describe materials, objects and keyframe nodes, and build3ds writes a whole
// scene. Faces and vertices are counted in 16 bits: a mesh may have 65,535 of each, and splitting a larger
// one is up to the caller.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "vornik/core/vectors.h"

/// Appends little-endian values and nested chunks.
class ChunkWriter
{
public:
    ChunkWriter& u8(uint8_t value);
    ChunkWriter& u16(uint16_t value);
    ChunkWriter& i16(int16_t value) { return u16(static_cast<uint16_t>(value)); }
    ChunkWriter& u32(uint32_t value);
    ChunkWriter& i32(int32_t value) { return u32(static_cast<uint32_t>(value)); }
    ChunkWriter& f32(float value);
    ChunkWriter& vector(const Vertex3D& v) { return f32(v.x).f32(v.y).f32(v.z); }
    /// With its terminating zero byte.
    ChunkWriter& text(const std::string& value);
    ChunkWriter& bytes(const std::vector<uint8_t>& values);
    ChunkWriter& zeros(size_t count);

    /// Starts a chunk inside the open ones. Its length is filled in when it closes.
    ChunkWriter& open(uint16_t id);
    ChunkWriter& close();
    /// A chunk of its header alone.
    ChunkWriter& empty(uint16_t id) { return open(id).close(); }
    /// A chunk that claims any length.
    ChunkWriter& header(uint16_t id, uint32_t length) { return u16(id).u32(length); }

    size_t size() const { return data.size(); }
    /// Closes what is open and hands the bytes over.
    std::vector<uint8_t> finish();

private:
    std::vector<uint8_t> data;
    std::vector<size_t> starts; // headers of the open chunks
};

/// Chunk of a colour's form. The linear (gamma corrected) ones are a second opinion that some exporters add.
enum ColorForm3ds : uint16_t
{
    COLOR_3DS_FLOAT = 0x0010,
    COLOR_3DS_BYTE = 0x0011,
    COLOR_3DS_LINEAR_BYTE = 0x0012,
    COLOR_3DS_LINEAR_FLOAT = 0x0013
};

/// Channels from 0 to 1; the byte forms store them times 255, rounded.
struct Color3ds
{
    float r = 0, g = 0, b = 0;
    uint16_t form = COLOR_3DS_BYTE;
};

/// 0 to 100, as an integer (0030) or a float (0031).
struct Percent3ds
{
    float value = 0;
    bool isFloat = false;
};

/// Chunk of a map's place in the material.
enum MapSlot3ds : uint16_t
{
    MAP_3DS_TEXTURE1 = 0xA200,
    MAP_3DS_SPECULAR = 0xA204,
    MAP_3DS_OPACITY = 0xA210,
    MAP_3DS_REFLECTION = 0xA220,
    MAP_3DS_BUMP = 0xA230,
    MAP_3DS_TEXTURE2 = 0xA33A
};

/// A map of a material. What is not set isn't written.
struct Map3ds
{
    uint16_t slot = MAP_3DS_TEXTURE1;
    std::string file = {};
    std::optional<Percent3ds> percent = {};
    std::optional<uint16_t> tiling = {}; ///< 0x10: not tiled
    std::optional<float> scaleU = {}, scaleV = {}, offsetU = {}, offsetV = {}, rotation = {};
};

/// A material. Each colour may be given in several forms, which are written into one chunk in order.
struct Material3ds
{
    std::string name = {};
    std::vector<Color3ds> ambient = {}, diffuse = {}, specular = {};
    std::optional<Percent3ds> shininess = {}, shininessStrength = {};
    std::optional<Percent3ds> transparency = {}, selfIllumination = {};
    bool twoSided = false;
    bool wire = false;
    std::optional<float> wireSize = {};
    std::optional<int16_t> shading = {}; ///< 1 flat, 2 Gouraud, 3 Phong
    std::vector<Map3ds> maps = {};
};

struct Face3ds
{
    uint16_t a = 0, b = 0, c = 0;
    uint16_t flags = 7; ///< bits of the visible edges ca, bc, ab
};

struct MaterialGroup3ds
{
    std::string material = {};
    std::vector<uint16_t> faces = {};
};

/// A triangle mesh. Empty lists are left out of the file, except that vertices and faces are always written.
struct Mesh3ds
{
    std::string name = {};
    bool hidden = false;
    std::vector<Vertex3D> vertices = {};
    std::vector<Face3ds> faces = {};
    std::vector<Vertex2D> textureCoords = {};
    std::vector<uint32_t> smoothing = {}; ///< one for each face
    bool smoothingBeside = false; ///< behind the face chunk, where old exporters put it, instead of inside
    std::vector<MaterialGroup3ds> groups = {};
    std::optional<std::array<float, 12>> axes = {}; ///< three axes and the origin
};

struct Spot3ds
{
    Vertex3D target = {0, 0, 0};
    float hotspot = 40, falloff = 45; ///< degrees
};

/// A light. Optional parts that are not set aren't written.
struct Light3ds
{
    std::string name = {};
    bool hidden = false;
    Vertex3D position = {0, 0, 0};
    std::vector<Color3ds> color = {}; ///< exporters write one, as floats
    std::optional<float> innerRange = {}, outerRange = {}, multiplier = {};
    bool multiplierFirst = false; ///< in front of the colour
    bool off = false;
    std::optional<Spot3ds> spot = {};
};

struct Camera3ds
{
    std::string name = {};
    bool hidden = false;
    Vertex3D eye = {0, 0, 0}, target = {0, 0, 0};
    float roll = 0;                                 ///< degrees
    float lens = 50;                                ///< millimetres
    std::optional<std::array<float, 2>> range = {}; ///< near and far
};

/// What stands between a key's frame and its value: spline values that its flag word announces, one a bit.
struct Spline3ds
{
    uint16_t flags = 0; ///< 1 tension, 2 continuity, 4 bias, 8 ease to, 16 ease from
    std::vector<float> values = {};
};

struct PositionKey3ds
{
    int32_t frame = 0;
    Vertex3D position = {0, 0, 0};
    Spline3ds spline = {};
};

/// A turn from the key before.
struct RotationKey3ds
{
    int32_t frame = 0;
    float angle = 0; ///< radians
    Vertex3D axis = {0, 0, 1};
    Spline3ds spline = {};
};

struct RollKey3ds
{
    int32_t frame = 0;
    float angle = 0; ///< degrees
    Spline3ds spline = {};
};

/// Chunk of a node's kind.
enum NodeKind3ds : uint16_t
{
    NODE_3DS_AMBIENT = 0xB001,
    NODE_3DS_OBJECT = 0xB002,
    NODE_3DS_CAMERA = 0xB003,
    NODE_3DS_CAMERA_TARGET = 0xB004,
    NODE_3DS_LIGHT = 0xB005
};

/// A keyframer node. A dummy is an object node named "$$$DUMMY" with an instance name.
struct Node3ds
{
    uint16_t kind = NODE_3DS_OBJECT;
    std::optional<int16_t> id = {}; ///< exporters of old leave it out: then a parent is a place in the list
    std::string name = {};          ///< of the object
    int16_t parent = -1;
    std::string instance = {}; ///< written if not empty
    std::optional<Vertex3D> pivot = {};
    uint16_t trackFlags = 0;
    std::vector<PositionKey3ds> positions = {}; ///< a track without keys isn't written
    std::vector<RotationKey3ds> rotations = {};
    std::vector<PositionKey3ds> scales = {}; ///< factors along the axes
    std::vector<RollKey3ds> rolls = {};      ///< of a camera
};

/// All of a file, in the order in which exporters write it.
struct Scene3ds
{
    std::optional<uint32_t> version = 3;     ///< of the file (0002)
    std::optional<uint32_t> meshVersion = 3; ///< of the edit section (3D3E)
    std::vector<Material3ds> materials = {};
    std::vector<Mesh3ds> meshes = {};
    std::vector<Light3ds> lights = {};
    std::vector<Camera3ds> cameras = {};
    std::vector<Node3ds> nodes = {}; ///< with none and no segment there is no keyframe section
    std::optional<std::array<int32_t, 2>> segment = {}; ///< first and last frame
};

// Each writes one chunk into whatever is open. The objects belong into an edit section (3D3D), nodes into a
// keyframe section (B000).
void writeColor(ChunkWriter& out, const Color3ds& color);
void writePercent(ChunkWriter& out, const Percent3ds& percent);
void writeMap(ChunkWriter& out, const Map3ds& map);
void writeMaterial(ChunkWriter& out, const Material3ds& material);
void writeMesh(ChunkWriter& out, const Mesh3ds& mesh);
void writeLight(ChunkWriter& out, const Light3ds& light);
void writeCamera(ChunkWriter& out, const Camera3ds& camera);
void writeNode(ChunkWriter& out, const Node3ds& node);

/// The bytes of the whole file.
std::vector<uint8_t> build3ds(const Scene3ds& scene);
