#ifndef VORNIK_CORE_VECTORS_H
#define VORNIK_CORE_VECTORS_H

// Value records of vectors, colours, faces and the viewport, and the free functions on them.
// All are plain records of 32-bit values without hidden fields: meshes keep them in packed arrays that reach
// the graphics library unchanged. World units are the host's, angles are degrees, z is up.

#include <math.h>
#include <stdint.h>

#include "vornik/export.h"

class Mesh;

/// A point or direction in a plane, or a place in an image.
struct Vertex2D
{
    /// Pixels, world units or shares of an image.
    float x, y;
};

/// A point, direction or normal.
/// a * b is the dot product and a ^ b the cross product; bracket ^, which binds weakly. A vertex converts to
/// its length wherever a float is wanted, so compare by component: a == b compares lengths.
struct Vertex3D
{
    /// World units, or shares of a unit vector.
    float x, y, z;

    /// By component.
    ///@{
    Vertex3D operator-(const Vertex3D& b) const
    {
        Vertex3D r = {x - b.x, y - b.y, z - b.z};
        return r;
    }
    Vertex3D operator+(const Vertex3D& b) const
    {
        Vertex3D r = {x + b.x, y + b.y, z + b.z};
        return r;
    }
    Vertex3D operator-() const
    {
        Vertex3D r = {-x, -y, -z};
        return r;
    }
    Vertex3D& operator+=(const Vertex3D& b)
    {
        x += b.x;
        y += b.y;
        z += b.z;
        return *this;
    }
    Vertex3D& operator-=(const Vertex3D& b)
    {
        x -= b.x;
        y -= b.y;
        z -= b.z;
        return *this;
    }
    ///@}
    /// Cross product.
    Vertex3D operator^(const Vertex3D& b) const
    {
        Vertex3D r = {y * b.z - b.y * z, b.x * z - x * b.z, b.y * x - y * b.x};
        return r;
    }
    /// Dot product.
    float operator*(const Vertex3D& b) const { return x * b.x + y * b.y + z * b.z; }
    /// Scales. There is no v * f: that is a number.
    ///@{
    void operator/=(float f)
    {
        x /= f;
        y /= f;
        z /= f;
    }
    void operator*=(float f)
    {
        x *= f;
        y *= f;
        z *= f;
    }
    ///@}
    /// Length.
    operator float() const { return sqrtf(x * x + y * y + z * z); }

    /// Scales to unit length. A length of exactly 0 gives (0, 0, 0).
    VRK_API void normalize();
};

/// A rotation: axis in x, y, z, angle in degrees in w; or a quaternion.
struct Vertex4D
{
    /// As above.
    float x, y, z, w;
};

/// Channels run from 0 to 1.
struct Color
{
    /// Red, green, blue, and alpha, which is 1 where nothing shines through.
    float r, g, b, a;
};

/// Four words that are only copied.
struct VRKCounter
{
    /// Never read.
    uint32_t words[4];
};

/// Six values that are stored and copied.
struct Cube
{
    /// In the order of setValues.
    float values[6];
    /// Stores the values in order.
    VRK_API void setValues(float a, float b, float c, float d, float e, float f);
};

/// Five words that are only copied.
struct Triangle
{
    /// Never read.
    uint32_t words[5];
};

/// One triangle of a mesh: vertex indices in winding order, counter-clockwise seen from the front.
struct Facelist
{
    /// Indices into the arrays by vertex.
    uint16_t a, b, c;
};

/// Material of the face at the same index: a Material::id of the mesh's TList.
struct Textlist
{
    /// Number, not a position in the list.
    int32_t materialIndex;
};

/// Outward directions of a face's edges and corners in its plane; zero vectors for a degenerate face.
struct EdgeNormal
{
    Vertex3D edgeNormal[3];   ///< edges ab, bc, ca
    Vertex3D cornerNormal[3]; ///< unit sums of edge normals 0 + 1, 1 + 2, 2 + 0
};

/// One member of a coplanar group of faces.
struct PlaneList
{
    /// Index into the faces of the mesh.
    int32_t face;
    Mesh* mesh; ///< not owned
};

/// A coplanar group of faces, node of a singly linked list.
class Plane
{
public:
    uint8_t flag;      ///< set while a collision query has hit this plane
    PlaneList* faces;  ///< [faceCount], owned
    int32_t faceCount; ///< members
    Vertex3D normal;   ///< unit normal of the group's first face; not set by the constructor
    Vertex3D point;    ///< first corner of the group's first face; not set by the constructor
    int32_t id;        ///< shared by planes that were unified
    Plane* next;       ///< next plane of the same octree node, owned

    VRK_API Plane();
    Plane(const Plane&) = delete;
    Plane& operator=(const Plane&) = delete;
    /// Destroys the whole tail of the list and then the members.
    VRK_API ~Plane();

    /// Stores count and allocates faces[count], uncleared. An earlier array is released.
    VRK_API void create(int count);
};

/// What the projection is made of.
struct Viewport
{
    float width, height; ///< pixels
    float aspect;        ///< width / height
    /// Distances in world units.
    float nearClip, farClip;
    float fov; ///< vertical field of view, degrees

    /// nearClip 0.01, farClip 100000 and fov 90; the other fields stay.
    VRK_API void reset();
    /// aspect from width and height.
    VRK_API void calcAspect();
};

/// By component.
VRK_API void vrkSetVertex2D(Vertex2D* v, float x, float y);
/// By component.
VRK_API void vrkSetVertex3D(Vertex3D* v, float x, float y, float z);
/// Takes w first, although it is the last field.
VRK_API void vrkSetVertex4D(Vertex4D* v, float w, float x, float y, float z);

/// out = a + b; out may be a or b.
VRK_API void vrkAddVectors(const Vertex3D* a, const Vertex3D* b, Vertex3D* out);
/// out = a - b; out may be a or b.
VRK_API void vrkSubVectors(const Vertex3D* a, const Vertex3D* b, Vertex3D* out);
/// Dot product, summed z, y, x.
VRK_API float dotProd(const Vertex3D* a, const Vertex3D* b);
/// The same as dotProd.
VRK_API float vrkDotVectors(const Vertex3D* a, const Vertex3D* b);
/// out = a x b; out must be neither a nor b.
VRK_API void crossProd(const Vertex3D* a, const Vertex3D* b, Vertex3D* out);

/// Degrees to radians.
VRK_API float vrkRad(float degrees);
/// Radians to degrees.
VRK_API float vrkUnRad(float radians);
/// The sine of an angle in degrees.
VRK_API float vrkDSin(float degrees);
/// The cosine of an angle in degrees.
VRK_API float vrkDCos(float degrees);

/// The length of b - a.
VRK_API float vrkDistance(const Vertex3D* a, const Vertex3D* b);
/// The same in a plane.
VRK_API float vrkDistance(const Vertex2D* a, const Vertex2D* b);
/// The squared distance: a key for comparisons, without the root.
VRK_API float vrkFakeDistance(const Vertex3D* a, const Vertex3D* b);

/// Bearing from a to b in degrees, from the negative y axis through +x (90), +y (180) and -x (270).
/// Straight along -y gives 360, equal points give 270.
VRK_API float vrkAngle(const Vertex2D* a, const Vertex2D* b);
/// Always (0, 0); use vrkCalcAngles.
VRK_API Vertex2D vrkAngle(const Vertex3D* a, const Vertex3D* b);
/// Heading and elevation of b seen from a, as bearings in degrees.
VRK_API void vrkCalcAngles(const Vertex3D* a, const Vertex3D* b, float& heading, float& elevation);

/// (a - b) x (a - c), not normalised.
VRK_API Vertex3D calcPlaneNormal(const Vertex3D* a, const Vertex3D* b, const Vertex3D* c);
/// Unit normal of a face; (0, 0, 0) if its area is 0.
VRK_API Vertex3D calcNormal(const Vertex3D* a, const Vertex3D* b, const Vertex3D* c);
/// Scales to unit length; the zero vector stays.
VRK_API void vrkNormalize(Vertex3D* v);

/// Does the line from origin through end pass the three edges of tri[3] on their inner side? One-sided; a
/// test of direction only: nothing bounds the line's length. On an edge counts as inside.
VRK_API bool intersect(const Vertex3D* tri, const Vertex3D* origin, const Vertex3D* end);

/// Limits *v to high and then to low, so low wins when low > high.
VRK_API void clamp(float* v, float low, float high);
/// The argument with the largest absolute value, with its sign; the earlier one on a tie.
VRK_API float maximum(float a, float b, float c);

#endif
