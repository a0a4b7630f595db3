// The scene loader: one pass over the chunks of a .3DS file, then passes over what it made.

#include "vornik/assets/load3ds.h"

#include <limits.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <unordered_map>

#include "assets/chunkwalk.h"
#include "assets/loadkeyframes.h"
#include "assets/loadmaterials.h"
#include "assets/loadnodes.h"
#include "assets/objectnames.h"
#include "assets/packread.h"
#include "core/memorylasts.h"
#include "platform/file.h"
#include "vornik/animation/path.h"
#include "vornik/assets/loader.h"
#include "vornik/assets/read3dskeyframer.h"
#include "vornik/assets/read3dsmaterial.h"
#include "vornik/assets/read3dsobject.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

using Progress = void (*)(float);

static void report(Progress progress, float fraction)
{
    if (progress)
        progress(fraction);
}

// The file in one block with the padding of a Loader behind it; null if it can't be had.
static char* readFile(const char* fileName, int flags, const char* packName, int* size)
{
    if (!fileName || strlen(fileName) < 2)
        return nullptr;
    size_t bytes = 0;
    char* block = flags & LOAD_FROM_PACK ? readPackedFile(packName, fileName, VRK_LOADER_PADDING, &bytes)
                                         : vrkReadFile(fileName, VRK_LOADER_PADDING, &bytes);
    if (block && bytes > INT_MAX - VRK_LOADER_PADDING)
        vrkFree(&block);
    *size = static_cast<int>(bytes);
    return block;
}

// The chunks of the whole file. Sections are entered rather than read, so that their children, and in the
// strict reading also what a reader left over, come up here.
static void walkChunks(OGroup* group, int flags, int size, Progress progress)
{
    ChunkWalk walk(INT64_MAX, 0);
    bool stopped = false;
    while (!stopped && walk.next())
    {
        const int length = static_cast<int>(walk.childLength());
        switch (vrkLoader.chunkID)
        {
        case 0x3D3D:
            walk.enter(0);
            break;
        case 0x4000:
            read3dsObject(length, group, flags);
            break;
        case 0xB000:
            if (flags & LOAD_KEYFRAMES)
                stopped = read3dsKeyframer(length, group, loaderPaths) != 0;
            else
                walk.skip();
            break;
        case 0xAFFF:
            if (flags & LOAD_MATERIALS)
                read3dsMaterial(length, flags);
            else
                walk.skip();
            break;
        default:
            walk.skip();
        }
        walk.leave();
        report(progress,
               static_cast<float>(vrkLoader.current - vrkLoader.data) / static_cast<float>(size) * 0.5f);
    }
}

static void extractNames(Texture* texture, int flags, const char* packName)
{
    if (flags & LOAD_FROM_PACK)
        texture->extractNames(packName);
    else
        texture->extractNames();
}

// Images of lists are numbered behind the list's own name.
static void loadFrame(Texture* texture, int frame, int flags, const char* packName)
{
    const int index = texture->frameCount > 1 ? frame + 1 : frame;
    const float scale = flags & LOAD_TEXTURE_HALF ? 0.5f : 1.0f;
    if (flags & LOAD_FROM_PACK)
        texture->loadTexture(index, packName, scale);
    else
        texture->loadTexture(index, scale);
    if (flags & LOAD_TEXTURE_MODIFIER)
        texture->multiply();
}

// The first texture with the opacity map folded in. The other maps get no image.
static void loadImages(Material* material, int flags, const char* packName)
{
    Texture* texture = material->firstTexture;
    Texture* opacity = material->opacityTexture;
    extractNames(texture, flags, packName);
    if (opacity)
        extractNames(opacity, flags, packName);
    for (int frame = 0; frame < texture->frameCount; frame++)
    {
        loadFrame(texture, frame, flags, packName);
        if (opacity)
        {
            loadFrame(opacity, frame, flags, packName);
            material->calcAlpha();
            vrkFree(reinterpret_cast<char**>(&opacity->pixels));
        }
        if (texture->pixels)
            texture->uploadTexture(frame);
    }
}

static void texturePass(TList* list, int flags, Progress progress, const char* packName)
{
    // 0 for a list of just the default material: the fraction is then no number.
    const auto last = static_cast<float>(list->seekLastMaterial()->id);
    int done = 0;
    for (Material* material = list->first; material; material = material->next)
    {
        if (material->firstTexture)
            whileMemoryLasts([&] { loadImages(material, flags, packName); });
        report(progress, static_cast<float>(done++) / last * 0.2f + 0.5f);
    }
    for (Material* material = list->first; material; material = material->next)
    {
        if (!material->firstTexture)
            material->makeTextureFromColor();
    }
}

static void finishMesh(Mesh* mesh, int flags)
{
    if (flags & LOAD_SMOOTHING)
        mesh->prepareSmoothing();
    mesh->center();
    mesh->calcNormals();
    mesh->originalToCalculated();
    mesh->calcRadius();
    mesh->sortFacesByMaterial();
    mesh->calcEdgeNormals();
    mesh->createDisplayList();
}

// All meshes of the group, also those of earlier loads. A host may have emptied slots.
static void meshPass(OGroup* group, int flags, Progress progress)
{
    if ((flags & LOAD_COMBINE) && group->meshCount > 0)
        group->closeCombine(0.5f);
    for (int i = 0; i < group->meshCount; i++)
    {
        if (group->meshes[i])
            finishMesh(group->meshes[i], flags);
        report(progress, static_cast<float>(i) / static_cast<float>(group->meshCount) * 0.2f + 0.7f);
    }
}

// Calls visit for every object of a group, in the order in which the group is searched.
template <class Visit>
static void forEachObject(OGroup* group, Visit visit)
{
    std::for_each(group->meshes, group->meshes + group->meshCount, visit);
    std::for_each(group->lights, group->lights + group->lightCount, visit);
    std::for_each(group->cameras, group->cameras + group->cameraCount, visit);
}

// Objects without a node have parent number 0, which the first object without a node answers to. -1 is
// nobody's number.
static void hierarchyPass(OGroup* group)
{
    std::unordered_map<int, Object*> byNumber = {{-1, nullptr}};
    forEachObject(group,
                  [&](Object* object)
                  {
                      if (object)
                          byNumber.emplace(object->objectId, object);
                  });
    forEachObject(group,
                  [&](Object* object)
                  {
                      if (!object)
                          return;
                      const auto found = byNumber.find(object->parentId);
                      object->parent = found == byNumber.end() ? nullptr : found->second;
                  });
}

static void runPasses(OGroup* group, int flags, Progress progress, const char* packName)
{
    if (flags & LOAD_MATERIALS)
        texturePass(loaderMaterials, flags, progress, packName);
    report(progress, 0.7f);
    const bool places = loaderTolerant && (flags & LOAD_KEYFRAMES) && hasNodes();
    if (places)
        whileMemoryLasts(placeNodes);
    if (flags & LOAD_MESHES)
        meshPass(group, flags, progress);
    report(progress, 0.9f);
    if (places)
        whileMemoryLasts(finishNodes);
    if (flags & LOAD_KEYFRAMES && !loaderTolerant)
        whileMemoryLasts([group] { hierarchyPass(group); });
    report(progress, 0.95f);
    if (flags & LOAD_KEYFRAMES && keyframesRead)
        group->animated = 1;
    report(progress, 1.0f);
    if (flags & LOAD_OCTREE)
        group->constructOctree();
}

// The lists that a load fills, where a full group didn't take them: then they live for the load only.
struct LoadLists
{
    std::unique_ptr<TList> materials;
    std::unique_ptr<PathList> paths;
};

static std::unique_ptr<TList> makeMaterialList(OGroup* group, const char* materialDirectory)
{
    auto list = std::make_unique<TList>();
    list->setBaseDirectory(materialDirectory ? materialDirectory : "");
    beginMaterials(list.get());
    if (group->addTList(list.get()) == 0)
        (void)list.release();
    return list;
}

static std::unique_ptr<PathList> makePathList(OGroup* group)
{
    auto list = std::make_unique<PathList>();
    loaderPaths = list.get();
    if (group->addPathList(loaderPaths) == 0)
        (void)list.release();
    return list;
}

static bool makeLists(LoadLists* lists, OGroup* group, const char* materialDirectory, int flags)
{
    const auto make = [&]
    {
        if (flags & LOAD_MATERIALS)
            lists->materials = makeMaterialList(group, materialDirectory);
        if (flags & LOAD_KEYFRAMES)
            lists->paths = makePathList(group);
    };
    if (whileMemoryLasts(make))
        return true;
    beginMaterials(nullptr);
    loaderPaths = nullptr;
    return false;
}

// Where memory ends the reading ends, as it does where a file is cut.
static void readChunks(OGroup* group, int flags, int size, Progress progress)
{
    vrkPutToErrorLog("Start processing...", 50);
    keyframesRead = false;
    whileMemoryLasts(
        [&]
        {
            beginNodes(group, loaderPaths);
            beginObjectNames(group);
            walkChunks(group, flags, size, progress);
        });
    endObjectNames();
    endMaterials();
}

// Outside a load the reading is strict, for hosts that call the readers themselves.
struct ChosenReading
{
    explicit ChosenReading(int flags) { loaderTolerant = (flags & LOAD_TOLERANT) != 0; }
    ChosenReading(const ChosenReading&) = delete;
    ChosenReading& operator=(const ChosenReading&) = delete;
    ~ChosenReading() { loaderTolerant = false; }
};

static int cannotOpen()
{
    return vrkPutToErrorLog("Cannot open .3DS file (possible disk error)", 13);
}

int load3ds(const char* fileName, OGroup* group, const char* materialDirectory, int flags, Progress progress,
            const char* packName)
{
    beginMaterials(nullptr);
    const ChosenReading reading(flags);
    vrkPutToErrorLog("Start loading...", 50);

    int size = 0;
    char* block = readFile(fileName, flags, packName, &size);
    if (!block)
        return cannotOpen();
    vrkLoader.initData(block, size);
    if (!vrkLoader.checkFormat())
    {
        vrkLoader.atEnd = true;
        vrkFree(&block);
        return vrkPutToErrorLog("3DS file expected but something else encountered", 14);
    }

    LoadLists lists;
    const bool ready = makeLists(&lists, group, materialDirectory, flags);
    if (ready)
        readChunks(group, flags, size, progress);
    vrkLoader.atEnd = true;
    vrkFree(&block);
    if (!ready)
        return cannotOpen();

    runPasses(group, flags, progress, packName);
    endNodes();
    if (lists.materials)
        loaderMaterials = nullptr;
    if (lists.paths)
        loaderPaths = nullptr;
    return 0;
}
