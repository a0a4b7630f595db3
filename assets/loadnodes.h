// The keyframe nodes of the running load, in the tolerant reading.
//
// Exporters write a node's keys relative to its parent and a mesh's pivot in the mesh's own axes, which may
// be turned, stretched and mirrored against the world. The engine plays tracks without any of that: it takes
// a vertex relative to its mesh's centre, minus the pivot, and turns and moves it up the hierarchy. What is
// read is therefore rewritten so that every node's axes are the world's axes at the first key, where the mesh
// stands as its vertices do. Keys then say how it moves from there.
#pragma once

#include <memory>

#include "vornik/core/vectors.h"

class Mesh;
class Object;
class OGroup;
class PathList;
class VRKPath;

/// Frame in front of every other, for a key that holds up to the first of the file.
constexpr int leadFrame = -65536;

struct LoadedNode
{
    Object* object = nullptr; ///< null for a node that moves nothing of the group
    Mesh* mesh = nullptr;     ///< object, if it is one
    bool isNew = false;       ///< the mesh was made for this node
    int type = 0;             ///< VRK_NODE_...
    int number = 0, parentNumber = -1;
    VRKPath* position = nullptr; ///< its tracks; null where it has none or the list is full
    VRKPath* rotation = nullptr;
    VRKPath* roll = nullptr;
    Vertex3D pivot = {0, 0, 0};
    Vertex3D scale = {1, 1, 1};        ///< of the first key
    Vertex4D firstTurn = {0, 0, 1, 0}; ///< first rotation key: axis, and degrees
};

/// Starts a load into a group.
void beginNodes(OGroup* group, PathList* paths);
/// Between beginNodes and endNodes?
bool areNodesBegun();
/// The three axes and the origin of a mesh of this load. @param axes  [12]
void rememberAxes(const Mesh* mesh, const float* axes);
/// A new node; null when there are more than any group has objects for.
LoadedNode* addNode(int type);
/// A track with room for its keys: without memory for them it throws.
std::unique_ptr<VRKPath> makeTrack(int keys, int type, int kind, Object* object);
/// A track of one key for an object; null where the list is full.
VRKPath* addTrack(int kind, Object* object);
/// Gives a node the object of its name: a mesh that has a node already is copied, and a name without a mesh
/// becomes a hidden mesh without vertices.
void takeObject(LoadedNode* node, const char* name);
/// Works out parents, and rewrites keys and where needed vertices. Before meshes are finished.
void placeNodes();
/// Sets pivots, and keeps meshes without a node where they are. When meshes are finished.
void finishNodes();
bool hasNodes();
void endNodes();
