#ifndef VORNIK_SPATIAL_OCTREE_H
#define VORNIK_SPATIAL_OCTREE_H

// The spatial index of a group: which faces lie where. OGroup::constructOctree builds it;
// vornik/spatial/queries.h asks it.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Mesh;
class PackedTree;

/// A face of a mesh.
struct OTPolyData
{
    Mesh* mesh;   ///< not owned
    int32_t face; ///< index into its faces
};

/// A growing array of faces.
struct OTPolyList
{
    OTPolyData* items; ///< [room], a malloc block, owned by the node
    int32_t size;      ///< items that count
    int32_t room;      ///< items that fit
};

/// What keeps a few faces without measure from filling all memory: no scene that is to be seen comes near.
enum VRKOctreeLimit
{
    VRK_OCTREE_REFERENCES = 1000000,
    VRK_OCTREE_REFERENCES_EACH = 64
};

/// A cube of the tree. Leaves hold faces, by reference; a face that straddles a border is held by every leaf
/// that it touches. Faces are placed by their mesh's position alone, without rotation and pivot, as they are
/// when the tree is built; nothing follows later motion. Integer results are 0 for success; 1 stands for a
/// call on a null node.
class VRK_API octreeNode
{
public:
    OTPolyList polys;  ///< of a leaf; empty once the node has split
    float radius;      ///< squared, of the sphere around the node, by its extent along x
    bool hasChildren;  ///< all eight
    int32_t depth;     ///< 0 at the root
    Vertex3D min, max; ///< corners; max begins a little above 0, so bounds always reach the origin from below
    octreeNode* child[8]; ///< owned; bit 0 of the number is set above the middle in x, bit 1 in y, bit 2 in z
    Plane* planes;        ///< a leaf's list, owned
    int32_t maxDepth;     ///< limit of the split() that divided this node; 0 on leaves

    octreeNode();
    octreeNode(const octreeNode&) = delete;
    octreeNode& operator=(const octreeNode&) = delete;
    ~octreeNode();

    /// Adds a face to this node. @param grow  widens the node's bounds to hold it
    /// @return 2 for a null mesh or face
    int insert(Mesh* mesh, int face, bool grow);
    /// The same with a record of its own.
    int insert(OTPolyData* poly, bool grow);
    /// Makes the bounds a cube around the same middle. Call it before split().
    void adjustSize();
    /// Divides this node and what is below while there are more than maxFaces in a node of depth maxDepth or
    /// less. Nodes stay whole where their bounds are endless, where memory ends, and once
    /// VRK_OCTREE_REFERENCES have been made, or VRK_OCTREE_REFERENCES_EACH for each face if that is more.
    /// Divides only what the node itself holds: faces inserted behind an earlier split() get new children,
    /// and the earlier ones are deleted with their faces.
    /// @param progress  may be null; called with 0 to 7 as the children of this node are done
    /// @return 2 for limits below 1
    int split(int maxFaces, int maxDepth, void (*progress)(int));

    // Leaves, for callers who then look through their faces. out is [maxOut]; what doesn't fit is dropped.

    /// The leaf that holds a point; of several the one with the lowest child numbers. Null outside the node.
    octreeNode* traverse(Vertex3D* point);
    /// Leaves at 27 points, radius apart, around a point; a leaf may come more than once. 0 for maxOut
    /// below 27.
    int traverseNearest(Vertex3D* point, float radius, octreeNode** out, int maxOut);
    /// Leaves near a sphere whose centre lies in the node. Squares of the radii are added rather than the
    /// radii, so some that touch are left out.
    int traverseSphere(Vertex3D* centre, float radius, octreeNode** out, int maxOut);
    /// Leaves that a segment passes, by child numbers. 0 if start lies outside the node.
    int traverseRay(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut);
    /// Leaves at points along a segment inside the node, in their order. Corners may be missed.
    int traverseRayOLD(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut);

    /// Groups the faces of every leaf into planes. Call it once, on the root, behind split().
    void makePlanes(float tolerance);
    /// Releases this node's planes. @return 0
    int destroyPlanes();

    /// Appends a text to "c:\octree.log".
    void logWrite(const char* text);

private:
    void calcRadius();
    int setBounds(int axis, float low, float high);
    int checkBounds(Vertex3D* v);
    bool pointInside(Vertex3D* p);
    bool polyInside(Vertex3D* triangle);
    void sphereRecursion(Vertex3D* centre, float radius, int& count, octreeNode** out, int maxOut);
    void rayRecursion(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut);
    int createPlanes(float tolerance);
    void constructPlanes(float tolerance);
    void unifyPlanes();
    void combinePlanes(octreeNode* root, float tolerance);
    void subCombinePlanes(octreeNode* other, float tolerance);

    PackedTree* packed; // the tree laid out for queries, shared by its nodes; null until makePlanes()
    int32_t packedLeaf; // number of this leaf in it, -1 for none

    friend class OctreeSplitter;
    friend class PackedTree;
    friend class TreePacker;
    friend struct OctreeProbe; // looks inside for tests
};

// Of triangles and segments against cubes: D. Green and D. Hatch, "Fast Polygon-Cube Intersection Testing",
// Graphics Gems V, 1995. A triangle is three corners.

/// Signed count of the triangle's windings around a point, seen along the normal's largest component.
VRK_API int polygonContainsPoint(const Vertex3D* triangle, const Vertex3D* normal, const Vertex3D* point);
/// Against the cube from -0.5 to 0.5.
VRK_API bool segmentIntersectsCube(const Vertex3D* p, const Vertex3D* q);
/// The same for a triangle. @param normal  its own, of any length
VRK_API bool polygonIntersectsCube(const Vertex3D* triangle, const Vertex3D* normal);
/// Against a cube, taken one per cent wider, of the width that the box has along x. False for one without
/// width.
VRK_API bool triangleIntersectsBox(const Vertex3D* triangle, const Vertex3D* min, const Vertex3D* max);
/// The same for a segment.
VRK_API bool segmentIntersectsBox(const Vertex3D* a, const Vertex3D* b, const Vertex3D* min,
                                  const Vertex3D* max);

#endif
