// Shadow rays through the tree. shadowtreebuild.cpp tells why a ray that misses the box of a face can't hit
// the face, and makes the boxes.
//
// Boxes are relative to the light, where all rays start, and a place on the ray is given by its largest
// coordinate: it reaches a box's side x at x * largest / d_x. That rounds by 2 eps of the value (eps 2^-24).
// Hits lie within 2 reach of the light and 5 eps reach or more inside the box of their face, so the ray
// enters the box no later than it hits and leaves it no earlier, rounding included; rounding never turns an
// order around, so the same is true of larger boxes. Where d_x is nought, or too small to matter, the factor
// is 1e20 with its sign, which puts the sides beyond all hits, before and behind.
//
// Faces are tested four at a time, operation by operation as intersect2 does it for one.

#include "lighting/shadowtree.h"

#include <math.h>
#include <string.h>

#include <algorithm>

#include "vornik/scene/object.h"

using shadow::lanes;

typedef float Floats __attribute__((vector_size(lanes * 4)));
typedef int32_t Ints __attribute__((vector_size(lanes * 4)));

static Floats load(const float* from)
{
    Floats lane;
    memcpy(&lane, from, sizeof lane);
    return lane;
}

// A bit for each lane that is true.
static unsigned bitsOf(const Ints& truths)
{
#ifdef __SSE__
    return unsigned(__builtin_ia32_movmskps(Floats(truths)));
#else
    unsigned bits = 0;
    for (int i = 0; i < lanes; i++)
        bits |= truths[i] ? 1u << i : 0u;
    return bits;
#endif
}

static Floats lesser(const Floats& a, const Floats& b)
{
    return a < b ? a : b;
}

static Floats greater(const Floats& a, const Floats& b)
{
    return a > b ? a : b;
}

namespace
{
struct Ray
{
    Vertex3D d; // as intersect2 has it, rounded
    float inverse[3];
    int nearSide[3]; // rows of Node::bounds
    int farSide[3];

    explicit Ray(const Vertex3D& direction) : d(direction)
    {
        const float all[3] = {d.x, d.y, d.z};
        const float largest = std::max({fabsf(d.x), fabsf(d.y), fabsf(d.z)});
        for (int axis = 0; axis < 3; axis++)
        {
            const float along = fabsf(all[axis]);
            inverse[axis] = copysignf(along > 0.0f ? std::min(largest / along, 1e20f) : 1e20f, all[axis]);
            const bool backwards = inverse[axis] < 0.0f;
            nearSide[axis] = axis + (backwards ? 3 : 0);
            farSide[axis] = axis + (backwards ? 0 : 3);
        }
    }
};
} // namespace

// The children whose boxes a ray meets and which hold a face nearer than the distance, as bits.
static unsigned childrenMet(const shadow::Node& node, const Ray& ray, float distance)
{
    Floats enter = load(node.bounds[ray.nearSide[0]]) * ray.inverse[0];
    Floats leave = load(node.bounds[ray.farSide[0]]) * ray.inverse[0];
    for (int axis = 1; axis < 3; axis++)
    {
        enter = greater(enter, load(node.bounds[ray.nearSide[axis]]) * ray.inverse[axis]);
        leave = lesser(leave, load(node.bounds[ray.farSide[axis]]) * ray.inverse[axis]);
    }
    enter = greater(enter, Floats{});
    return bitsOf((enter <= leave) & (load(node.nearest) < distance));
}

// The faces that intersect2 reports as hit by the ray, and whose centroids are nearer than the distance.
static unsigned facesHit(const shadow::Packet& packet, const Vertex3D& d, float distance)
{
    const Floats e2x = load(packet.e2[0]), e2y = load(packet.e2[1]), e2z = load(packet.e2[2]);
    const Floats px = d.y * e2z - e2y * d.z, py = e2x * d.z - d.x * e2z, pz = e2y * d.x - d.y * e2x;
    const Floats det = px * load(packet.e1[0]) + py * load(packet.e1[1]) + pz * load(packet.e1[2]);
    const Floats inverse = 1.0f / det;
    const Floats u = (load(packet.s[0]) * px + load(packet.s[1]) * py + load(packet.s[2]) * pz) * inverse;
    const Floats v = (load(packet.q[0]) * d.x + load(packet.q[1]) * d.y + load(packet.q[2]) * d.z) * inverse;
    const Floats t = load(packet.t) * inverse;
    const Ints missed = (det < 1e-12f) | (u < 0.0f) | (u > 1.0f) | (v < 0.0f) | (u + v > 1.0f);
    return bitsOf(~missed & (t >= 0.0f) & (load(packet.distance) < distance));
}

bool ShadowTree::packetBlocks(const shadow::Packet& packet, const ShadowTarget& target) const
{
    const unsigned hit = facesHit(packet, target.position - light.location, target.distance);
    for (int i = 0; hit >> i; i++)
        if (hit >> i & 1 && mayBlock(faces[size_t(packet.face[i])], target))
            return true;
    return false;
}

bool ShadowTree::blocks(const ShadowTarget& target) const
{
    if (!bounded || !isBounded(target.position))
    {
        for (int g = 0; g < groupCount; g++)
            if (groups[g] && groupBlocks(*groups[g], light, target))
                return true;
        return false;
    }
    for (const shadow::Packet& packet : alwaysTested)
        if (packetBlocks(packet, target))
            return true;
    return !nodes.empty() && treeBlocks(target);
}

bool ShadowTree::treeBlocks(const ShadowTarget& target) const
{
    // Neighbours are mostly in the shadow of one thing.
    if (before >= 0 && packetBlocks(packets[size_t(before)], target))
        return true;
    const Ray ray(target.position - light.location);
    int32_t waiting[shadow::deepest * lanes];
    int depth = 0;
    int32_t at = 0;
    for (;;)
    {
        if (at < 0)
        {
            if (packetBlocks(packets[size_t(-1 - at)], target))
            {
                before = -1 - at;
                return true;
            }
        }
        else
        {
            const shadow::Node& node = nodes[size_t(at)];
            for (unsigned met = childrenMet(node, ray, target.distance); met; met &= met - 1)
                waiting[depth++] = node.child[__builtin_ctz(met)];
        }
        if (depth == 0)
            return false;
        at = waiting[--depth];
    }
}
