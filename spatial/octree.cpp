// The tree: filling, dividing, and the walks that find leaves.

#include "vornik/spatial/octree.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/bits.h"
#include "core/memorylasts.h"
#include "platform/file.h"
#include "spatial/octreegeometry.h"
#include "spatial/octreesplit.h"
#include "spatial/packedtree.h"
#include "vornik/core/memory.h"
#include "vornik/scene/mesh.h"

// Hosts hold null trees and rely on the codes for them. The folder is built so that the compiler keeps this
// test.
static bool isNull(const octreeNode* node)
{
    return node == nullptr;
}

octreeNode::octreeNode()
    : polys{nullptr, 0, 0}, radius(0.0f), hasChildren(false),
      depth(0), min{FLT_MAX, FLT_MAX, FLT_MAX}, max{FLT_MIN, FLT_MIN, FLT_MIN}, child{}, planes(nullptr),
      maxDepth(0), packed(nullptr), packedLeaf(-1)
{
}

octreeNode::~octreeNode()
{
    polys.size = 0;
    hasChildren = false;
    depth = 0;
    destroyPlanes();
    PackedTree::leave(this);
    for (octreeNode*& node : child)
    {
        delete node;
        node = nullptr;
    }
    vrkFree(reinterpret_cast<char**>(&polys.items));
}

static bool reserveOne(OTPolyList* list)
{
    if (list->size < list->room)
        return true;
    const int32_t room = list->size + (list->size > 1 ? list->size : 1);
    void* larger = std::realloc(list->items, static_cast<size_t>(room) * sizeof(OTPolyData));
    if (!larger)
        return false;
    list->items = static_cast<OTPolyData*>(larger);
    list->room = room;
    return true;
}

int octreeNode::insert(Mesh* mesh, int face, bool grow)
{
    if (isNull(this))
        return 1;
    if (!mesh)
        return 2;
    OTPolyData poly = {mesh, face};
    return insert(&poly, grow);
}

int octreeNode::insert(OTPolyData* poly, bool grow)
{
    if (isNull(this))
        return 1;
    if (!poly || !poly->mesh)
        return 2;
    Vertex3D corners[3];
    if (!placedCorners(*poly, corners) || !reserveOne(&polys))
        return 0;
    PackedTree::markStale(this);
    polys.items[polys.size++] = *poly;
    for (int i = 0; grow && i < 3; ++i)
        checkBounds(&corners[i]);
    return 0;
}

void octreeNode::calcRadius()
{
    const float half = (min.x + max.x) * 0.5f - min.x;
    radius = 3 * half * half;
}

int octreeNode::setBounds(int axis, float low, float high)
{
    if (isNull(this))
        return 1;
    if (axis < 0 || axis > 2)
        return 2;
    (axis == 0 ? min.x : axis == 1 ? min.y : min.z) = low;
    (axis == 0 ? max.x : axis == 1 ? max.y : max.z) = high;
    return 0;
}

int octreeNode::checkBounds(Vertex3D* v)
{
    if (isNull(this))
        return 1;
    if (!v)
        return 2;
    min = {v->x < min.x ? v->x : min.x, v->y < min.y ? v->y : min.y, v->z < min.z ? v->z : min.z};
    max = {v->x > max.x ? v->x : max.x, v->y > max.y ? v->y : max.y, v->z > max.z ? v->z : max.z};
    calcRadius();
    return 0;
}

void octreeNode::adjustSize()
{
    PackedTree::markStale(this);
    const Vertex3D middle = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    const float x = max.x - min.x, y = max.y - min.y, z = max.z - min.z;
    const float xy = y > x ? y : x;
    const float half = 0.5f * (z > xy ? z : xy);
    min = {middle.x - half, middle.y - half, middle.z - half};
    max = {middle.x + half, middle.y + half, middle.z + half};
    calcRadius();
}

bool octreeNode::pointInside(Vertex3D* p)
{
    return !isNull(this) && p && p->x >= min.x && p->x <= max.x && p->y >= min.y && p->y <= max.y &&
           p->z >= min.z && p->z <= max.z;
}

bool octreeNode::polyInside(Vertex3D* triangle)
{
    return !isNull(this) && triangle && triangleIntersectsBox(triangle, &min, &max);
}

int octreeNode::split(int maxFaces, int depthLimit, void (*progress)(int))
{
    if (isNull(this))
        return 1;
    if (maxFaces < 1 || depthLimit < 1)
        return 2;
    if (polys.size <= maxFaces || depth > depthLimit)
        return 0;
    PackedTree::markStale(this);
    whileMemoryLasts([&] { OctreeSplitter(this, maxFaces, depthLimit).run(progress); });
    return 0;
}

// The first child that holds a point of a node: along every axis the lower half if it does. Rounding may
// leave a point to none: then null.
static octreeNode* childAt(const octreeNode& node, const Vertex3D& p)
{
    const octreeNode &low = *node.child[0], &high = *node.child[7];
    const auto isWithin = [](float value, float from, float to) { return value >= from && value <= to; };
    const int above = (isWithin(p.x, low.min.x, low.max.x) ? 0 : 1) |
                      (isWithin(p.y, low.min.y, low.max.y) ? 0 : 2) |
                      (isWithin(p.z, low.min.z, low.max.z) ? 0 : 4);
    const bool isHeld = (!(above & 1) || isWithin(p.x, high.min.x, high.max.x)) &&
                        (!(above & 2) || isWithin(p.y, high.min.y, high.max.y)) &&
                        (!(above & 4) || isWithin(p.z, high.min.z, high.max.z));
    return isHeld ? node.child[above] : nullptr;
}

octreeNode* octreeNode::traverse(Vertex3D* point)
{
    if (isNull(this) || !pointInside(point))
        return nullptr;
    octreeNode* node = this;
    while (node && node->hasChildren)
        node = childAt(*node, *point);
    return node;
}

int octreeNode::traverseNearest(Vertex3D* point, float distance, octreeNode** out, int maxOut)
{
    if (isNull(this) || !point || !out || maxOut < 27 || !traverse(point))
        return 0;
    const float offsets[3] = {-distance, 0.0f, distance};
    int count = 0;
    for (const float dx : offsets)
        for (const float dy : offsets)
            for (const float dz : offsets)
            {
                Vertex3D sample = {point->x + dx, point->y + dy, point->z + dz};
                octreeNode* leaf = traverse(&sample);
                if (leaf && (count == 0 || leaf != out[count - 1]))
                    out[count++] = leaf;
            }
    return count;
}

int octreeNode::traverseSphere(Vertex3D* centre, float sphereRadius, octreeNode** out, int maxOut)
{
    if (isNull(this) || !centre || !out || maxOut < 1 || !(sphereRadius > 0.0f) || !pointInside(centre))
        return 0;
    if (!hasChildren)
    {
        out[0] = this;
        return 1;
    }
    int count = 0;
    sphereRecursion(centre, sphereRadius, count, out, maxOut);
    return count;
}

void octreeNode::sphereRecursion(Vertex3D* centre, float sphereRadius, int& count, octreeNode** out,
                                 int maxOut)
{
    const Vertex3D middle = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    const float reach = sphereRadius * sphereRadius + radius;
    if (reach <= vrkFakeDistance(centre, &middle))
        return;
    if (hasChildren)
        for (octreeNode* node : child)
            node->sphereRecursion(centre, sphereRadius, count, out, maxOut);
    else if (count < maxOut)
        out[count++] = this;
}

static int rayLeaves = 0; // found by the walk under way

int octreeNode::traverseRay(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut)
{
    if (isNull(this) || !start || !end || !out || maxOut < 1 || !pointInside(start))
        return 0;
    rayLeaves = 0;
    if (segmentIntersectsBox(start, end, &min, &max))
        rayRecursion(start, end, out, maxOut);
    return rayLeaves;
}

void octreeNode::rayRecursion(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut)
{
    if (!hasChildren)
    {
        if (rayLeaves < maxOut)
            out[rayLeaves++] = this;
        return;
    }
    const AskedChildren asked(*start, *end, {child[0]->min, child[7]->min}, {child[0]->max, child[7]->max});
    for (int i = 0; i < 8; ++i)
        if (asked.isPassed(i))
            child[i]->rayRecursion(start, end, out, maxOut);
}

// The dominant component is 1 and the others in proportion, each with the sign of the direction.
static Vertex3D rayIncrement(const Vertex3D& d, float largest)
{
    Vertex3D step = {std::fabs(d.x / largest), std::fabs(d.y / largest), std::fabs(d.z / largest)};
    if (largest == d.x)
        step.x = 1.0f;
    else if (largest == d.y)
        step.y = 1.0f;
    else
        step.z = 1.0f;
    return {std::copysign(step.x, d.x), std::copysign(step.y, d.y), std::copysign(step.z, d.z)};
}

int octreeNode::traverseRayOLD(Vertex3D* start, Vertex3D* end, octreeNode** out, int maxOut)
{
    if (isNull(this) || !start || !end || !out || maxOut < 1 || !pointInside(start) || !pointInside(end))
        return 0;
    // A quarter of the smallest possible leaf.
    const float step = (max.x - min.x) / (std::ldexp(1.0f, maxDepth) * 8);
    if (!(step > 0.0f))
        return 0;
    const Vertex3D d = {(end->x - start->x) / step, (end->y - start->y) / step, (end->z - start->z) / step};
    Vertex3D p = {start->x / step, start->y / step, start->z / step};
    const float largest = maximum(d.x, d.y, d.z);
    if (!(std::fabs(largest) > 0.0f) || !std::isfinite(largest))
        return 0;

    const Vertex3D increment = rayIncrement(d, largest);
    int count = 0;
    for (int64_t i = 0; static_cast<float>(i) < std::fabs(largest); ++i)
    {
        Vertex3D sample = {p.x * step, p.y * step, p.z * step};
        octreeNode* leaf = traverse(&sample);
        if (leaf && (count == 0 || leaf != out[count - 1]))
        {
            if (count == maxOut)
                break;
            out[count++] = leaf;
        }
        const Vertex3D before = p;
        p += increment;
        // In a very fine tree steps are lost in rounding, and the walk comes no further.
        if (sameBits(before, p))
            break;
    }
    return count;
}

void octreeNode::logWrite(const char* text)
{
    FILE* file = vrkOpenFile("c:\\octree.log", "ab");
    if (!file || !text)
    {
        if (file)
            std::fclose(file);
        return;
    }
    std::fwrite(text, 1, std::strlen(text), file);
    std::fclose(file);
}
