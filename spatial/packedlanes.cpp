// Rays through a packed tree, many children, boxes and faces at once.
//
// A face is passed over only where intersect2 must reject it, rounding included. With s = start - a,
// e1 = b - a, e2 = c - a and the ray's d, intersect2 computes
//     det = (d x e2) . e1,  U = s . (d x e2),  V = (s x e1) . d,  T = (s x e1) . e2
// each with an error below 9 eps times the product of the three lengths (eps 2^-24). Exactly,
//     det s + T d - U e1 - V e2 = 0,
// so for the computed values the ray at T / det misses the point (U, V) / det of the face by at most
// 36 eps |s||d||e1||e2| / det. A leaf's boxes have grown by a margin. For a face whose det / (|e1||e2|) is
// above 72 eps |s||d| / margin the miss is less than half of it; what is left of it takes the rounding of s,
// of the box and of the box test, as long as 16 eps |s| is less than the margin. So a hit on such a face
// shows in the box test. Where det is below nought by more than its error, the face shows its back and is
// never hit. All others are tested.
//
// The margin must stay above what underflow can do, and coordinates far from the ends of float: leaves with
// others have no margin, and all of their faces are tested.

#include <cmath>
#include <cstring>

#include "spatial/packedtree.h"
#include "vornik/scene/mesh.h"

static const float eps = 1.0f / (1 << 24);

enum
{
    deepestTree = 64,
    emptyLeaf = INT32_MIN
};

// How far all corners of a triangle have to lie beside a unit cube, along its normal, to be surely apart.
static const float besideMargin = 0.5f + 1.0f / 64;

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace narrow
{
#define LANES 4
#define LANES_TARGET
#if defined(__SSE2__)
#define LANES_BITS(v) static_cast<uint32_t>(_mm_movemask_ps((__m128)(v)))
#else
#define LANES_BITS(v) bitsOf((Ints)(v))
typedef int32_t FourInts __attribute__((vector_size(16)));
static uint32_t bitsOf(const FourInts& v)
{
    return (v[0] < 0 ? 1u : 0u) | (v[1] < 0 ? 2u : 0u) | (v[2] < 0 ? 4u : 0u) | (v[3] < 0 ? 8u : 0u);
}
#endif
static inline uint32_t bits(const int32_t __attribute__((vector_size(16))) & v)
{
    return LANES_BITS(v);
}
#include "spatial/packedlanes.inc"
} // namespace narrow

// Compilers for Windows don't keep the stack aligned as wide registers need it.
#if defined(__x86_64__) && defined(__ELF__)
#define HAS_WIDE_LANES
namespace wide
{
#define LANES 8
#define LANES_TARGET __attribute__((target("avx2")))
#define LANES_BITS(v) static_cast<uint32_t>(_mm256_movemask_ps((__m256)(v)))
#include "spatial/packedlanes.inc"
} // namespace wide
bool packedLanesAreWide = __builtin_cpu_supports("avx2");
#else
bool packedLanesAreWide = false;
#endif

static bool isBounded(const Vertex3D& v)
{
    return std::fabs(v.x) <= 1e10f && std::fabs(v.y) <= 1e10f && std::fabs(v.z) <= 1e10f;
}

packed::Ray packedRay(const Vertex3D& start, const Vertex3D& end)
{
    packed::Ray ray = {start, end, end - start, {}, 0.0f, false};
    const float d[3] = {ray.direction.x, ray.direction.y, ray.direction.z};
    float largest = 0.0f, smallest = 1.0f;
    for (int i = 0; i < 3; ++i)
    {
        const float size = std::fabs(d[i]);
        // Too large for any distance to reach; not for a product with nought.
        ray.inverse[i] = size == 0.0f ? 1e37f : 1.0f / d[i];
        largest = size > largest ? size : largest;
        smallest = size != 0.0f && size < smallest ? size : smallest;
    }
    ray.length = std::sqrt(ray.direction * ray.direction) * 1.001f;
    ray.isBounded = isBounded(start) && isBounded(ray.direction) && largest >= 1e-10f && smallest >= 1e-30f;
    return ray;
}

int PackedTree::begin(const packed::Ray& ray, int most)
{
    ++query;
    at = passedCount = 0;
    Vertex3D start = ray.start;
    if (!root->pointInside(&start) || !segmentIntersectsBox(&ray.start, &ray.end, &root->min, &root->max))
        return 0;
    if (nodes.empty())
    {
        passedCount = static_cast<int>(leaves.size());
        for (size_t i = 0; i < leaves.size(); ++i)
            passed[i] = leaves[i];
    }
    else
    {
#ifdef HAS_WIDE_LANES
        passedCount = packedLanesAreWide ? wide::passedLeaves(*this, ray, most)
                                         : narrow::passedLeaves(*this, ray, most);
#else
        passedCount = narrow::passedLeaves(*this, ray, most);
#endif
    }
    return passedCount;
}

packed::Found PackedTree::next(const packed::Ray& ray, packed::Leaf** leaf)
{
#ifdef HAS_WIDE_LANES
    if (packedLanesAreWide)
        return wide::nextLeaf(*this, ray, leaf);
#endif
    return narrow::nextLeaf(*this, ray, leaf);
}

uint32_t PackedTree::planesMet(const packed::Planes& planes, const packed::Sweep& sweep)
{
#ifdef HAS_WIDE_LANES
    if (packedLanesAreWide)
        return wide::planesMet(planes, sweep);
#endif
    return narrow::planesMet(planes, sweep);
}

packed::Touched childrenTouched(const packed::Node& node, const Vertex3D* corners, int alongNormal,
                                bool isPlump)
{
#ifdef HAS_WIDE_LANES
    if (packedLanesAreWide)
        return wide::childrenTouched(node, corners, alongNormal, isPlump);
#endif
    return narrow::childrenTouched(node, corners, alongNormal, isPlump);
}

const packed::Looks* firstToJoin(const packed::Looks* faces, const packed::Looks* end,
                                 const packed::Looked& plane, uint32_t* joining)
{
#ifdef HAS_WIDE_LANES
    if (packedLanesAreWide)
        return wide::firstToJoin(faces, end, plane, joining);
#endif
    return narrow::firstToJoin(faces, end, plane, joining);
}

// The lanes are the axes, and the last asks whether the triangle may be told by its bounds.
void findOnlyChildren(const packed::Halves& halves, const packed::Bounds* bounds, const uint32_t* numbers,
                      size_t count, uint8_t* children)
{
    typedef float Four __attribute__((vector_size(16)));
    Four low, lowEnd, highBegin, high, leastNear, mostNear;
    std::memcpy(&low, halves.low, sizeof low);
    std::memcpy(&lowEnd, halves.lowEnd, sizeof low);
    std::memcpy(&highBegin, halves.highBegin, sizeof low);
    std::memcpy(&high, halves.high, sizeof low);
    std::memcpy(&leastNear, halves.leastNear, sizeof low);
    std::memcpy(&mostNear, halves.mostNear, sizeof low);
    for (size_t i = 0; i < count; ++i)
    {
        Four least, most;
        std::memcpy(&least, bounds[numbers[i]].least, sizeof least);
        std::memcpy(&most, bounds[numbers[i]].most, sizeof most);
        const auto isBelow = (most >= low) & (most < lowEnd);
        const auto isAbove = (least > highBegin) & (least <= high);
        const auto isTold = (isBelow | isAbove) & (least >= leastNear) & (most <= mostNear);
        const uint32_t across = narrow::bits((least < low) | (most > high));
        // A corner is inside as long as the triangle leaves the node along one axis only.
        const bool isSure = narrow::bits(isTold) == 15 && (across & (across - 1)) == 0;
        children[i] = isSure ? static_cast<uint8_t>(1u << narrow::bits(isAbove)) : 0;
    }
}
