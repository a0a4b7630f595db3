// Dividing a node of the tree and what is below it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "spatial/packedtree.h"
#include "vornik/spatial/octree.h"

/// A face's corners as the tree places them: moved by the mesh's position alone.
/// @return false for a face or corners that don't exist
bool placedCorners(const OTPolyData& poly, Vertex3D* corners);

/// What a node's faces come to is found out once, not at every level below it.
class OctreeSplitter
{
public:
    OctreeSplitter(octreeNode* top, int faces, int depth);
    /// @param progress  may be null; called with 0 to 7 as the children of the node are done
    void run(void (*progress)(int));

private:
    /// The triangles of a node, by their places in its list: a part of lists.
    struct Held
    {
        size_t begin, size;
    };

    static bool addChildren(octreeNode* parent);
    bool mayDivide(const octreeNode* parent, size_t held) const;
    uint32_t askChildren(uint32_t triangle, const octreeNode& parent, const packed::Node& cubes) const;
    void findChildren(const octreeNode& parent, const Held& held);
    void distribute(const Held& held, Held* below);
    void divide(octreeNode* parent, const Held& held, void (*progress)(int));
    void fill(octreeNode* leaf, const Held& held);

    octreeNode* node;
    int maxFaces, maxDepth;
    int64_t referencesLeft;             // that may still be made
    std::vector<packed::Bounds> bounds; // of the faces of the node
    std::vector<uint32_t> lists;        // of the nodes under way and their children, deeper ones behind
    size_t listsEnd = 0;
    std::vector<uint8_t> children; // touched by each triangle of the node at hand, as bits
};
