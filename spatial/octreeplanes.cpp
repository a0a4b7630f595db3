// Faces of a leaf grouped by their plane and material, for collision.

#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include "core/memorylasts.h"
#include "scene/worldcorners.h"
#include "spatial/packedtree.h"
#include "spatial/planesearch.h"
#include "vornik/scene/mesh.h"
#include "vornik/spatial/octree.h"

static int planeCounter = 0;

static WorldFace worldFace(WorldCorners* world, const OTPolyData& poly)
{
    WorldFace result = {};
    world->get(poly.mesh, poly.face, result.corners);
    result.material = poly.mesh->faceMaterials ? poly.mesh->faceMaterials[poly.face].materialIndex : 0;
    result.normal = calcNormal(&result.corners[0], &result.corners[1], &result.corners[2]);
    return result;
}

static Plane* makePlane(const WorldFace& first, const std::vector<PlaneList>& members)
{
    Plane* plane = new Plane;
    plane->create(static_cast<int>(members.size()));
    for (size_t i = 0; plane->faces && i < members.size(); ++i)
        plane->faces[i] = members[i];
    plane->normal = first.normal;
    plane->point = first.corners[0];
    return plane;
}

int octreeNode::createPlanes(float tolerance)
{
    // Every face is put into the world once, however many others it is compared with.
    std::vector<WorldFace> faces;
    WorldCorners world;
    faces.reserve(static_cast<size_t>(polys.size));
    for (int i = 0; i < polys.size; ++i)
        faces.push_back(worldFace(&world, polys.items[i]));
    PlaneSearch search(faces, tolerance);
    std::vector<char> taken(faces.size(), 0);
    std::vector<uint32_t> joining;
    std::vector<PlaneList> members;
    Plane** tail = &planes;
    while (*tail)
        tail = &(*tail)->next;
    for (size_t i = 0; i < faces.size(); ++i)
    {
        if (taken[i])
            continue;
        members.assign(1, {polys.items[i].face, polys.items[i].mesh});
        search.remove(i);
        search.find(i, &joining);
        for (const uint32_t j : joining)
        {
            taken[j] = 1;
            search.remove(j);
            members.push_back({polys.items[j].face, polys.items[j].mesh});
        }
        *tail = makePlane(faces[i], members);
        tail = &(*tail)->next;
    }
    return 0;
}

void octreeNode::constructPlanes(float tolerance)
{
    createPlanes(tolerance);
    unifyPlanes();
    for (octreeNode* node : child)
        if (node)
            node->constructPlanes(tolerance);
}

// Numbers run on through the tree, a node before its children.
void octreeNode::unifyPlanes()
{
    for (Plane* plane = planes; plane; plane = plane->next)
        plane->id = planeCounter++;
}

void octreeNode::makePlanes(float tolerance)
{
    planeCounter = 0;
    whileMemoryLasts([&] { constructPlanes(tolerance); });
    PackedTree::make(this);
}

int octreeNode::destroyPlanes()
{
    PackedTree::markStale(this);
    Plane* list = planes;
    planes = nullptr;
    delete list; // with all behind it
    return 0;
}

void octreeNode::combinePlanes(octreeNode* root, float tolerance)
{
    if (!root)
        return;
    root->subCombinePlanes(this, tolerance);
    for (octreeNode* node : child)
        if (node)
            node->combinePlanes(root, tolerance);
}

void octreeNode::subCombinePlanes(octreeNode* other, float tolerance)
{
    for (Plane* a = planes; a; a = a->next)
        for (Plane* b = other->planes; b; b = b->next)
            if (b->normal * a->normal < 0.00001f && std::fabs((a->point - b->point) * b->normal) < tolerance)
                b->id = a->id;
    for (octreeNode* node : child)
        if (node)
            node->subCombinePlanes(other, tolerance);
}
