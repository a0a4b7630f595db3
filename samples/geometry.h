// Small vectors, frames and the mesh builder of the sample scene.
//
// Lengths are metres here, z is up and the water lies at z = 0; the writer of the file scales them. Front
// faces wind counter-clockwise.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace sample
{

constexpr float pi = 3.14159265f;

struct Vec2
{
    float x = 0, y = 0;
};

inline Vec2 operator+(Vec2 a, Vec2 b)
{
    return {a.x + b.x, a.y + b.y};
}
inline Vec2 operator-(Vec2 a, Vec2 b)
{
    return {a.x - b.x, a.y - b.y};
}
inline Vec2 operator*(Vec2 a, float s)
{
    return {a.x * s, a.y * s};
}

struct Vec3
{
    float x = 0, y = 0, z = 0;
};

inline Vec3 operator+(Vec3 a, Vec3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(Vec3 a, float s)
{
    return {a.x * s, a.y * s, a.z * s};
}
inline float dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a)
{
    return std::sqrt(dot(a, a));
}
/// Unit vector of a, or the x axis for a zero vector.
inline Vec3 unit(Vec3 a)
{
    const float l = length(a);
    return l > 0 ? a * (1 / l) : Vec3{1, 0, 0};
}
inline float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}
inline Vec3 mix(Vec3 a, Vec3 b, float t)
{
    return a + (b - a) * t;
}

/// A right-handed placement: origin and three axes, which may carry a scale.
struct Frame
{
    Vec3 origin;
    Vec3 x = {1, 0, 0}, y = {0, 1, 0}, z = {0, 0, 1};

    Vec3 point(Vec3 p) const { return origin + x * p.x + y * p.y + z * p.z; }
    /// This frame placed inside outer.
    Frame within(const Frame& outer) const;

    static Frame at(Vec3 origin) { return {origin, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}; }
    /// Turned about z, counter-clockwise seen from above.
    static Frame turned(Vec3 origin, float degrees);
};

/// A number from 0 to 1 that depends on nothing but its arguments.
float randomValue(uint32_t a, uint32_t b = 0, uint32_t c = 0);

struct Face
{
    uint16_t a, b, c;
    int material;
    uint32_t smoothing;
};

/// A step of a rotation track turns on from where the key before it stopped.
struct RotationKey
{
    int frame;
    Vec3 axis;
    float radians;
};

struct PositionKey
{
    int frame;
    Vec3 position; ///< from the pivot's place of rest
};

struct Mesh
{
    std::string name;
    std::vector<Vec3> points;
    std::vector<Vec2> coords; ///< one for each point
    std::vector<Face> faces;

    Vec3 pivot; ///< world point about which the tracks turn; the middle where hasPivot is clear
    bool hasPivot = false;
    std::string parent; ///< name of the mesh whose motion this one follows; empty for none
    std::vector<RotationKey> rotations;
    std::vector<PositionKey> positions;
};

/// Part of an image, from its lower left to its upper right corner.
struct Patch
{
    Vec2 low = {0, 0}, high = {1, 1};
    Vec2 at(float s, float t) const { return {mix(low.x, high.x, s), mix(low.y, high.y, t)}; }
};

/// Columns and rows counted from the lower left.
Patch cellOf(int column, int row, int columns, int rows);

/// A ring of a turned body.
struct Ring
{
    float radius, z, v;
    bool sharp = false; ///< the surfaces below and above meet in an edge here
};

/// Appends shapes to a mesh, all in the current frame and material.
class Builder
{
public:
    explicit Builder(Mesh& target) : mesh(target) {}

    Frame frame;
    int material = 0;
    int mirrorShift = 0; ///< above 0: mirrored below z = 0, and added to the material numbers
    float cell = 1e9f;   ///< longest side of the squares that flat surfaces are cut into

    /// A smoothing group that no face has yet.
    uint32_t newGroup() { return ++lastGroup; }
    int point(Vec3 p, Vec2 uv);
    void triangle(int a, int b, int c, uint32_t group);
    void quad(int a, int b, int c, int d, uint32_t group);

    /// Parallelogram with its front along right x up, cut into cells.
    void panel(Vec3 corner, Vec3 right, Vec3 up, Patch patch);
    /// The same with coordinates that run tile units of length for one image, from the corner.
    void tiledPanel(Vec3 corner, Vec3 right, Vec3 up, float tile, Vec2 shift = {0, 0});
    /// Triangle that stands on the edge from corner along right, its tip height above the middle.
    void gable(Vec3 corner, Vec3 right, Vec3 up, float tile, Vec2 shift = {0, 0});
    /// Sides selected by letters: - and + of x, y, z as "xXyYzZ".
    void box(Vec3 low, Vec3 high, float tile, const char* sides = "xXyYzZ");
    /// Each side shows the whole patch.
    void crate(Vec3 low, Vec3 high, Patch patch, const char* sides = "xXyYZ");
    /// Body of rotation about z at base, from the lowest ring to the highest.
    void turned(Vec3 base, const std::vector<Ring>& rings, int segments, float uRepeat, float flat = 1);
    /// A disc that looks up (or down with segments below 0).
    void disc(Vec3 middle, float radius, int segments, Patch patch);
    /// A rod with round normals; open at its ends.
    void rod(Vec3 from, Vec3 to, float radiusFrom, float radiusTo, int sides, float tile);
    /// A strip of the given width around the line, turned so that eye sees it from the front.
    void ribbon(Vec3 from, Vec3 to, float width, Vec3 eye, Patch patch, float sag = 0, int pieces = 1);
    /// An upright or free card around a middle.
    void card(Vec3 middle, Vec3 right, Vec3 up, Patch patch);
    /// Surface over a net of points, row after row; front along (next in row) x (next row).
    void net(const std::vector<Vec3>& points, const std::vector<Vec2>& coords, int columns, uint32_t group);

private:
    Mesh& mesh;
    uint32_t lastGroup = 0;
};

/// Sorts the faces far to near, for faces that are blended in file order.
void sortFarToNear(Mesh& mesh, Vec3 eye);

} // namespace sample
