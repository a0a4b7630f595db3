// Which faces may join the plane of a face: a hierarchy over places and directions, for leaves of so many
// faces that comparing each with each would take hours.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "spatial/packedtree.h"

// A face as it stands in the world now.
struct WorldFace
{
    Vertex3D corners[3];
    Vertex3D normal;
    int material;
};

/// Do two faces belong to one group? Faces that look the same way don't: those that look away from each other
/// and those without a normal join.
bool belongsTo(const WorldFace& face, const WorldFace& first, float tolerance);

/// The faces that have no plane yet.
class PlaneSearch
{
public:
    PlaneSearch(const std::vector<WorldFace>& all, float planeTolerance);
    void remove(size_t face);
    /// Those that belong to a face, in ascending order. Asks each that it can't rule out.
    void find(const WorldFace& first, std::vector<uint32_t>* found) const;

private:
    // What the faces below a node come to.
    struct Node
    {
        float low[4][3], high[4][3]; ///< of the first, second and third corners and of the normals
        int32_t leastMaterial, mostMaterial;
        uint32_t left; ///< faces that have no plane yet
    };

    void build(size_t node, size_t leaves, uint32_t* begin, uint32_t* end);
    void bound(Node* node, const uint32_t* begin, const uint32_t* end) const;
    std::pair<int, int> widest(const Node& node) const;
    void makeLeaf(size_t node, const uint32_t* begin, const uint32_t* end);
    bool mayHold(const Node& node, const WorldFace& first) const;

    const std::vector<WorldFace>& faces;
    double tolerance;
    size_t firstLeaf = 1; // nodes stand as in a heap: those below n are 2n and 2n + 1
    std::vector<Node> nodes;
    std::vector<packed::Looks> looks; // of the leaves
    std::vector<uint32_t> order;      // faces by leaf, eight places each
    std::vector<uint32_t> placeOf;    // of each face in order
    std::vector<char> taken;
};
