#include "assets/carriednodes.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "assets/linear.h"
#include "assets/loadnodes.h"
#include "vornik/animation/path.h"

enum
{
    mostFrames = 4096,  // of a rewritten track
    mostPoses = 100000, // of all of them; further nodes stay as they are
    mostEffort = 4000000,
    keysPassedInATurn = 16
};

// The last key of a track at or before a frame, and how far it is from there to the next one.
struct Moment
{
    int key;
    double part;

    Moment(const VRKPath& path, int frame) : key(0), part(0)
    {
        // The last record is the closing one.
        while (key + 2 < path.keyCount && path.keys[key + 1].frame <= frame)
            ++key;
        const int from = path.keys[key].frame, to = path.keys[std::min(key + 1, path.keyCount - 1)].frame;
        if (key + 2 < path.keyCount && to > from && frame > from)
            part = static_cast<double>(frame - from) / (static_cast<double>(to) - from);
    }
};

static Point positionAt(const VRKPath* path, int frame)
{
    if (!path || path->keyCount < 1)
        return {};
    const Moment at(*path, frame);
    const float* a = path->keys[at.key].position;
    const float* b = path->keys[std::min(at.key + 1, path->keyCount - 1)].position;
    const Point from{a[0], a[1], a[2]};
    return from + (Point{b[0], b[1], b[2]} - from) * at.part;
}

static double rollAt(const VRKPath* path, int frame)
{
    if (!path || path->keyCount < 1)
        return 0;
    const Moment at(*path, frame);
    const double from = path->keys[at.key].value;
    return from + (path->keys[std::min(at.key + 1, path->keyCount - 1)].value - from) * at.part;
}

static Linear turnOfKey(const float* rotation, double part)
{
    return turn({-rotation[0], -rotation[1], -rotation[2]}, rotation[3] * part * radiansPerDegree);
}

static Linear turnAt(const LoadedNode& node, int frame)
{
    const float first[4] = {node.firstTurn.x, node.firstTurn.y, node.firstTurn.z, node.firstTurn.w};
    Linear turned = turnOfKey(first, 1);
    if (!node.rotation)
        return turned;
    const Moment at(*node.rotation, frame);
    for (int k = 1; k <= at.key; ++k)
        turned = turnOfKey(node.rotation->keys[k].rotation, 1) * turned;
    if (at.part > 0)
        turned = turnOfKey(node.rotation->keys[at.key + 1].rotation, at.part) * turned;
    return turned;
}

// Right, up and backwards of a camera.
static Linear axesOfCamera(const Point& eye, const Point& target, double roll)
{
    const auto unit = [](const Point& p) {
        return p.length() > 1e-12 ? p * (1 / p.length()) : Point{1, 0, 0};
    };
    const auto cross = [](const Point& a, const Point& b) {
        return Point{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    };
    const Point back = unit(eye - target);
    const Point right = unit(cross({0, 0, 1}, back));
    return Linear{right, cross(back, right), back} * turn({0, 0, 1}, -roll * radiansPerDegree);
}

namespace
{

class Carrier
{
public:
    Carrier(const std::deque<LoadedNode>& all, const std::vector<int>& above) : nodes(all), parents(above)
    {
        for (const LoadedNode& node : nodes)
            if (node.type == VRK_NODE_TARGET && node.object)
                targets.emplace(node.object, &node);
    }

    // The nodes from a root down to a node.
    std::vector<int> chainTo(int i) const
    {
        std::vector<int> chain;
        for (; i >= 0; i = parents[static_cast<size_t>(i)])
            chain.push_back(i);
        std::reverse(chain.begin(), chain.end());
        return chain;
    }

    // Where the last node of a chain stands in the world at a frame.
    Pose poseAt(const std::vector<int>& chain, int frame) const
    {
        Pose pose;
        for (const int i : chain)
            pose = poseUnder(pose, nodes[static_cast<size_t>(i)], frame);
        return pose;
    }

    // The last frame at which anything on a node's way to its root has a key.
    int lastFrame(int i) const
    {
        int last = 0;
        forEachTrack(i,
                     [&](const VRKPath& path)
                     {
                         if (path.keyCount > 1)
                             last = std::max(last, path.keys[path.keyCount - 2].frame);
                     });
        return std::clamp<int>(last, 0, mostFrames);
    }

    // About how many turns and moves one pose takes. A key that is only passed over costs far less.
    int64_t effort(int i) const
    {
        int64_t steps = 0;
        for (int at = i; at >= 0; at = parents[static_cast<size_t>(at)])
            ++steps;
        forEachTrack(i,
                     [&](const VRKPath& path) {
                         steps += path.kind == VRK_TRACK_ROTATION ? path.keyCount
                                                                  : path.keyCount / keysPassedInATurn;
                     });
        return steps;
    }

private:
    Pose poseUnder(const Pose& parent, const LoadedNode& node, int frame) const
    {
        Pose pose = {parent.origin + parent.axes * positionAt(node.position, frame), parent.axes};
        if (node.type == VRK_NODE_OBJECT)
            pose.axes = parent.axes * turnAt(node, frame) * stretch(node.scale.x, node.scale.y, node.scale.z);
        else if (const LoadedNode* target = targetOf(node))
            pose.axes =
                axesOfCamera(pose.origin, positionAt(target->position, frame), rollAt(node.roll, frame));
        return pose;
    }

    // Calls visit for every track on a node's way to its root.
    template <class Visit>
    void forEachTrack(int i, Visit visit) const
    {
        for (; i >= 0; i = parents[static_cast<size_t>(i)])
        {
            const LoadedNode& node = nodes[static_cast<size_t>(i)];
            const LoadedNode* target = targetOf(node);
            for (const VRKPath* path :
                 {node.position, node.rotation, node.roll, target ? target->position : nullptr})
                if (path)
                    visit(*path);
        }
    }

    // A target's own parent is left out: targets that hang from anything are rare.
    const LoadedNode* targetOf(const LoadedNode& node) const
    {
        const auto found = targets.find(node.object);
        return node.type == VRK_NODE_CAMERA && found != targets.end() ? found->second : nullptr;
    }

    const std::deque<LoadedNode>& nodes;
    const std::vector<int>& parents;
    std::unordered_map<const Object*, const LoadedNode*> targets;
};

} // namespace

// A turn as a key has it: backwards about its axis, in degrees.
static Vertex4D keyOf(const Linear& m)
{
    const double cosine = std::clamp((m.x.x + m.y.y + m.z.z - 1) / 2, -1.0, 1.0);
    const double angle = std::acos(cosine);
    Point axis{m.y.z - m.z.y, m.z.x - m.x.z, m.x.y - m.y.x};
    if (axis.length() < 1e-9)
    {
        // No turn, or half a one, whose axis is the longest column of m + 1.
        axis = {0, 0, 1};
        for (const Point& column : {m.x + Point{1, 0, 0}, m.y + Point{0, 1, 0}, m.z + Point{0, 0, 1}})
            if (angle > 1 && column.length() > axis.length())
                axis = column;
    }
    const Vertex3D a = (axis * (1 / axis.length())).toFloats();
    return {-a.x, -a.y, -a.z, static_cast<float>(angle / radiansPerDegree)};
}

static Linear turnBetween(const Linear& from, const Linear& to)
{
    Linear back;
    return invert(from, &back) ? to * back : Linear{};
}

// Gives a node one key for each frame.
static void rewriteKeys(LoadedNode* node, const std::vector<Pose>& poses)
{
    const int count = static_cast<int>(poses.size());
    Linear before = turnIn(poses[0].axes);
    node->firstTurn = keyOf(before);
    if (!node->position)
        node->position = addTrack(VRK_TRACK_POSITION, node->object);
    if (!node->rotation)
        node->rotation = addTrack(VRK_TRACK_ROTATION, node->object);
    for (VRKPath* path : {node->position, node->rotation})
        if (path)
            path->initKeys(count + 1);
    for (int i = 0; i < count; ++i)
    {
        const Vertex3D p = poses[static_cast<size_t>(i)].origin.toFloats();
        const Linear now = turnIn(poses[static_cast<size_t>(i)].axes);
        const Vertex4D step = i == 0 ? Vertex4D{0, 0, 1, 0} : keyOf(turnBetween(before, now));
        before = now;
        if (node->position)
        {
            if (i == 0)
                node->position->set(0, p.z, p.y, p.x, leadFrame);
            node->position->set(i + 1, p.z, p.y, p.x, i);
        }
        if (node->rotation)
            node->rotation->set(i, step.z, step.y, step.x, step.w, i);
    }
    if (node->rotation)
        node->rotation->set(count, 0.0f, 0.0f, 1.0f, 0.0f, count - 1);
}

void freeFromCameras(std::deque<LoadedNode>* nodes, std::vector<int>* parents, const std::vector<int>& order)
{
    const std::vector<int> before = *parents;
    const Carrier carrier(*nodes, before);
    std::vector<std::pair<int, std::vector<Pose>>> carried;
    int64_t effort = mostEffort;
    for (const int i : order)
    {
        const LoadedNode& node = (*nodes)[static_cast<size_t>(i)];
        const int above = before[static_cast<size_t>(i)];
        if (above < 0 || !node.object || node.type != VRK_NODE_OBJECT ||
            (*nodes)[static_cast<size_t>(above)].type != VRK_NODE_CAMERA)
            continue;
        const int last = carrier.lastFrame(i);
        effort -= (last + 1) * (carrier.effort(i) + mostEffort / mostPoses);
        if (effort < 0)
            break;
        std::vector<Pose> poses;
        const std::vector<int> chain = carrier.chainTo(i);
        for (int frame = 0; frame <= last; ++frame)
            poses.push_back(carrier.poseAt(chain, frame));
        carried.emplace_back(i, std::move(poses));
    }
    for (const auto& [i, poses] : carried)
    {
        rewriteKeys(&(*nodes)[static_cast<size_t>(i)], poses);
        (*parents)[static_cast<size_t>(i)] = -1;
        (*nodes)[static_cast<size_t>(i)].parentNumber = -1;
    }
}
