// A search among the faces of a leaf for those that join a plane.
//
// A face joins where its normal's product with the plane's is below 0.0001 and all its corners lie within a
// tolerance of the plane. A node of the hierarchy is passed over where the box around its normals or the box
// around one of its corners rules that out by a margin, so the answers are those of asking all, to the bit.

#include "spatial/planesearch.h"

#include <algorithm>
#include <cmath>

static const uint32_t noFace = UINT32_MAX;
static const size_t few = 4096; // faces that are compared each with each

bool belongsTo(const WorldFace& face, const WorldFace& first, float tolerance)
{
    if (face.material != first.material || !(first.normal * face.normal < 0.0001f))
        return false;
    for (const Vertex3D& corner : face.corners)
        if (!(std::fabs((corner - first.corners[0]) * first.normal) < tolerance))
            return false;
    return true;
}

// Corners, then the normal.
static float valueOf(const WorldFace& face, int part, int axis)
{
    const Vertex3D& v = part < 3 ? face.corners[part] : face.normal;
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

// What is no number or endless never joins.
static bool isFinite(const WorldFace& face)
{
    for (int part = 0; part < 4; ++part)
        for (int axis = 0; axis < 3; ++axis)
            if (!std::isfinite(valueOf(face, part, axis)))
                return false;
    return true;
}

PlaneSearch::PlaneSearch(const std::vector<WorldFace>& all, float planeTolerance)
    : faces(all), tolerance(planeTolerance), taken(all.size(), 0)
{
    if (faces.size() > few)
    {
        buildHierarchy();
        return;
    }
    looks.resize((faces.size() + packed::width - 1) / packed::width);
    order.assign(looks.size() * packed::width, noFace);
    for (size_t i = 0; i < faces.size(); ++i)
        place(static_cast<uint32_t>(i), i);
}

void PlaneSearch::place(uint32_t face, size_t at)
{
    packed::Looks& block = looks[at / packed::width];
    const size_t lane = at % packed::width;
    for (int axis = 0; axis < 3; ++axis)
    {
        block.normal[axis][lane] = valueOf(faces[face], 3, axis);
        block.point[axis][lane] = valueOf(faces[face], 0, axis);
    }
    block.material[lane] = faces[face].material;
    order[at] = face;
}

void PlaneSearch::buildHierarchy()
{
    placeOf.assign(faces.size(), noFace);
    std::vector<uint32_t> sorted;
    for (size_t i = 0; i < faces.size(); ++i)
        if (isFinite(faces[i]))
            sorted.push_back(static_cast<uint32_t>(i));
    while (firstLeaf * packed::width < sorted.size())
        firstLeaf *= 2;
    nodes.resize(2 * firstLeaf);
    looks.resize(firstLeaf);
    order.assign(firstLeaf * packed::width, noFace);
    build(1, firstLeaf, sorted.data(), sorted.data() + sorted.size());
}

void PlaneSearch::bound(Node* node, const uint32_t* begin, const uint32_t* end) const
{
    node->left = static_cast<uint32_t>(end - begin);
    node->leastMaterial = INT32_MAX;
    node->mostMaterial = INT32_MIN;
    for (int part = 0; part < 4; ++part)
    {
        std::fill_n(node->low[part], 3, INFINITY);
        std::fill_n(node->high[part], 3, -INFINITY);
    }
    for (const uint32_t* at = begin; at != end; ++at)
    {
        for (int part = 0; part < 4; ++part)
            for (int axis = 0; axis < 3; ++axis)
            {
                const float value = valueOf(faces[*at], part, axis);
                node->low[part][axis] = std::min(node->low[part][axis], value);
                node->high[part][axis] = std::max(node->high[part][axis], value);
            }
        node->leastMaterial = std::min(node->leastMaterial, faces[*at].material);
        node->mostMaterial = std::max(node->mostMaterial, faces[*at].material);
    }
}

// The part and axis on which the faces of a node differ most, measured by what all differ.
std::pair<int, int> PlaneSearch::widest(const Node& node) const
{
    const Node& all = nodes[1];
    std::pair<int, int> best = {0, 0};
    double mostShare = -1;
    for (int part = 0; part < 4; ++part)
        for (int axis = 0; axis < 3; ++axis)
        {
            const double whole = static_cast<double>(all.high[part][axis]) - all.low[part][axis];
            const double extent = static_cast<double>(node.high[part][axis]) - node.low[part][axis];
            const double share = whole > 0 ? extent / whole : 0;
            if (share > mostShare)
            {
                mostShare = share;
                best = {part, axis};
            }
        }
    return best;
}

// A node of half as many leaves takes its fill of eight faces each, the other one the rest.
void PlaneSearch::build(size_t node, size_t leaves, uint32_t* begin, uint32_t* end)
{
    bound(&nodes[node], begin, end);
    if (leaves == 1)
    {
        size_t at = (node - firstLeaf) * packed::width;
        for (; begin != end; ++begin, ++at)
        {
            place(*begin, at);
            placeOf[*begin] = static_cast<uint32_t>(at);
        }
        return;
    }
    const auto [part, axis] = widest(nodes[node]);
    uint32_t* middle =
        begin + std::min<ptrdiff_t>(static_cast<ptrdiff_t>(leaves / 2 * packed::width), end - begin);
    if (middle != end)
        std::nth_element(begin, middle, end,
                         [this, part = part, axis = axis](uint32_t a, uint32_t b)
                         { return valueOf(faces[a], part, axis) < valueOf(faces[b], part, axis); });
    build(2 * node, leaves / 2, begin, middle);
    build(2 * node + 1, leaves / 2, middle, end);
}

void PlaneSearch::remove(size_t face)
{
    if (taken[face])
        return;
    taken[face] = 1;
    if (nodes.empty() || placeOf[face] == noFace)
        return;
    for (size_t node = firstLeaf + placeOf[face] / packed::width; node > 0; node /= 2)
        --nodes[node].left;
}

static const double rounding = 1e-6; // of a product of floats, several times over

// The least and the most that (p - origin) * normal comes to in a box.
struct Reach
{
    double least = 0, most = 0, size = 0;

    Reach(const float* low, const float* high, const double* origin, const double* normal)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            const double a = (low[axis] - origin[axis]) * normal[axis];
            const double b = (high[axis] - origin[axis]) * normal[axis];
            least += std::min(a, b);
            most += std::max(a, b);
            size += std::max(std::fabs(a), std::fabs(b));
        }
    }
};

bool PlaneSearch::mayHold(const Node& node, const WorldFace& first) const
{
    if (node.left == 0 || first.material < node.leastMaterial || first.material > node.mostMaterial)
        return false;
    const double normal[3] = {first.normal.x, first.normal.y, first.normal.z}, nowhere[3] = {0, 0, 0};
    const Reach look(node.low[3], node.high[3], nowhere, normal);
    if (look.least > 0.0001 + rounding * (1 + look.size))
        return false;
    const Vertex3D& p = first.corners[0];
    const double origin[3] = {p.x, p.y, p.z};
    for (int part = 0; part < 3; ++part)
    {
        const Reach reach(node.low[part], node.high[part], origin, normal);
        const double margin = tolerance + rounding * (1e-30 + reach.size);
        if (reach.least > margin || reach.most < -margin)
            return false;
    }
    return true;
}

// Finds those of some leaves.
void PlaneSearch::ask(size_t begin, size_t end, size_t first, std::vector<uint32_t>* found) const
{
    const WorldFace& face = faces[first];
    const packed::Looked plane = {face.normal, face.corners[0], face.material, tolerance};
    const packed::Looks* const all = looks.data();
    uint32_t bits = 0;
    for (const packed::Looks* at = all + begin; (at = firstToJoin(at, all + end, plane, &bits)) != all + end;
         ++at)
        for (; bits; bits &= bits - 1)
        {
            const size_t place = static_cast<size_t>(at - all) * packed::width;
            const uint32_t other = order[place + static_cast<size_t>(__builtin_ctz(bits))];
            if (other != noFace && !taken[other] && belongsTo(faces[other], face, tolerance))
                found->push_back(other);
        }
}

void PlaneSearch::find(size_t first, std::vector<uint32_t>* found) const
{
    found->clear();
    if (nodes.empty())
    {
        ask(first / packed::width, looks.size(), first, found);
        return;
    }
    if (!isFinite(faces[first]))
        return;
    size_t waiting[64];
    int count = 0;
    waiting[count++] = 1;
    while (count > 0)
    {
        const size_t node = waiting[--count];
        if (!mayHold(nodes[node], faces[first]))
            continue;
        if (node < firstLeaf)
        {
            waiting[count++] = 2 * node;
            waiting[count++] = 2 * node + 1;
        }
        else
            ask(node - firstLeaf, node - firstLeaf + 1, first, found);
    }
    std::sort(found->begin(), found->end());
}
