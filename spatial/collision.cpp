// A sphere that moves: swept against planes, then tested against the faces of each plane that it reaches.

#include <algorithm>
#include <cmath>

#include "scene/worldcorners.h"
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

struct Candidate
{
    Plane* plane;
    float time;    ///< fraction of the move at which the sphere reaches the plane
    int32_t order; ///< of candidates at one time the first found comes first
};

static octreeNode* leaves[listCapacity];
static Candidate candidates[listCapacity];
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

static int collect(const Move& move, int leafCount)
{
    int count = 0;
    for (int i = 0; i < leafCount; ++i)
        for (Plane* plane = leaves[i]->planes; plane && count < listCapacity; plane = plane->next)
        {
            float time = 0.0f;
            if (plane->flag || !meets(move, *plane, &time))
                continue;
            candidates[count] = {plane, time, count};
            ++count;
        }
    std::sort(candidates, candidates + count,
              [](const Candidate& a, const Candidate& b)
              { return a.time != b.time ? a.time < b.time : a.order < b.order; });
    return count;
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

// The first plane that is hit, with the normal of the face; null if none is.
static Plane* firstHit(const Move& move, int count, Vertex3D* normal)
{
    WorldCorners world;
    for (int i = 0; i < count; ++i)
    {
        Plane* plane = candidates[i].plane;
        for (int face = 0; plane->faces && face < plane->faceCount; ++face)
            if (touches(move, &world, plane->faces[face], normal))
                return plane;
    }
    return nullptr;
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
    const int leafCount = group->octree->traverseNearest(&move.position, radius, leaves, listCapacity);
    int hits = 0;
    for (int pass = 0; pass < iterations && hits < listCapacity; ++pass)
    {
        Vertex3D faceNormal = {0.0f, 0.0f, 0.0f};
        Plane* plane = firstHit(move, collect(move, leafCount), &faceNormal);
        // Without a hit nothing has changed, and no later pass finds any.
        if (!plane)
            break;
        moveOn(&move, faceNormal, slide && pass + 1 < iterations);
        if (normal)
            *normal = faceNormal;
        plane->flag = 1;
        planesHit[hits++] = plane;
    }
    for (int i = 0; i < hits; ++i)
        planesHit[i]->flag = 0;
    *position = move.position;
    return hits > 0;
}
