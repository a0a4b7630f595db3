// Building the tree of shadow rays: how far from a face a ray may pass that intersect2 still reports as a
// hit, and which boxes stand together.
//
// The tree has to give the same answer for every face, rounding of intersect2 included, so a face may be
// passed over only where the float arithmetic must reject it. All rays of a tree start at the light, which
// makes that provable face by face. With s = light - a, e1 = b - a, e2 = c - a and the ray's d, intersect2
// computes
//     det = (d x e2) . e1,  U = s . (d x e2),  V = (s x e1) . d,  T = (s x e1) . e2
// each with an error below 9 eps times the product of the three lengths (eps 2^-24). Exactly,
//     det s + T d - U e1 - V e2 = 0,
// so for the computed values the ray at T / det misses the point (U, V) / det of the face by at most
// 36 eps |s||d||e1||e2| / det. As that point is no farther from the light than |s| + |e1| + |e2| = reach, det
// is at least T |d| / reach, and the miss at most about 36 eps |s||e1||e2| / T * reach, whatever the ray. The
// boxes grow by that much. Where the light stands nearly in the plane of the face, T is too small for that,
// and the face is tested by every ray. T itself belongs to the face: below zero beyond its error, the light
// is behind the face.
//
// Every box grows by another 16 eps * reach. Some 6 of them go to the rounding of s, e1 and e2 and of the
// limits of U and V; the test of the box itself needs 5.
//
// Boxes are divided so that few are met, after Wald, "On fast Construction of SAH-based Bounding Volume
// Hierarchies", 2007, but measured by the share of the light's directions in which they lie.

#include <math.h>

#include <algorithm>
#include <utility>

#include "core/memorylasts.h"
#include "lighting/shadowtree.h"
#include "vornik/scene/object.h"

using shadow::lanes;

// Up to here the products of intersect2 stay far from the largest float.
static const float coordinateLimit = 1e10f;
static const double eps = 1.0 / (1 << 24);

bool isBounded(const Vertex3D& v)
{
    return fabsf(v.x) <= coordinateLimit && fabsf(v.y) <= coordinateLimit && fabsf(v.z) <= coordinateLimit;
}

namespace
{
struct Vector // in double precision
{
    double x, y, z;

    Vector(const Vertex3D& v) : x(v.x), y(v.y), z(v.z) {}
    Vector(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    double dot(const Vector& b) const { return x * b.x + y * b.y + z * b.z; }
    Vector cross(const Vector& b) const { return {y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x}; }
    double length() const { return sqrt(dot(*this)); }
};
} // namespace

static const double neverHit = -1.0;
static const double anywhere = HUGE_VAL;

// Is the point within the box around a face, grown by the margin?
static bool isNear(const Vertex3D& point, const ShadowFace& face, double margin)
{
    auto within = [margin](float p, float a, float b, float c) {
        return std::min({a, b, c}) - margin <= p && p <= std::max({a, b, c}) + margin;
    };
    return within(point.x, face.a.x, face.b.x, face.c.x) && within(point.y, face.a.y, face.b.y, face.c.y) &&
           within(point.z, face.a.z, face.b.z, face.c.z);
}

// How far a ray may pass from a face that intersect2 reports as hit. neverHit: no ray of this light hits the
// face. anywhere: no bound can be given.
static double hitMargin(const Light& light, const ShadowFace& face)
{
    const Vector s(light.location - face.a), e1(face.b - face.a), e2(face.c - face.a);
    const double area = e1.length() * e2.length();
    if (area == 0.0)
        return neverHit;
    const double volume = s.length() * area;
    const double t = s.cross(e1).dot(e2);
    // The second term: T times the inverse of det mustn't vanish into -0, which counts as a hit.
    if (t < -(16.0 * eps * volume + 1e-30 * area))
        return neverHit;

    const double reach = s.length() + e1.length() + e2.length();
    const double rounding = 16.0 * eps * reach; // of s, e1, e2 and of the limits 0 and 1
    // The miss adds to the reach, hence the quotient. 40 for 36, as the float T may lie that far below.
    if (volume > 0.0 && t >= 80.0 * eps * volume)
    {
        const double share = 40.0 * eps * volume / t;
        return share / (1.0 - share) * reach + rounding;
    }

    // A light exactly in the plane of an axis-aligned face, as at the height of a floor: T and one component
    // of all products are exactly 0. Any hit is then at the light itself.
    const bool flat = (s.x == 0.0 && e1.x == 0.0 && e2.x == 0.0) ||
                      (s.y == 0.0 && e1.y == 0.0 && e2.y == 0.0) ||
                      (s.z == 0.0 && e1.z == 0.0 && e2.z == 0.0);
    const double crossed = e1.cross(e2).length();
    if (!flat || crossed < 64.0 * eps * area)
        return anywhere;
    const double margin = 32.0 * eps * volume / crossed + rounding;
    return isNear(light.location, face, margin) ? margin : neverHit;
}

static float roundedDown(double v)
{
    return nextafterf(float(v), -HUGE_VALF);
}

static float roundedUp(double v)
{
    return nextafterf(float(v), HUGE_VALF);
}

static shadow::Box boxOf(const Light& light, const ShadowFace& face, double margin)
{
    const Vector l(light.location), a(face.a), b(face.b), c(face.c);
    return {{roundedDown(std::min({a.x, b.x, c.x}) - l.x - margin),
             roundedDown(std::min({a.y, b.y, c.y}) - l.y - margin),
             roundedDown(std::min({a.z, b.z, c.z}) - l.z - margin)},
            {roundedUp(std::max({a.x, b.x, c.x}) - l.x + margin),
             roundedUp(std::max({a.y, b.y, c.y}) - l.y + margin),
             roundedUp(std::max({a.z, b.z, c.z}) - l.z + margin)}};
}

static const shadow::Box nowhere = {{HUGE_VALF, HUGE_VALF, HUGE_VALF}, {-HUGE_VALF, -HUGE_VALF, -HUGE_VALF}};

static void include(shadow::Box* box, const shadow::Box& other)
{
    for (int axis = 0; axis < 3; axis++)
    {
        box->low[axis] = std::min(box->low[axis], other.low[axis]);
        box->high[axis] = std::max(box->high[axis], other.high[axis]);
    }
}

// Twice the middle.
static float centre(const shadow::Box& box, int axis)
{
    return box.low[axis] + box.high[axis];
}

// About the share of the light's directions in which a box lies, in some unit.
static float measure(const shadow::Box& box)
{
    float size[3], middle[3];
    for (int axis = 0; axis < 3; axis++)
    {
        size[axis] = box.high[axis] - box.low[axis];
        middle[axis] = fabsf(centre(box, axis)) * 0.5f;
    }
    const float distance2 = middle[0] * middle[0] + middle[1] * middle[1] + middle[2] * middle[2];
    const float radius2 = 0.25f * (size[0] * size[0] + size[1] * size[1] + size[2] * size[2]);
    // The light is in the box or close to it.
    if (!(distance2 > radius2))
        return 16.0f;
    const float shown =
        size[0] * size[1] * middle[2] + size[1] * size[2] * middle[0] + size[2] * size[0] * middle[1];
    return std::min(shown / (distance2 * sqrtf(distance2)), 16.0f);
}

ShadowTree::ShadowTree(const Light& lamp, OGroup* const* sceneGroups, int sceneGroupCount)
    : light(lamp), groups(sceneGroups), groupCount(sceneGroupCount), bounded(isBounded(lamp.location))
{
    // Without memory for a tree every ray asks all faces.
    if (bounded)
        bounded = whileMemoryLasts([this] { build(); });
}

void ShadowTree::build()
{
    Items items, unboxed;
    for (int g = 0; g < groupCount; g++)
        if (groups[g])
            anyShadowFace(*groups[g],
                          [&](const ShadowFace& face)
                          {
                              sortIn(face, items, unboxed);
                              return false;
                          });
    for (size_t i = 0; i < unboxed.size(); i += lanes)
        alwaysTested.push_back(packed(unboxed, i, std::min(i + lanes, unboxed.size())));
    if (!items.empty())
        buildNode(items, 0, items.size(), 0);
}

void ShadowTree::sortIn(const ShadowFace& face, Items& items, Items& unboxed)
{
    const float distance = centroidDistance(light, face);
    // No vertex is farther away than that; this drops faces with a coordinate that is no finite number.
    if (!isfinite(distance))
        return;
    const bool isFar = !isBounded(face.a) || !isBounded(face.b) || !isBounded(face.c);
    const double margin = isFar ? anywhere : hitMargin(light, face);
    if (margin == neverHit)
        return;
    const Item item = {margin == anywhere ? nowhere : boxOf(light, face, margin), distance,
                       int32_t(faces.size())};
    (margin == anywhere ? unboxed : items).push_back(item);
    faces.push_back(face);
}

namespace
{
// A part of the items.
struct Range
{
    size_t first, last;
    shadow::Box box;

    size_t count() const { return last - first; }
};

template <class Items>
Range rangeOf(const Items& items, size_t first, size_t last)
{
    Range range = {first, last, nowhere};
    for (size_t i = first; i < last; i++)
        include(&range.box, items[i].box);
    return range;
}

// Items whose centres lie in one slice of the widest axis.
struct Slice
{
    shadow::Box box = nowhere;
    size_t count = 0;

    void add(const Slice& other)
    {
        include(&box, other.box);
        count += other.count;
    }

    float cost() const
    {
        const auto groups = (count + lanes - 1) / lanes;
        return measure(box) * float(groups);
    }
};

const int sliceCount = 16;

// Where the centres lie along the axis on which they are spread most.
struct Spread
{
    int axis = 0;
    float low = 0.0f, width = 0.0f;

    template <class Items>
    Spread(const Items& items, const Range& range)
    {
        for (int other = 0; other < 3; other++)
        {
            float least = HUGE_VALF, most = -HUGE_VALF;
            for (size_t i = range.first; i < range.last; i++)
            {
                least = std::min(least, centre(items[i].box, other));
                most = std::max(most, centre(items[i].box, other));
            }
            if (other == 0 || most - least > width)
            {
                axis = other;
                low = least;
                width = most - least;
            }
        }
    }

    int sliceOf(const shadow::Box& box) const
    {
        return std::min(int((centre(box, axis) - low) / width * float(sliceCount)), sliceCount - 1);
    }
};
} // namespace

// The slice with which the second part begins if the parts are to cost least.
static int bestCut(const Slice (&slices)[sliceCount])
{
    float above[sliceCount];
    Slice second, first;
    for (int i = sliceCount - 1; i > 0; i--)
    {
        second.add(slices[i]);
        above[i] = second.cost();
    }
    int best = sliceCount / 2;
    float least = HUGE_VALF;
    for (int i = 1; i < sliceCount; i++)
    {
        first.add(slices[i - 1]);
        const float cost = first.cost() + above[i];
        if (cost < least)
        {
            least = cost;
            best = i;
        }
    }
    return best;
}

// Divides a range of at least two items and returns where the second part begins. byCount halves it.
template <class Items>
static size_t divide(Items& items, const Range& range, bool byCount)
{
    using Item = typename Items::value_type;
    const auto at = [&](size_t i) { return items.begin() + ptrdiff_t(i); };
    const Spread spread(items, range);
    size_t middle = range.first;
    if (!byCount && spread.width > 0.0f)
    {
        Slice slices[sliceCount];
        for (size_t i = range.first; i < range.last; i++)
        {
            Slice& slice = slices[spread.sliceOf(items[i].box)];
            include(&slice.box, items[i].box);
            slice.count++;
        }
        const int cut = bestCut(slices);
        middle = size_t(std::partition(at(range.first), at(range.last),
                                       [&](const Item& item) { return spread.sliceOf(item.box) < cut; }) -
                        items.begin());
    }
    // Many at one place.
    if (middle == range.first || middle == range.last)
    {
        middle = range.first + range.count() / 2;
        std::nth_element(at(range.first), at(middle), at(range.last),
                         [&](const Item& a, const Item& b)
                         { return centre(a.box, spread.axis) < centre(b.box, spread.axis); });
    }
    return middle;
}

int32_t ShadowTree::buildNode(Items& items, size_t first, size_t last, int depth)
{
    // Divides the part that most rays meet until there is one for each lane.
    Range parts[lanes] = {rangeOf(items, first, last)};
    int count = 1;
    while (count < lanes)
    {
        int widest = -1;
        for (int i = 0; i < count; i++)
            if (parts[i].count() > lanes &&
                (widest < 0 || measure(parts[i].box) > measure(parts[widest].box)))
                widest = i;
        if (widest < 0)
            break;
        const Range whole = parts[widest];
        // From here on halves: 2^31 faces are then divided before the deepest node.
        const size_t middle = divide(items, whole, depth >= shadow::deepest / 2);
        parts[widest] = rangeOf(items, whole.first, middle);
        parts[count++] = rangeOf(items, middle, whole.last);
    }

    const size_t number = nodes.size();
    nodes.emplace_back();
    for (int lane = 0; lane < lanes; lane++)
    {
        shadow::Box box = nowhere;
        float nearest = HUGE_VALF;
        int32_t child = 0;
        if (lane < count)
        {
            const Range& part = parts[lane];
            box = part.box;
            for (size_t i = part.first; i < part.last; i++)
                nearest = std::min(nearest, items[i].distance);
            child = part.count() <= lanes ? buildPacket(items, part.first, part.last)
                                          : buildNode(items, part.first, part.last, depth + 1);
        }
        shadow::Node& node = nodes[number];
        for (int axis = 0; axis < 3; axis++)
        {
            node.bounds[axis][lane] = box.low[axis];
            node.bounds[axis + 3][lane] = box.high[axis];
        }
        node.nearest[lane] = nearest;
        node.child[lane] = child;
    }
    return int32_t(number);
}

int32_t ShadowTree::buildPacket(const Items& items, size_t first, size_t last)
{
    packets.push_back(packed(items, first, last));
    return -int32_t(packets.size());
}

static void put(float (*row)[lanes], size_t lane, const Vertex3D& v)
{
    row[0][lane] = v.x;
    row[1][lane] = v.y;
    row[2][lane] = v.z;
}

shadow::Packet ShadowTree::packed(const Items& items, size_t first, size_t last) const
{
    shadow::Packet packet = {};
    for (size_t lane = 0; lane < last - first; lane++)
    {
        const Item& item = items[first + lane];
        const ShadowFace& face = faces[size_t(item.face)];
        const Vertex3D e1 = face.b - face.a, e2 = face.c - face.a, s = light.location - face.a, q = s ^ e1;
        put(packet.e1, lane, e1);
        put(packet.e2, lane, e2);
        put(packet.s, lane, s);
        put(packet.q, lane, q);
        packet.t[lane] = q * e2;
        packet.distance[lane] = item.distance;
        packet.face[lane] = item.face;
    }
    return packet;
}
