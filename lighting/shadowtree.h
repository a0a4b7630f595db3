#pragma once

// What a shadow ray of the lighting pass asks: of one face, of a whole group, and of a tree over many faces.

#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "vornik/core/vectors.h"

class Light;
class Mesh;
class OGroup;

/// The corners of a face with the mesh's position added.
struct ShadowFace
{
    Vertex3D a, b, c;
    const Vertex3D* vertices; ///< the mesh's calculatedVertices
    Facelist indices;
};

/// The vertex at which a ray ends.
struct ShadowTarget
{
    const Vertex3D* vertex; ///< its entry: faces that use this very entry never block it
    Vertex3D position;      ///< vertex + offset
    float distance;         ///< from the light
};

ShadowTarget shadowTarget(const Light& light, const Vertex3D* vertex, const Vertex3D& offset);

/// Does the face keep the light from the target?
bool faceBlocks(const Light& light, const ShadowTarget& target, const ShadowFace& face);

/// Does any face of the group? Tests all of them.
bool groupBlocks(const OGroup& group, const Light& light, const ShadowTarget& target);

/// The faces of some groups, arranged as one light sees them. Gives the answer of groupBlocks, bit for bit,
/// in about the logarithm of the number of faces. Holds until a vertex, a mesh's position or the light moves.
class ShadowTree
{
public:
    /// @param groups  [groupCount], may hold null; kept, like the light
    ShadowTree(const Light& lamp, OGroup* const* sceneGroups, int sceneGroupCount);

    bool blocks(const ShadowTarget& target) const;

private:
    struct Box
    {
        float low[3], high[3]; // relative to the light, rounded outward
    };

    struct Caster
    {
        ShadowFace face;
        float distance; // of the centroid from the light
    };

    struct Item // of the build
    {
        Box box;
        int32_t caster;
    };

    struct Node
    {
        Box box;
        float nearest; // least centroid distance below
        int32_t
            first; // of a leaf its first caster; otherwise the second child, the first one follows the node
        int32_t count; // of a leaf its casters, otherwise 0
    };

    const Light& light;
    OGroup* const* groups;
    int groupCount;
    bool bounded;                     // the light stands where the arithmetic can't overflow
    std::vector<Caster> casters;      // of the tree, in its order
    std::vector<Caster> alwaysTested; // which no box holds
    std::vector<Node> nodes;

    void sortIn(const Caster& caster, std::vector<Item>& items);
    void build(std::vector<Item>& items, size_t first, size_t last);
    bool treeBlocks(const ShadowTarget& target) const;
};
