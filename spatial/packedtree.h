// A tree laid out for queries: what its nodes and the faces of its leaves come to, side by side in memory.
//
// Nothing here is believed unseen. A query compares the matrices of the meshes, and the vertices and faces of
// every leaf that it looks into, with those that the layout was made from, so hosts may write into a mesh as
// they please. Vertices that moved are laid out anew, in place; where faces or counts have changed the leaf
// is asked face by face.
//
// The tree itself is believed: its own functions mark the layout stale, and the queries go without it then.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <memory>
#include <vector>

#include "vornik/core/vectors.h"
#include "vornik/spatial/octree.h"

class Mesh;

namespace packed
{
enum
{
    width = 8,      ///< children of a node, faces of a block, blocks of a group
    chunkBytes = 32 ///< in which arrays are compared
};

/// The cubes of a node's children, as AskedChildren has them.
struct alignas(32) Node
{
    float middle[3][width], scale[width];
    int32_t child[width]; ///< number of a node, or -1 - number of a leaf
    uint32_t withWidth;   ///< a bit for each child
};

/// What is known of a triangle and a node's children, by bits.
struct Touched
{
    uint32_t surely, perhaps; ///< in none of them: surely not
};

/// Bounds of a triangle.
struct alignas(16) Bounds
{
    float least[4], most[4]; ///< the fourth are -32 * AskedTriangle::leastWidth() and 0
};

/// Where the bounds of a triangle may lie for it to be in one child of a node alone.
struct alignas(16) Halves
{
    float low[4], lowEnd[4];         ///< of the lower half
    float highBegin[4], high[4];     ///< of the upper half
    float leastNear[4], mostNear[4]; ///< of all
};

/// Eight faces that are to be grouped into planes, by their first corners.
struct alignas(32) Looks
{
    float normal[3][width], point[3][width];
    int32_t material[width];
};

/// A plane that faces may join.
struct Looked
{
    Vertex3D normal, point;
    int32_t material;
    float tolerance;
};

/// Eight faces in the world, for intersect2: a corner and the edges from there.
struct alignas(32) Faces
{
    float corner[3][width], edge1[3][width], edge2[3][width];
};

/// Their normals: edge2 ^ edge1 over the product of the lengths. No number stands for a face that is never
/// hit, zero for one that must be tested by every ray.
struct alignas(32) Normals
{
    float normal[3][width];
};

/// The bounds of eight blocks, grown by the leaf's margin.
struct alignas(32) Boxes
{
    float low[3][width], high[3][width];
};

/// Equations of eight planes.
struct alignas(32) Planes
{
    float normal[3][width], point[3][width];
};

/// Where the processor finds what the test of a plane needs. Hints, but for the plane itself.
struct PlaneRecord
{
    Plane* plane;
    const void *members, *edges;
};

/// A mesh as it was laid out.
struct MeshCopy
{
    Mesh* mesh;
    int32_t vertexCount, faceCount;
    std::unique_ptr<char[]> vertices, faces; ///< copies of calculatedVertices and faces
    size_t vertexBytes, faceBytes;
    const char *nowVertices, *nowFaces; ///< the arrays that the mesh has now

    // The matrix and what it is made from.
    float placing[10]; ///< rotation, position and pivot
    int32_t rasterizer;
    const void* context;
    double matrix[16];

    uint32_t version; ///< goes up as the matrix or the copies of vertices change
    uint64_t checked; ///< number of the last query that compared it
    bool usable;      ///< in that query: all counts are as they were
};

/// The faces of one mesh in a leaf.
struct Part
{
    MeshCopy* mesh;
    uint32_t version;
    uint32_t vertexChunks, faceChunks; ///< follow one another in Leaf::chunks
};

struct Leaf
{
    octreeNode* node;
    const OTPolyData* items; ///< the node's, and their number
    int32_t size;
    uint32_t blockCount, partCount, planeCount;
    float margin;           ///< by which the boxes have grown; 0: they say nothing
    float middle[3], reach; ///< no corner is farther from the middle, as sum of the coordinates
    Part* parts;
    uint32_t* chunks;          ///< offsets in bytes
    Boxes* boxes;              ///< a group for every eight blocks
    Normals* normals;          ///< [blockCount]
    Faces* faces;              ///< [blockCount]
    uint32_t* order;           ///< [blockCount * width], places in items
    const Plane* first;        ///< head of the node's list
    Planes* planes;            ///< for every eight planes
    PlaneRecord* planeRecords; ///< [planeCount]
};

/// A ray under way.
struct Ray
{
    Vertex3D start, end, direction;
    float inverse[3]; ///< of the direction; large where that is 0
    float length;     ///< of the direction, rounded up
    bool isBounded;   ///< far from the ends of float: boxes may be asked
};

/// A sphere under way.
struct Sweep
{
    Vertex3D old, step;
    float radius;
};

/// What became of a leaf.
enum class Found
{
    nothingMore, ///< no leaf is left
    hits,        ///< bits are set for faces that are hit
    changed      ///< it has to be asked face by face
};
} // namespace packed

class PackedTree
{
public:
    /// Lays out a tree, below its root, with its planes. Without memory the tree stays without.
    static void make(octreeNode* root);
    /// The layout of a root; null if there is none, or one that is no longer true.
    static PackedTree* of(const octreeNode* root);
    /// The tree changes its shape or its faces.
    static void markStale(octreeNode* node);
    /// A node is destroyed, or gets another layout.
    static void leave(octreeNode* node);

    /// Begins a query. @return leaves with faces that the segment passes, in the order of traverseRay, which
    /// finds no more than that many
    int begin(const packed::Ray& ray, int most);
    /// Goes on with the leaves of begin() until there is something to tell.
    packed::Found next(const packed::Ray& ray, packed::Leaf** leaf);
    /// Calls use with the places of the faces hit in a leaf, in their order, until it returns true.
    template <class Use>
    bool eachHit(const packed::Leaf& leaf, Use use)
    {
        bool done = false;
        for (int32_t word = 0; word * 64 < leaf.size; ++word)
        {
            for (uint64_t bits = hitBits[static_cast<size_t>(word)]; bits && !done; bits &= bits - 1)
                done = use(word * 64 + __builtin_ctzll(bits));
            hitBits[static_cast<size_t>(word)] = 0;
        }
        return done;
    }
    /// Bits of the planes that a sphere may meet, of eight. All that it meets are among them.
    static uint32_t planesMet(const packed::Planes& planes, const packed::Sweep& sweep);
    /// Of a leaf of this tree; null where it has none or the node's list is another.
    const packed::Leaf* leafOf(const octreeNode* node) const;

    // For the loops over lanes.
    octreeNode* root = nullptr;
    std::vector<packed::Node> nodes;
    std::vector<packed::Leaf*> leaves;
    std::vector<packed::Leaf*> passed; ///< by the ray under way
    int passedCount = 0, at = 0;
    std::vector<uint64_t> hitBits;
    uint64_t query = 0;
    /// Compares a mesh with its copy. @return is it usable?
    bool check(packed::MeshCopy* copy) const;
    /// Lays out the leaf anew if something has moved. @return false if it can't be
    bool refresh(packed::Leaf* leaf) const;

private:
    friend class TreePacker;
    std::vector<std::unique_ptr<packed::MeshCopy>> meshes;
    struct Freed
    {
        void operator()(char* block) const;
    };
    std::vector<std::unique_ptr<char, Freed>> storage;
    int32_t users = 0; ///< nodes
    bool stale = false;
};

/// Are eight lanes used at a time, rather than four? Results are the same; tests clear it.
extern bool packedLanesAreWide;

/// Fills in the cubes of a divided node's children.
void packCubes(packed::Node* packedNode, const octreeNode& node);
/// Which children does a triangle touch, as far as that can be told at once?
/// @param alongNormal  axis of the normal's largest component
/// @param isPlump      see AskedTriangle
packed::Touched childrenTouched(const packed::Node& node, const Vertex3D* corners, int alongNormal,
                                bool isPlump);
/// Looks for faces with a plane's material whose first corner lies in it and whose normal's product with its
/// own is below 0.0001. @param joining  [out] their bits in the block that is returned
/// @return end if there are none
const packed::Looks* firstToJoin(const packed::Looks* faces, const packed::Looks* end,
                                 const packed::Looked& plane, uint32_t* joining);
/// Finds triangles that lie in one child of a node and surely apart from the others.
/// @param numbers   [count] of the triangles
/// @param children  [out, count] the bit of the child; 0 where bounds don't tell
void findOnlyChildren(const packed::Halves& halves, const packed::Bounds* bounds, const uint32_t* numbers,
                      size_t count, uint8_t* children);
packed::Ray packedRay(const Vertex3D& start, const Vertex3D& end);
