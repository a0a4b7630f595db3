// Which faces may join the plane of a face: each is held against eight at a time, and in leaves of so many
// faces that this would take hours a hierarchy over places and directions chooses which.
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
    /// Those behind a face that belong to it, in ascending order. Asks each that it can't rule out.
    void find(size_t first, std::vector<uint32_t>* found) const;

private:
    // What the faces below a node come to.
    struct Node
    {
        float low[4][3], high[4][3]; ///< of the first, second and third corners and of the normals
        int32_t leastMaterial, mostMaterial;
        uint32_t left; ///< faces that have no plane yet
    };

    void buildHierarchy();
    void build(size_t node, size_t leaves, uint32_t* begin, uint32_t* end);
    void bound(Node* node, const uint32_t* begin, const uint32_t* end) const;
    std::pair<int, int> widest(const Node& node) const;
    void place(uint32_t face, size_t at);
    bool mayHold(const Node& node, const WorldFace& first) const;
    void ask(size_t begin, size_t end, size_t first, std::vector<uint32_t>* found) const;

    const std::vector<WorldFace>& faces;
    float tolerance;
    std::vector<packed::Looks> looks; // of the leaves
    std::vector<uint32_t> order;      // faces by leaf, eight places each
    std::vector<char> taken;

    // Of many faces; few stand in the leaves as they come.
    size_t firstLeaf = 1; // nodes stand as in a heap: those below n are 2n and 2n + 1
    std::vector<Node> nodes;
    std::vector<uint32_t> placeOf; // of each face in order
};
