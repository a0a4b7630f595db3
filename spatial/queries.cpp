// Rays and heights.

#include "vornik/spatial/queries.h"

#include <cfloat>
#include <chrono>
#include <cstdlib>

#include "core/facecorners.h"
#include "scene/worldcorners.h"
#include "spatial/packedtree.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"

enum
{
    rayLeafCapacity = 32768,
    fewLeafCapacity = 1024
};

float intersect2(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a, const Vertex3D* b,
                 const Vertex3D* c)
{
    const Vertex3D direction = *end - *start;
    const Vertex3D edge1 = *b - *a;
    const Vertex3D edge2 = *c - *a;
    const Vertex3D p = direction ^ edge2;
    const float det = p * edge1;
    // Parallel, or seen from behind.
    if (det < 1e-12f)
        return -1.0f;

    const float inverse = 1.0f / det;
    const Vertex3D s = *start - *a;
    const float u = (s * p) * inverse;
    if (u < 0.0f || u > 1.0f)
        return -1.0f;
    const Vertex3D q = s ^ edge1;
    const float v = (q * direction) * inverse;
    if (v < 0.0f || u + v > 1.0f)
        return -1.0f;
    return (q * edge2) * inverse;
}

Vertex3D findIntersectionPoint(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a,
                               const Vertex3D* b, const Vertex3D* c)
{
    const Vertex3D normal = calcNormal(a, b, c);
    Vertex3D step = *end - *start;
    float slope = normal * step;
    if (slope == 0.0f)
        slope = FLT_MIN;
    step *= -(normal * *start - normal * *a) / slope;
    return *start + step;
}

// Where a ray meets a face of a mesh in the world. @return false if it doesn't, or if the face doesn't exist
static bool hitFace(const Vertex3D& start, const Vertex3D& end, WorldCorners* world, Mesh* mesh, int face,
                    Vertex3D* point)
{
    Vertex3D corners[3];
    if (!world->get(mesh, face, corners) ||
        !(intersect2(&start, &end, &corners[0], &corners[1], &corners[2]) >= 0.0f))
        return false;
    *point = findIntersectionPoint(&start, &end, &corners[0], &corners[1], &corners[2]);
    return true;
}

// Calls use(point, poly) for every hit in a leaf until it returns true. @return did it?
template <class Use>
static bool forEachHit(const Vertex3D& start, const Vertex3D& end, WorldCorners* world,
                       const octreeNode& leaf, Use use)
{
    for (int i = 0; i < leaf.polys.size; ++i)
    {
        const OTPolyData& poly = leaf.polys.items[i];
        Vertex3D point;
        if (hitFace(start, end, world, poly.mesh, poly.face, &point) && use(point, poly))
            return true;
    }
    return false;
}

// The same for a tree that is laid out.
template <class Use>
static void forEachHit(const Vertex3D& start, const Vertex3D& end, PackedTree* tree, int mostLeaves, Use use)
{
    WorldCorners world;
    const packed::Ray ray = packedRay(start, end);
    packed::Leaf* leaf = nullptr;
    tree->begin(ray, mostLeaves);
    bool done = false;
    for (packed::Found found; !done && (found = tree->next(ray, &leaf)) != packed::Found::nothingMore;)
        if (found == packed::Found::changed)
            done = forEachHit(start, end, &world, *leaf->node, use);
        else
            done = tree->eachHit(
                *leaf,
                [&](int place)
                {
                    const OTPolyData& poly = leaf->items[place];
                    Vertex3D corners[3];
                    world.get(poly.mesh, poly.face, corners);
                    return use(findIntersectionPoint(&start, &end, &corners[0], &corners[1], &corners[2]),
                               poly);
                });
}

// Calls use(point, poly) for every hit in the first leaves along a ray until it returns true.
template <class Use>
static void forEachHit(Vertex3D* start, Vertex3D* end, OGroup* group, int mostLeaves, Use use)
{
    static octreeNode* leaves[rayLeafCapacity];
    octreeNode* root = group->octree;
    if (PackedTree* tree = PackedTree::of(root))
    {
        forEachHit(*start, *end, tree, mostLeaves, use);
        return;
    }
    const int count = root->traverseRay(start, end, leaves, mostLeaves);
    WorldCorners world;
    for (int i = 0; i < count; ++i)
        if (forEachHit(*start, *end, &world, *leaves[i], use))
            return;
}

static bool canAsk(const Vertex3D* start, const Vertex3D* end, const OGroup* group)
{
    return start && end && group && group->octree;
}

// Faces whose material has an opacity image let half of the rays through.
static bool stopsRay(const OGroup& group, const OTPolyData& poly)
{
    const Material* material =
        group.activeTList && poly.mesh->faceMaterials
            ? group.activeTList->getMaterial(poly.mesh->faceMaterials[poly.face].materialIndex)
            : nullptr;
    return !material || !material->opacityTexture || std::rand() % 1000 < 500;
}

float vrkRaySceneDistance(Vertex3D* start, Vertex3D* end, OGroup* group)
{
    float best = FLT_MAX;
    if (!canAsk(start, end, group))
        return best;
    forEachHit(start, end, group, rayLeafCapacity,
               [&](const Vertex3D& point, const OTPolyData& poly)
               {
                   const float distance = vrkDistance(start, &point);
                   if (distance < best && stopsRay(*group, poly))
                       best = distance;
                   return false;
               });
    return best;
}

bool vrkRayScene(Vertex3D* start, Vertex3D* end, float maxDistance, OGroup* group)
{
    bool blocked = false;
    if (!canAsk(start, end, group))
        return false;
    forEachHit(start, end, group, fewLeafCapacity,
               [&](const Vertex3D& point, const OTPolyData&)
               { return blocked = vrkDistance(start, &point) < maxDistance; });
    return blocked;
}

bool vrkRayBox(Vertex3D* start, Vertex3D* end, Mesh* mesh, Vertex3D* point)
{
    if (!start || !end || !mesh || !mesh->faces || !mesh->transformedVertices)
        return false;
    for (int i = 0; i < mesh->faceCount; ++i)
    {
        const Facelist& face = mesh->faces[i];
        if (!hasCorners(face, mesh->vertexCount))
            continue;
        const Vertex3D *a = &mesh->transformedVertices[face.a], *b = &mesh->transformedVertices[face.b],
                       *c = &mesh->transformedVertices[face.c];
        if (!(intersect2(start, end, a, b, c) >= 0.0f))
            continue;
        if (point)
            *point = findIntersectionPoint(start, end, a, b, c);
        return true;
    }
    return false;
}

// The hit that is best by a comparison of heights.
template <class IsBetter>
static Vertex3D extremeHit(Vertex3D* start, Vertex3D* end, OGroup* group, Vertex3D result, float toBeat,
                           IsBetter isBetter)
{
    if (!canAsk(start, end, group))
        return result;
    forEachHit(start, end, group, fewLeafCapacity,
               [&](const Vertex3D& point, const OTPolyData&)
               {
                   if (isBetter(point.z, toBeat))
                   {
                       result = point;
                       toBeat = point.z;
                   }
                   return false;
               });
    return result;
}

Vertex3D vrkCheckHeight(Vertex3D* start, Vertex3D* end, OGroup* group)
{
    return extremeHit(start, end, group, {0.0f, 0.0f, -999999.0f}, -100000000.0f,
                      [](float z, float toBeat) { return z > toBeat; });
}

Vertex3D vrkCheckNegativeHeight(Vertex3D* start, Vertex3D* end, OGroup* group)
{
    return extremeHit(start, end, group, {0.0f, 0.0f, 999999.0f}, 100000000.0f,
                      [](float z, float toBeat) { return z < toBeat; });
}

Vertex3D vrkCheckHeight2(Vertex3D* start, Vertex3D* end, OGroup* group)
{
    Vertex3D result = {0.0f, 0.0f, 0.0f};
    float toBeat = FLT_MIN;
    WorldCorners world;
    for (int m = 0; start && end && group && m < group->meshCount; ++m)
        for (int face = 0; group->meshes[m] && face < group->meshes[m]->faceCount; ++face)
        {
            Vertex3D point;
            if (hitFace(*start, *end, &world, group->meshes[m], face, &point) && point.z > toBeat)
            {
                result = point;
                toBeat = point.z;
            }
        }
    return result;
}

void wait(unsigned int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (Clock::now() < end)
        continue;
}
