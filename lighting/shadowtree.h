#pragma once

// The faces of some groups, arranged as one light sees them, for the shadow rays of a lighting pass.

#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "lighting/shadowface.h"

namespace shadow
{
enum
{
    lanes = 4,   ///< boxes of a node and faces of a packet, tested side by side
    deepest = 80 ///< nodes on the way to a packet
};

/// Least and greatest coordinates, relative to the light.
struct Box
{
    float low[3], high[3];
};

/// Children: their boxes, coordinate by coordinate. Unused lanes have boxes that nothing meets.
struct alignas(16) Node
{
    float bounds[6][lanes]; ///< low x, y, z, then high x, y, z
    float nearest[lanes];   ///< least centroid distance below
    int32_t child[lanes];   ///< a node; below 0 the packet -1 - child
};

/// Faces, and what intersect2 computes of them whatever the ray. Unused lanes hold zeros, which no ray hits.
struct alignas(16) Packet
{
    float e1[3][lanes], e2[3][lanes]; ///< b - a, c - a
    float s[3][lanes], q[3][lanes];   ///< light - a, s x e1
    float t[lanes];                   ///< q . e2
    float distance[lanes];            ///< of the centroid from the light
    int32_t face[lanes];              ///< in ShadowTree::faces
};
} // namespace shadow

/// Gives the answer of groupBlocks, bit for bit, in about the logarithm of the number of faces. Holds until a
/// vertex, a mesh's position or the light moves.
class ShadowTree
{
public:
    /// @param groups  [groupCount], may hold null; kept, like the light
    ShadowTree(const Light& lamp, OGroup* const* sceneGroups, int sceneGroupCount);

    /// One ray at a time: it remembers what blocked the ray before.
    bool blocks(const ShadowTarget& target) const;

private:
    struct Item // of the build
    {
        shadow::Box box;
        float distance; // of the centroid
        int32_t face;
    };

    using Items = std::vector<Item>;

    const Light& light;
    OGroup* const* groups;
    int groupCount;
    bool bounded; // there is a tree, and the light stands where the arithmetic can't overflow
    std::vector<ShadowFace> faces;            // that may block at all
    std::vector<shadow::Packet> packets;      // of the tree
    std::vector<shadow::Packet> alwaysTested; // of faces which no box holds
    std::vector<shadow::Node> nodes;          // the first one is the root
    mutable int32_t before = -1;              // the packet that blocked the last ray

    void build();
    void sortIn(const ShadowFace& face, Items& items, Items& unboxed);
    int32_t buildNode(Items& items, size_t first, size_t last, int depth);
    int32_t buildPacket(const Items& items, size_t first, size_t last);
    shadow::Packet packed(const Items& items, size_t first, size_t last) const;
    bool packetBlocks(const shadow::Packet& packet, const ShadowTarget& target) const;
    bool treeBlocks(const ShadowTarget& target) const;
};

/// Is a place near enough for the products of intersect2 to stay far from the largest float?
bool isBounded(const Vertex3D& v);
