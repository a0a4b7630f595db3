// Dividing the tree.
//
// Every child is to hold the faces for which triangleIntersectsBox answers true. Most faces are small beside
// a node and lie in one child, away from its sides: then their bounds tell which. The others are held against
// all eight children at once, and only what that leaves open is asked in full.

#include "spatial/octreesplit.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

#include "core/facecorners.h"
#include "spatial/octreegeometry.h"
#include "vornik/scene/mesh.h"

bool placedCorners(const OTPolyData& poly, Vertex3D* corners)
{
    const Mesh& mesh = *poly.mesh;
    if (!mesh.faces || !mesh.calculatedVertices || poly.face < 0 || poly.face >= mesh.faceCount)
        return false;
    const Facelist& face = mesh.faces[poly.face];
    if (!hasCorners(face, mesh.vertexCount))
        return false;
    corners[0] = mesh.calculatedVertices[face.a] + mesh.position;
    corners[1] = mesh.calculatedVertices[face.b] + mesh.position;
    corners[2] = mesh.calculatedVertices[face.c] + mesh.position;
    return true;
}

// In which child a triangle lies is told by its bounds if they keep to one of its halves along every axis,
// away from the other.
static packed::Halves halvesOf(const octreeNode& parent)
{
    const float width = (parent.max.x - parent.min.x) * 0.5f;
    // Boxes are taken half a per cent wider on each side. The rest is for rounding: the plane of a triangle
    // beside the box comes less than 0.0005 widths nearer to it, as long as the triangle is near.
    const float margin = width * 0.0075f, near = width * 0.4f;
    packed::Halves halves = {};
    bool isCube = true;
    for (int axis = 0; axis < 3; ++axis)
    {
        const float low = (&parent.min.x)[axis], high = (&parent.max.x)[axis];
        const float middle = (&parent.child[0]->max.x)[axis];
        halves.low[axis] = low;
        halves.lowEnd[axis] = middle - margin;
        halves.highBegin[axis] = middle + margin;
        halves.high[axis] = high;
        halves.leastNear[axis] = low - near;
        halves.mostNear[axis] = high + near;
        isCube = isCube && std::fabs((high - low) * 0.5f - width) <= width * 1e-3f;
    }
    halves.low[3] = -HUGE_VALF;
    halves.lowEnd[3] = halves.highBegin[3] = halves.high[3] = halves.mostNear[3] = HUGE_VALF;
    // The bounds of a node that is no cube say nothing.
    halves.leastNear[3] = isCube ? -width : HUGE_VALF;
    return halves;
}

static packed::Bounds boundsOf(const Vertex3D* corners)
{
    const Vertex3D &a = corners[0], &b = corners[1], &c = corners[2];
    return {{std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y}), std::min({a.z, b.z, c.z}),
             -32 * AskedTriangle(corners).leastWidth()},
            {std::max({a.x, b.x, c.x}), std::max({a.y, b.y, c.y}), std::max({a.z, b.z, c.z}), 0.0f}};
}

OctreeSplitter::OctreeSplitter(octreeNode* top, int faces, int depth)
    : node(top), maxFaces(faces), maxDepth(depth),
      referencesLeft(std::max<int64_t>(VRK_OCTREE_REFERENCES,
                                       VRK_OCTREE_REFERENCES_EACH * static_cast<int64_t>(top->polys.size)))
{
    bounds.reserve(static_cast<size_t>(top->polys.size));
    for (int i = 0; i < top->polys.size; ++i)
    {
        Vertex3D corners[3];
        const bool exists = placedCorners(top->polys.items[i], corners);
        bounds.push_back(exists ? boundsOf(corners) : packed::Bounds{});
        if (exists)
            lists.push_back(static_cast<uint32_t>(i));
    }
}

void OctreeSplitter::run(void (*progress)(int))
{
    const Held all = {0, lists.size()};
    listsEnd = lists.size();
    if (mayDivide(node, all.size) && addChildren(node))
        divide(node, all, progress);
}

// All children of an endless node would hold all its faces.
bool OctreeSplitter::mayDivide(const octreeNode* parent, size_t held) const
{
    return held > static_cast<size_t>(maxFaces) && parent->depth <= maxDepth &&
           std::isfinite(parent->max.x - parent->min.x) && referencesLeft >= 8 * static_cast<int64_t>(held);
}

// All eight or none, in place of those that a node has from an earlier division. @return false without memory
// for them
bool OctreeSplitter::addChildren(octreeNode* parent)
{
    octreeNode* made[8];
    for (octreeNode*& child : made)
        child = new (std::nothrow) octreeNode;
    const bool areThere = std::find(made, made + 8, nullptr) == made + 8;
    if (areThere)
        std::swap_ranges(made, made + 8, parent->child);
    for (const octreeNode* unused : made)
        delete unused;
    if (!areThere)
        return false;
    const Vertex3D &min = parent->min, &max = parent->max;
    const Vertex3D middle = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    for (int i = 0; i < 8; ++i)
    {
        octreeNode* child = parent->child[i];
        child->depth = parent->depth + 1;
        child->setBounds(0, i & 1 ? middle.x : min.x, i & 1 ? max.x : middle.x);
        child->setBounds(1, i & 2 ? middle.y : min.y, i & 2 ? max.y : middle.y);
        child->setBounds(2, i & 4 ? middle.z : min.z, i & 4 ? max.z : middle.z);
        child->calcRadius();
    }
    return true;
}

// @return bits of the children that a triangle touches
uint32_t OctreeSplitter::askChildren(uint32_t triangle, const octreeNode& parent,
                                     const packed::Node& cubes) const
{
    Vertex3D corners[3];
    placedCorners(node->polys.items[triangle], corners);
    const AskedTriangle asked(corners);
    const float width = (parent.max.x - parent.min.x) * 0.5f;
    const packed::Touched touched =
        childrenTouched(cubes, corners, asked.along, -32 * width <= bounds[triangle].least[3]);
    uint32_t result = touched.surely;
    for (uint32_t bits = touched.perhaps; bits; bits &= bits - 1)
    {
        const octreeNode& child = *parent.child[__builtin_ctz(bits)];
        if (asked.intersects(child.min, child.max))
            result |= bits & -bits;
    }
    return result;
}

void OctreeSplitter::findChildren(const octreeNode& parent, const Held& held)
{
    if (children.size() < held.size)
        children.resize(held.size);
    findOnlyChildren(halvesOf(parent), bounds.data(), &lists[held.begin], held.size, children.data());
    packed::Node cubes = {};
    packCubes(&cubes, parent);
    for (size_t i = 0; i < held.size; ++i)
        if (children[i] == 0)
            children[i] = static_cast<uint8_t>(askChildren(lists[held.begin + i], parent, cubes));
}

// Lists what the children hold, each in the order of the parent.
void OctreeSplitter::distribute(const Held& held, Held* below)
{
    size_t sizes[8] = {};
    for (size_t i = 0; i < held.size; ++i)
        for (uint32_t bits = children[i]; bits; bits &= bits - 1)
            ++sizes[__builtin_ctz(bits)];
    size_t ends[8];
    for (int i = 0; i < 8; ++i)
    {
        below[i] = {listsEnd, sizes[i]};
        ends[i] = listsEnd;
        listsEnd += sizes[i];
    }
    if (lists.size() < listsEnd)
        lists.resize(listsEnd);
    for (size_t i = 0; i < held.size; ++i)
        for (uint32_t bits = children[i]; bits; bits &= bits - 1)
            lists[ends[__builtin_ctz(bits)]++] = lists[held.begin + i];
}

// The children are there.
void OctreeSplitter::divide(octreeNode* parent, const Held& held, void (*progress)(int))
{
    Held below[8];
    const size_t ownListsEnd = listsEnd;
    findChildren(*parent, held);
    distribute(held, below);
    parent->polys.size = 0;
    parent->hasChildren = true;
    for (const Held& list : below)
        referencesLeft -= static_cast<int64_t>(list.size);
    if (progress) // the host may look at all children
        for (int i = 0; i < 8; ++i)
            fill(parent->child[i], below[i]);
    for (int i = 0; i < 8; ++i)
    {
        octreeNode* child = parent->child[i];
        if (mayDivide(child, below[i].size) && addChildren(child))
            divide(child, below[i], nullptr);
        else if (!progress)
            fill(child, below[i]);
        if (progress)
            progress(i);
    }
    listsEnd = ownListsEnd;
    parent->maxDepth = maxDepth;
}

void OctreeSplitter::fill(octreeNode* leaf, const Held& held)
{
    if (held.size == 0)
        return;
    leaf->polys.items = static_cast<OTPolyData*>(std::malloc(held.size * sizeof(OTPolyData)));
    if (!leaf->polys.items)
        return;
    for (size_t i = 0; i < held.size; ++i)
        leaf->polys.items[i] = node->polys.items[lists[held.begin + i]];
    leaf->polys.size = leaf->polys.room = static_cast<int32_t>(held.size);
}
