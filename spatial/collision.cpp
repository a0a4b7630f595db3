// A sphere that moves: swept against planes, then tested against the faces of each plane that it reaches.

#include <algorithm>
#include <cmath>

#include "scene/worldcorners.h"
#include "spatial/packedtree.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

enum
{
    listCapacity = 16384
};

static octreeNode* leaves[listCapacity];
static Plane* planesHit[listCapacity];

/// One move under way.
struct Move
{
    Vertex3D position, old;
    float radius;
    const OGroup& group;
};

static bool isTwoSided(const OGroup& group, const PlaneList& face)
{
    if (!group.activeTList || !face.mesh || !face.mesh->faceMaterials || face.face < 0 ||
        face.face >= face.mesh->faceCount)
        return false;
    const Material* material =
        group.activeTList->getMaterial(face.mesh->faceMaterials[face.face].materialIndex);
    return material && material->twoSided;
}

// When does the sphere reach a plane? @return false if it doesn't on this move
static bool meets(const Move& move, const Plane& plane, float* time)
{
    const Vertex3D step = move.position - move.old;
    const float slope = step * plane.normal;
    const float distance = (move.old - plane.point) * plane.normal;
    // A plane that the old place touches is no obstacle, or the sphere could never leave it.
    if (!(std::fabs(distance) > move.radius) || slope == 0.0f)
        return false;
    float t = ((plane.point - move.old) * plane.normal + move.radius) / slope;
    if (plane.faceCount > 0 && plane.faces && isTwoSided(move.group, plane.faces[0]))
    {
        const Vertex3D back = -plane.normal;
        const float fromBehind = ((plane.point - move.old) * back + move.radius) / (step * back);
        if (fromBehind < t && fromBehind >= 0.0f)
            t = fromBehind;
    }
    *time = t;
    return t >= 0.0f && t <= 1.0f;
}

// Does the sphere's middle, seen along the face, lie in the triangle grown by the radius? Corners are
// bevelled.
static bool touches(const Move& move, WorldCorners* world, const PlaneList& member, Vertex3D* normal)
{
    Vertex3D corners[3];
    if (!world->get(member.mesh, member.face, corners) || !member.mesh->edgeNormals)
        return false;
    const Vertex3D &a = corners[0], &b = corners[1], &c = corners[2];
    const EdgeNormal& edges = member.mesh->edgeNormals[member.face];
    const auto isWithin = [&](const Vertex3D& corner, const Vertex3D& outward)
    { return (move.position - corner) * outward < move.radius; };
    if (!isWithin(a, edges.edgeNormal[0]) || !isWithin(b, edges.edgeNormal[1]) ||
        !isWithin(c, edges.edgeNormal[2]) || !isWithin(b, edges.cornerNormal[0]) ||
        !isWithin(c, edges.cornerNormal[1]) || !isWithin(a, edges.cornerNormal[2]))
        return false;
    *normal = calcNormal(&a, &b, &c);
    return true;
}

/// The plane that a move hits first: of those whose faces it touches the one that it meets earliest, and of
/// several at one time the first in the leaves.
class FirstHit
{
public:
    explicit FirstHit(const Move& under) : move(under) {}

    void consider(Plane* next)
    {
        float at = 0.0f;
        if (met == listCapacity || next->flag || !meets(move, *next, &at))
            return;
        ++met;
        if (plane && !(at < time))
            return;
        for (int face = 0; next->faces && face < next->faceCount; ++face)
            if (touches(move, &world, next->faces[face], &normal))
            {
                plane = next;
                time = at;
                return;
            }
    }

    Plane* plane = nullptr;               ///< null if none is hit
    Vertex3D normal = {0.0f, 0.0f, 0.0f}; ///< of the face

private:
    const Move& move;
    WorldCorners world;
    float time = 0.0f;
    int met = 0;
};

static void considerAll(const packed::Leaf& leaf, const Move& move, FirstHit* first)
{
    const packed::Sweep sweep = {move.old, move.position - move.old, move.radius};
    Plane* some[64];
    for (uint32_t i = 0; i < leaf.planeCount;)
    {
        // All are asked for before the first is needed.
        int count = 0;
        for (; i < leaf.planeCount && count <= 64 - packed::width; i += packed::width)
            for (uint32_t met = PackedTree::planesMet(leaf.planes[i / packed::width], sweep); met;
                 met &= met - 1)
            {
                const uint32_t number = i + static_cast<uint32_t>(__builtin_ctz(met));
                if (number >= leaf.planeCount)
                    break;
                const packed::PlaneRecord& record = leaf.planeRecords[number];
                __builtin_prefetch(record.plane);
                __builtin_prefetch(record.members);
                __builtin_prefetch(record.edges);
                __builtin_prefetch(static_cast<const char*>(record.edges) + 64);
                some[count++] = record.plane;
            }
        for (int k = 0; k < count; ++k)
            first->consider(some[k]);
    }
}

static FirstHit firstHit(const Move& move, int leafCount)
{
    FirstHit first(move);
    const PackedTree* tree = PackedTree::of(move.group.octree);
    for (int i = 0; i < leafCount; ++i)
        if (const packed::Leaf* leaf = tree ? tree->leafOf(leaves[i]) : nullptr)
            considerAll(*leaf, move, &first);
        else
            for (Plane* plane = leaves[i]->planes; plane; plane = plane->next)
                first.consider(plane);
    return first;
}

// Drops leaves that are listed already: their planes would be met once more, to no avail. Not where so many
// planes are listed that the last may be left out.
static int withoutRepeats(const OGroup& group, int count)
{
    const PackedTree* tree = PackedTree::of(group.octree);
    uint32_t planes = 0;
    for (int i = 0; i < count; ++i)
        if (const packed::Leaf* leaf = tree ? tree->leafOf(leaves[i]) : nullptr)
            planes += leaf->planeCount;
    if (!tree || planes > listCapacity)
        return count;
    int kept = 0;
    for (int i = 0; i < count; ++i)
        if (std::find(leaves, leaves + kept, leaves[i]) == leaves + kept)
            leaves[kept++] = leaves[i];
    return kept;
}

static void moveOn(Move* move, const Vertex3D& normal, bool slide)
{
    if (!slide)
    {
        move->position = move->old;
        return;
    }
    const Vertex3D step = move->position - move->old;
    Vertex3D into = normal;
    into *= step * normal;
    move->position = move->old + (step - into);
}

bool vrkCheckCollision(Vertex3D* position, Vertex3D* oldPosition, float radius, OGroup* group, bool slide,
                       Vertex3D* normal, int iterations)
{
    if (!position || !oldPosition || !group || !group->octree)
        return false;
    Move move = {*position, *oldPosition, radius, *group};
    const int leafCount =
        withoutRepeats(*group, group->octree->traverseNearest(&move.position, radius, leaves, listCapacity));
    int hits = 0;
    for (int pass = 0; pass < iterations && hits < listCapacity; ++pass)
    {
        const FirstHit hit = firstHit(move, leafCount);
        // Without a hit nothing has changed, and no later pass finds any.
        if (!hit.plane)
            break;
        moveOn(&move, hit.normal, slide && pass + 1 < iterations);
        if (normal)
            *normal = hit.normal;
        hit.plane->flag = 1;
        planesHit[hits++] = hit.plane;
    }
    for (int i = 0; i < hits; ++i)
        planesHit[i]->flag = 0;
    *position = move.position;
    return hits > 0;
}
