#include "assets/loadnodes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "assets/carriednodes.h"
#include "assets/linear.h"
#include "vornik/animation/path.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

enum
{
    mostNodes = 8192,    // a group holds fewer objects, and cameras have two nodes each
    mostCopies = 1 << 21 // vertices and faces, each, of all instances together
};

static OGroup* group = nullptr;
static PathList* paths = nullptr;
static int firstMesh = 0; // of this load
static std::deque<LoadedNode> nodes;
static std::unordered_map<const Mesh*, std::array<float, 12>> meshAxes;
static std::unordered_set<const Object*> taken; // have a node
static int copiedVertices = 0, copiedFaces = 0;

void beginNodes(OGroup* target, PathList* list)
{
    endNodes();
    group = target;
    paths = list;
    firstMesh = target->meshCount;
}

bool areNodesBegun()
{
    return group != nullptr;
}

void endNodes()
{
    group = nullptr;
    paths = nullptr;
    nodes.clear();
    meshAxes.clear();
    taken.clear();
    copiedVertices = copiedFaces = 0;
}

bool hasNodes()
{
    return !nodes.empty();
}

void rememberAxes(const Mesh* mesh, const float* axes)
{
    std::copy_n(axes, 12, meshAxes[mesh].begin());
}

LoadedNode* addNode(int type)
{
    if (nodes.size() >= mostNodes)
        return nullptr;
    LoadedNode& node = nodes.emplace_back();
    node.type = type;
    node.number = static_cast<int>(nodes.size()) - 1; // its place, unless the file tells
    return &node;
}

std::unique_ptr<VRKPath> makeTrack(int keys, int type, int kind, Object* object)
{
    auto path = std::make_unique<VRKPath>(keys, type, kind, object);
    if (!path->keys)
        throw std::bad_alloc();
    return path;
}

VRKPath* addTrack(int kind, Object* object)
{
    auto path = makeTrack(1, VRK_NODE_OBJECT, kind, object);
    return paths->addPath(path.get()) == 0 ? path.release() : nullptr;
}

template <class T>
static T* findNamed(T* const* slots, int from, int count, const char* name)
{
    for (int i = from; i < count; ++i)
        if (slots[i] && slots[i]->name && std::strcmp(slots[i]->name, name) == 0)
            return slots[i];
    return nullptr;
}

static Mesh* addOrDelete(Mesh* mesh)
{
    if (group->addMesh(mesh) == 0)
        return mesh;
    delete mesh;
    return nullptr;
}

static Mesh* makeDummy(const char* name)
{
    Mesh* mesh = new Mesh;
    mesh->setName(name);
    mesh->visible = 0;
    return addOrDelete(mesh);
}

// A further node of a mesh draws a copy of it.
static Mesh* makeInstance(Mesh* mesh)
{
    if (mesh->vertexCount > mostCopies - copiedVertices || mesh->faceCount > mostCopies - copiedFaces)
        return makeDummy(mesh->name);
    copiedVertices += mesh->vertexCount;
    copiedFaces += mesh->faceCount;
    Mesh* copy = static_cast<Mesh*>(mesh->copyObject());
    if (copy->smoothingGroups && mesh->smoothingGroups)
        std::copy_n(mesh->smoothingGroups, mesh->faceCount, copy->smoothingGroups);
    copy->setName(mesh->name); // a block of its own, as every object of a file has
    const auto axes = meshAxes.find(mesh);
    if (axes != meshAxes.end())
        rememberAxes(copy, std::array(axes->second).data());
    return addOrDelete(copy);
}

// Meshes of this load come first: a group may hold one of the name from an earlier load.
static Mesh* meshFor(const char* name)
{
    if (std::strcmp(name, "$$$DUMMY") == 0)
        return makeDummy(name);
    Mesh* mesh = findNamed(group->meshes, firstMesh, group->meshCount, name);
    if (!mesh)
        mesh = findNamed(group->meshes, 0, firstMesh, name);
    if (!mesh)
        return makeDummy(name);
    return taken.count(mesh) ? makeInstance(mesh) : mesh;
}

void takeObject(LoadedNode* node, const char* name)
{
    const int meshes = group->meshCount;
    if (node->type == VRK_NODE_OBJECT)
        node->object = node->mesh = meshFor(name);
    else if (node->type == VRK_NODE_LIGHT)
        node->object = findNamed(group->lights, 0, group->lightCount, name);
    else
        node->object = findNamed(group->cameras, 0, group->cameraCount, name);
    if (node->object)
        taken.insert(node->object);
    node->isNew = group->meshCount > meshes;
}

// Poses, each behind its parent's.

static Point positionOf(const LoadedNode& node)
{
    if (!node.position)
        return {};
    const float* p = node.position->keys[0].position;
    return {p[0], p[1], p[2]};
}

static Linear turnOf(const LoadedNode& node)
{
    const Vertex4D& t = node.firstTurn;
    return turn({-t.x, -t.y, -t.z}, t.w * radiansPerDegree);
}

static Pose poseUnder(const Pose& parent, const LoadedNode& node)
{
    Pose pose = {parent.origin + parent.axes * positionOf(node), parent.axes};
    // Cameras and lights only move.
    if (node.type == VRK_NODE_OBJECT)
        pose.axes = parent.axes * turnOf(node) * stretch(node.scale.x, node.scale.y, node.scale.z);
    return pose;
}

// Index of each node's parent, -1 for roots. Of two nodes with one number the first is meant.
static std::vector<int> findParents()
{
    std::unordered_map<int, int> byNumber;
    for (size_t i = 0; i < nodes.size(); ++i)
        byNumber.emplace(nodes[i].number, static_cast<int>(i));
    std::vector<int> parents(nodes.size(), -1);
    for (size_t i = 0; i < nodes.size(); ++i)
    {
        const auto found = byNumber.find(nodes[i].parentNumber);
        if (nodes[i].parentNumber >= 0 && found != byNumber.end())
            parents[i] = found->second;
    }
    return parents;
}

// Node numbers with every parent in front of its children. Where parents go round in a circle, the node at
// which the walk arrives again becomes a root.
static std::vector<int> sortByDepth(std::vector<int>* parents)
{
    enum State : char
    {
        unseen,
        waiting,
        done
    };
    std::vector<State> state(nodes.size(), unseen);
    std::vector<int> order, chain;
    for (size_t i = 0; i < nodes.size(); ++i)
    {
        int at = static_cast<int>(i);
        while (at >= 0 && state[static_cast<size_t>(at)] == unseen)
        {
            state[static_cast<size_t>(at)] = waiting;
            chain.push_back(at);
            at = (*parents)[static_cast<size_t>(at)];
        }
        if (at >= 0 && state[static_cast<size_t>(at)] == waiting)
            (*parents)[static_cast<size_t>(chain.back())] = -1;
        for (; !chain.empty(); chain.pop_back())
        {
            state[static_cast<size_t>(chain.back())] = done;
            order.push_back(chain.back());
        }
    }
    return order;
}

static bool isFinite(const Point& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Keys of positions are relative to the parent's axes, which are the world's now. A camera's keys are where
// the camera is.
static void rewritePositions(const LoadedNode& node, const Pose& parent)
{
    if (!node.position)
        return;
    const bool moves = node.type == VRK_NODE_CAMERA || node.type == VRK_NODE_TARGET;
    for (int k = 0; k < node.position->keyCount; ++k)
    {
        float* p = node.position->keys[k].position;
        const Point moved = parent.axes * Point{p[0], p[1], p[2]} + (moves ? parent.origin : Point{});
        if (!isFinite(moved))
            continue;
        const Vertex3D v = moved.toFloats();
        p[0] = v.x;
        p[1] = v.y;
        p[2] = v.z;
    }
}

static void rewriteRotations(const LoadedNode& node, const Pose& parent)
{
    if (!node.rotation)
        return;
    const Linear turned = turnIn(parent.axes);
    for (int k = 0; k < node.rotation->keyCount; ++k)
    {
        float* r = node.rotation->keys[k].rotation;
        const Vertex3D axis = (turned * Point{r[0], r[1], r[2]}).toFloats();
        r[0] = axis.x;
        r[1] = axis.y;
        r[2] = axis.z;
    }
}

// A mesh's own axes; the world's if the file gives none that can be used.
static Pose axesOf(const Mesh& mesh)
{
    const auto found = meshAxes.find(&mesh);
    if (found == meshAxes.end())
        return {};
    const float* a = found->second.data();
    return {{a[9], a[10], a[11]}, {{a[0], a[1], a[2]}, {a[3], a[4], a[5]}, {a[6], a[7], a[8]}}};
}

static void turnInsideOut(Mesh* mesh)
{
    for (int i = 0; i < mesh->faceCount; ++i)
        std::swap(mesh->faces[i].b, mesh->faces[i].c);
}

// Where a node puts a vertex at its first key, if the vertex is relative to own.
struct Placing
{
    Point origin, ownOrigin;
    Linear map;

    Placing(const LoadedNode& node, const Pose& pose, const Pose& own, const Linear& toLocal)
        : origin(pose.origin - pose.axes * Point(node.pivot)), ownOrigin(own.origin), map(pose.axes * toLocal)
    {
    }
    Point operator()(const Vertex3D& v) const { return origin + map * (Point(v) - ownOrigin); }
};

// The farthest that a vertex would move, as a part of the mesh's distance from the origin of its axes and of
// the world; below 0 if a vertex came to stand nowhere.
static double farthestMove(const Mesh& mesh, const Placing& place)
{
    double size = 1e-30, move = 0;
    for (int i = 0; i < mesh.vertexCount; ++i)
    {
        const Point from(mesh.originalVertices[i]);
        const Point to = place(mesh.originalVertices[i]);
        if (!isFinite(to) || !(to.length() < 1e30))
            return -1;
        size = std::max({size, from.length(), (from - place.ownOrigin).length()});
        move = std::max(move, (to - from).length());
    }
    return move / size;
}

static Point middleOf(const Mesh& mesh)
{
    Point low(mesh.originalVertices[0]), high = low;
    for (int i = 1; i < mesh.vertexCount; ++i)
    {
        const Vertex3D& v = mesh.originalVertices[i];
        low = {std::min<double>(low.x, v.x), std::min<double>(low.y, v.y), std::min<double>(low.z, v.z)};
        high = {std::max<double>(high.x, v.x), std::max<double>(high.y, v.y), std::max<double>(high.z, v.z)};
    }
    return (low + high) * 0.5;
}

// Moves a mesh's vertices to where its node puts them at the first key. Most stand there already, and keep
// their bits. So do those of converters that count the pivot from the mesh's middle, whatever axes they
// write.
static void bakeVertices(Mesh* mesh, const LoadedNode& node, const Pose& pose)
{
    const double tolerance = 1e-3;
    const Pose own = axesOf(*mesh);
    Linear inverse;
    if (!mesh->originalVertices || mesh->vertexCount < 1 || !invert(own.axes, &inverse))
        return;
    const Linear toLocal = stretch(own.axes.determinant() < 0 ? -1 : 1, 1, 1) * inverse;
    const Placing place(node, pose, own, toLocal);
    const double move = farthestMove(*mesh, place);
    if (move <= tolerance)
        return;
    const double fromMiddle = farthestMove(*mesh, Placing(node, pose, {middleOf(*mesh), {}}, Linear{}));
    if (!node.isNew && fromMiddle >= 0 && fromMiddle <= tolerance)
        return;
    for (int i = 0; i < mesh->vertexCount; ++i)
        mesh->originalVertices[i] = place(mesh->originalVertices[i]).toFloats();
    if (place.map.determinant() < 0)
        turnInsideOut(mesh);
}

static std::vector<Pose> poses; // of the nodes, from placeNodes to finishNodes

void placeNodes()
{
    std::vector<int> parents = findParents();
    poses.assign(nodes.size(), Pose{});
    const std::vector<int> order = sortByDepth(&parents);
    freeFromCameras(&nodes, &parents, order);
    for (const int i : order)
    {
        const LoadedNode& node = nodes[static_cast<size_t>(i)];
        const int above = parents[static_cast<size_t>(i)];
        const Pose parent = above < 0 ? Pose{} : poses[static_cast<size_t>(above)];
        const Pose pose = poseUnder(parent, node);
        poses[static_cast<size_t>(i)] = pose;

        rewritePositions(node, parent);
        rewriteRotations(node, parent);
        if (!node.object || node.type == VRK_NODE_TARGET)
            continue;
        node.object->objectId = node.number;
        node.object->parentId = node.parentNumber;
        node.object->parent = above < 0 ? nullptr : nodes[static_cast<size_t>(above)].object;
        const bool fresh = std::find(group->meshes + firstMesh, group->meshes + group->meshCount,
                                     node.mesh) != group->meshes + group->meshCount;
        if (node.mesh && fresh)
            bakeVertices(node.mesh, node, pose);
    }
}

void finishNodes()
{
    paths->initPivots(static_cast<int>(nodes.size()));
    for (size_t i = 0; i < nodes.size(); ++i)
    {
        const LoadedNode& node = nodes[i];
        if (!node.mesh)
            continue;
        const Vertex3D pivot = (poses[i].origin - Point(node.mesh->position)).toFloats();
        node.mesh->pivot = pivot;
        paths->addPivotPoint(node.mesh, &pivot);
        // The pivot comes off with the rotation track only.
        if (!node.rotation)
            if (VRKPath* path = addTrack(VRK_TRACK_ROTATION, node.mesh))
                path->set(0, 1, 0, 0, 0.0f, 0);
    }
    for (int i = firstMesh; i < group->meshCount; ++i)
    {
        Mesh* mesh = group->meshes[i];
        if (taken.count(mesh))
            continue;
        mesh->parentId = -1;
        mesh->parent = nullptr;
        if (VRKPath* path = addTrack(VRK_TRACK_POSITION, mesh))
            path->set(0, mesh->position.z, mesh->position.y, mesh->position.x, 0);
    }
    poses.clear();
}
