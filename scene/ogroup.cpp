// The container of one scene file: adding, finding, removing and merging what it holds.
//
// Hosts fill the lists too: an empty slot is passed over, and an object that stands in a list twice is
// destroyed once.

#include "vornik/scene/ogroup.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <new>

#include "animation/tracks.h"
#include "rasterizer/d3d/d3dmesh.h"
#include "scene/materialranges.h"
#include "spatial/octreeedit.h"
#include "vornik/animation/path.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"
#include "vornik/particles/particlesource.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/spatial/octree.h"

OGroup::OGroup()
    : meshCount(0), cameraCount(0), lightCount(0), tlistCount(0), pathListCount(0), particleSourceCount(0),
      meshes(), cameras(), lights(), tlists(), pathLists(), particleSources(), activeTList(nullptr),
      activePathList(nullptr), activeCamera(nullptr), octree(nullptr), animated(0), stopAtEnd(0),
      currentFrame(0), firstFrame(0), lastFrame(0), frameCount(0)
{
}

OGroup::~OGroup()
{
    clear();
}

template <class T, int capacity>
static bool append(T* (&slots)[capacity], int32_t& count, T* item)
{
    if (count < 0 || count >= capacity)
        return false;
    slots[count++] = item;
    return true;
}

int OGroup::addMesh(Mesh* mesh)
{
    if (!append(meshes, meshCount, mesh))
        return vrkPutToErrorLog(
            "MeshList is full (OGroup) create another OGroup or increase number of maxMeshs", 15);
    return 0;
}

int OGroup::addLight(Light* light)
{
    if (!append(lights, lightCount, light))
        return vrkPutToErrorLog(
            "LightList is full (OGroup) create another OGroup or increase number of maxLights", 16);
    return 0;
}

int OGroup::addCamera(Camera* camera)
{
    if (!append(cameras, cameraCount, camera))
        return vrkPutToErrorLog(
            "CameraList is full (OGroup) create another OGroup or increase number of maxCameras", 17);
    if (cameraCount == 1)
        activeCamera = camera;
    return 0;
}

int OGroup::addTList(TList* list)
{
    if (!append(tlists, tlistCount, list))
        return vrkPutToErrorLog("TListList is full! Increase number of lists (OGroup)!", 28);
    if (!activeTList)
        activeTList = list;
    return 0;
}

int OGroup::addPathList(PathList* list)
{
    if (!append(pathLists, pathListCount, list))
        return vrkPutToErrorLog(
            "PathList is full (VRKPath) create another PathList or increase number of maxPaths", 32);
    if (!activePathList)
        activePathList = list;
    return 0;
}

int OGroup::addParticleSource(ParticleSource* source)
{
    if (!append(particleSources, particleSourceCount, source))
        return vrkPutToErrorLog("ParticleSourceList is full (OGroup), increase maxParticleSources!", 40);
    return 0;
}

int OGroup::setActiveTList(int index)
{
    if (index < 0 || index >= maxTLists || !tlists[index])
        return vrkPutToErrorLog("TList used in functioncall is NULL!", 36);
    activeTList = tlists[index];
    return 0;
}

int OGroup::setActiveCamera(int index)
{
    if (index < 0 || index >= maxCameras || !cameras[index])
        return vrkPutToErrorLog("CamList used in functioncall is NULL!", 35);
    activeCamera = cameras[index];
    return 0;
}

int OGroup::setActivePathList(int index)
{
    if (index < 0 || index >= maxPaths || !pathLists[index])
        return vrkPutToErrorLog("PathList used in functioncall is NULL!", 34);
    activePathList = pathLists[index];
    firstFrame = activePathList->firstFrame;
    lastFrame = activePathList->lastFrame;
    frameCount = activePathList->frameCount;
    stopAtEnd = activePathList->stopAtEnd;
    for (int i = 0; activePathList->pivots && i < activePathList->pivotCount; i++)
        if (Object* object = activePathList->pivots[i].object)
            object->pivot = activePathList->pivots[i].pivot;
    return 0;
}

// The first object of a list that the test accepts.
template <class T, class Test>
static T* findIn(T* const* slots, int count, Test test)
{
    for (int i = 0; i < count; i++)
        if (slots[i] && test(*slots[i]))
            return slots[i];
    return nullptr;
}

template <class Test>
static Object* findAnywhere(OGroup& group, Test test)
{
    if (Mesh* mesh = findIn(group.meshes, group.meshCount, test))
        return mesh;
    if (Light* light = findIn(group.lights, group.lightCount, test))
        return light;
    return findIn(group.cameras, group.cameraCount, test);
}

static auto hasName(const char* name)
{
    // Lights and cameras that a host made itself may have no name; nothing finds them by name.
    return [name](const Object& object) { return name && object.name && strcmp(object.name, name) == 0; };
}

Object* OGroup::findObject(const char* name)
{
    return findAnywhere(*this, hasName(name));
}

Object* OGroup::findObject(int id)
{
    // -1 is the parent of objects that have none, even if an object carries it as its own number.
    if (id == -1)
        return nullptr;
    return findAnywhere(*this, [id](const Object& object) { return object.objectId == id; });
}

// Destroys what a list holds, each object once, and empties it.
template <class T, int capacity>
static void destroyAll(T* (&slots)[capacity], int32_t& count)
{
    T* owned[capacity];
    T** end = std::copy_n(slots, std::clamp<int>(count, 0, capacity), owned);
    std::sort(owned, end);
    end = std::unique(owned, end);

    std::fill(slots, slots + capacity, nullptr);
    count = 0;
    for (T** item = owned; item != end; ++item)
        delete *item;
}

int OGroup::clear()
{
    destroyAll(meshes, meshCount);
    destroyAll(cameras, cameraCount);
    destroyAll(lights, lightCount);
    destroyAll(tlists, tlistCount);
    destroyAll(pathLists, pathListCount);
    destroyAll(particleSources, particleSourceCount);
    delete octree;
    octree = nullptr;
    activeTList = nullptr;
    activePathList = nullptr;
    activeCamera = nullptr;
    currentFrame = 0;
    firstFrame = 0;
    lastFrame = 0;
    frameCount = 0;
    // animated and stopAtEnd stay: a host that wants them clear makes a new group.
    return 0;
}

// Deletes the paths of an object. The gap of each is closed before the walk moves on, so of two neighbouring
// ones the second stays.
static void delPaths(PathList& list, const Object* object)
{
    for (int i = 0; i < list.pathCount && i < VRK_PATH_CAPACITY; i++)
        if (list.paths[i] && list.paths[i]->object == object)
            list.delPath(i);
}

// Clears what would still lead to an object that is about to be destroyed.
static void forget(OGroup& group, const Mesh* object)
{
    removeFromOctree(group.octree, object);
    const auto orphan = [object](auto** slots, int count)
    {
        for (int i = 0; i < count; i++)
            if (slots[i] && slots[i]->parent == object)
                slots[i]->parent = nullptr;
    };
    orphan(group.meshes, group.meshCount);
    orphan(group.lights, group.lightCount);
    orphan(group.cameras, group.cameraCount);
    for (int i = 0; i < group.pathListCount; i++)
        for (int pivot = 0; group.pathLists[i] && pivot < group.pathLists[i]->pivotCount; pivot++)
            if (group.pathLists[i]->pivots[pivot].object == object)
                group.pathLists[i]->pivots[pivot].object = nullptr;
}

int OGroup::delMesh(Mesh* mesh)
{
    if (!mesh)
        return vrkPutToErrorLog("Object is NULL, cannot use this!", 38);
    for (int i = 0; i < pathListCount; i++)
        if (pathLists[i])
            delPaths(*pathLists[i], mesh);

    Mesh** end = meshes + meshCount;
    Mesh** last = nullptr;
    int listed = 0;
    for (Mesh** slot = meshes; slot < end; slot++)
        if (*slot == mesh)
        {
            last = slot;
            listed++;
        }
    if (!last)
        return vrkPutToErrorLog("Object not found from OGroup given!", 39);

    std::copy(last + 1, end, last);
    meshes[--meshCount] = nullptr;
    // A mesh that was added twice lives on in its other slot.
    if (listed > 1)
        return 0;
    forget(*this, mesh);
    delete mesh;
    return 0;
}

template <class T>
static void copyBlock(T* to, const T* from, int count)
{
    if (to && from && count > 0)
        memmove(to, from, sizeof(T) * size_t(count));
}

// Replaces the material lists of a group by those of another. Lists that both already share stay.
static void shareTLists(OGroup& from, OGroup& to)
{
    TList** firstKept = from.tlists;
    TList** lastKept = from.tlists + from.tlistCount;
    for (int i = 0; i < to.tlistCount; i++)
        if (std::find(firstKept, lastKept, to.tlists[i]) != lastKept)
            to.tlists[i] = nullptr;
    destroyAll(to.tlists, to.tlistCount);
    for (int i = 0; i < from.tlistCount; i++)
        to.addTList(from.tlists[i]);
}

int OGroup::copyMaterialFaceStructures(OGroup* target)
{
    if (!target)
        return vrkPutToErrorLog("OGroup used in functioncall is NULL!", 26);
    if (target == this)
        return 0;

    for (int i = 0; i < meshCount; i++)
    {
        const Mesh* from = meshes[i];
        if (!from)
            continue;
        Mesh* to = findIn(target->meshes, target->meshCount, hasName(from->name));
        if (!to)
            return vrkPutToErrorLog("Object is NULL, cannot use this!", 38);
        if (to->vertexCount != from->vertexCount || to->faceCount != from->faceCount)
            return vrkPutToErrorLog("Fatal! Engine internal structure copy failed!", 50);

        copyBlock(to->faceMaterials, from->faceMaterials, from->faceCount);
        copyBlock(to->faces, from->faces, from->faceCount);
        copyBlock(to->edgeNormals, from->edgeNormals, from->faceCount);
        MaterialFaceList* ranges = copyMaterialRanges(from->materialFaces);
        releaseMaterialRanges(to);
        to->materialFaces = ranges;
        releaseD3DMesh(to->d3dMesh);
    }
    // The target's activeTList still names a list that is now gone; the host chooses another.
    shareTLists(*this, *target);
    return 0;
}

// The first track of an object and a kind, cut down to its first key; null if there is none to cut.
static Key* keepOneKey(const PathList& list, const Object* object, int kind)
{
    VRKPath* path = findTrack(list, object, kind);
    if (!path || path->keyCount < 1)
        return nullptr;
    path->keyCount = 1;
    return path->keys;
}

void OGroup::overrideObjectPosition(const char* name, const Vertex3D* position, const Vertex4D* rotation)
{
    const Object* object = findObject(name);
    if (!object || !activePathList)
        return;
    if (position)
        if (Key* key = keepOneKey(*activePathList, object, VRK_TRACK_POSITION))
        {
            key->position[0] = position->x;
            key->position[1] = position->y;
            key->position[2] = position->z;
        }
    if (rotation)
        if (Key* key = keepOneKey(*activePathList, object, VRK_TRACK_ROTATION))
        {
            key->rotation[0] = rotation->x;
            key->rotation[1] = rotation->y;
            key->rotation[2] = rotation->z;
            key->rotation[3] = rotation->w;
        }
}

void OGroup::markAttach(bool mark, Mesh* mesh)
{
    if (mesh)
        mesh->attachMark = mark ? 1 : 0;
}

// Copies the arrays of a mesh into the merged one, from the given vertex and face on.
static void copyInto(Mesh* merged, const Mesh* source, int vertex, int face)
{
    int n = source->vertexCount;
    copyBlock(merged->calculatedVertices + vertex, source->calculatedVertices, n);
    copyBlock(merged->originalVertices + vertex, source->originalVertices, n);
    copyBlock(merged->calculatedNormals + vertex, source->calculatedNormals, n);
    copyBlock(merged->originalNormals + vertex, source->originalNormals, n);
    copyBlock(merged->textureCoords + vertex, source->textureCoords, n);
    copyBlock(merged->vertexColors + vertex, source->vertexColors, n);
    copyBlock(merged->lightColors + vertex, source->lightColors, n);

    // Faces keep their vertex numbers: all of them refer to the first vertices of the block.
    int m = source->faceCount;
    copyBlock(merged->smoothingGroups + face, source->smoothingGroups, m);
    copyBlock(merged->faces + face, source->faces, m);
    copyBlock(merged->faceMaterials + face, source->faceMaterials, m);
    copyBlock(merged->faceFlags + face, source->faceFlags, m);
}

static bool isMarked(const Mesh* mesh)
{
    return mesh && mesh->attachMark;
}

void OGroup::attach()
{
    int64_t vertices = 0, faces = 0;
    for (int i = 0; i < meshCount; i++)
        if (isMarked(meshes[i]))
        {
            vertices += std::max(meshes[i]->vertexCount, 0);
            faces += std::max(meshes[i]->faceCount, 0);
        }
    if (vertices < 1 || faces < 1 || vertices > INT32_MAX || faces > INT32_MAX)
        return;

    Mesh* merged = new (std::nothrow) Mesh;
    if (!merged)
        return;
    merged->setName("AttachedObject");
    merged->parent = nullptr;
    merged->objectId = 0;
    merged->parentId = 0;
    merged->special = 0;
    merged->specialType = 0;
    merged->specialFade = 0.0f;
    merged->visible = 1;
    merged->createVertices(int(vertices));
    merged->createFaces(int(faces));
    if (merged->vertexCount < vertices || merged->faceCount < faces)
    {
        delete merged;
        return;
    }

    int vertex = 0, face = 0;
    for (int i = 0; i < meshCount; i++)
        if (isMarked(meshes[i]))
        {
            copyInto(merged, meshes[i], vertex, face);
            vertex += std::max(meshes[i]->vertexCount, 0);
            face += std::max(meshes[i]->faceCount, 0);
        }

    delete octree; // first, or each mesh would be taken out of it
    octree = nullptr;

    // The walk moves on although delMesh closed the gap: of neighbouring marked meshes every second one
    // stays.
    for (int i = 0; i < meshCount; i++)
        if (isMarked(meshes[i]))
            delMesh(meshes[i]);
    addMesh(merged);
}
