// Object chunks of a .3DS file: meshes, lights and cameras.

#include "vornik/assets/read3dsobject.h"

#include <math.h>
#include <stdlib.h>

#include <algorithm>
#include <memory>

#include "assets/chunkwalk.h"
#include "assets/loadervalues.h"
#include "assets/loadmaterials.h"
#include "assets/loadnodes.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/loader.h"
#include "vornik/assets/read3dsmaterial.h"
#include "vornik/core/memory.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

namespace
{

// What one object chunk has become so far. Its children are read by one flat walk: mesh, light, camera and
// face list are entered, and what stands inside them comes up in the same walk.
class ObjectReader
{
public:
    ObjectReader(int chunkLength, OGroup* target, int loadFlags, const char* objectName, int nameBytes)
        : group(target), flags(loadFlags), name(objectName),
          walk(chunkLength, static_cast<int64_t>(nameBytes) + 6)
    {
    }
    ObjectReader(const ObjectReader&) = delete;
    ObjectReader& operator=(const ObjectReader&) = delete;
    /// Finishes what was begun, also where memory ended the reading.
    ~ObjectReader();

    void read();

private:
    void readPart();
    void beginMesh();
    void finishMesh();
    void readVertices();
    void readFaces();
    void readFaceMaterials();
    void readTextureCoords();
    void readSmoothing();
    void readAxes();
    void beginLight();
    void finishLight();
    void readLightColor();
    void readCamera();

    OGroup* group;
    int flags;
    const char* name;
    ChunkWalk walk;
    bool hidden = false;
    Mesh* mesh = nullptr;
    Light* light = nullptr;
    float multiplier = 1.0f; // of the light; used by the tolerant reading
    bool lightHasColor = false;
    std::unique_ptr<Mesh> spareMesh; // the current ones, where the group didn't take them
    std::unique_ptr<Light> spareLight;
};

} // namespace

static int readCount()
{
    return static_cast<uint16_t>(vrkLoader.getShort());
}

// Some modellers write vertices that are no numbers, which no face uses. They would spoil every bounding box.
static void mendVertices(Mesh* mesh)
{
    Vertex3D* end = mesh->originalVertices + mesh->vertexCount;
    const Vertex3D* good = std::find_if(mesh->originalVertices, end, isFinite);
    const Vertex3D replacement = good == end ? Vertex3D{0, 0, 0} : *good;
    std::replace_if(
        mesh->originalVertices, end, [](const Vertex3D& v) { return !isFinite(v); }, replacement);
}

// A face with a corner that doesn't exist shrinks to a point; without any vertex there are no faces.
static void mendFaces(Mesh* mesh)
{
    if (mesh->vertexCount == 0 && mesh->faceCount > 0)
        mesh->createFaces(0);
    for (int i = 0; i < mesh->faceCount; i++)
    {
        const Facelist& face = mesh->faces[i];
        if (std::max({face.a, face.b, face.c}) >= mesh->vertexCount)
            mesh->faces[i] = {0, 0, 0};
    }
}

void ObjectReader::read()
{
    while (walk.next())
        readPart();
}

ObjectReader::~ObjectReader()
{
    finishMesh();
    finishLight();
}

void ObjectReader::readPart()
{
    switch (vrkLoader.chunkID)
    {
    case 0x4010: // stands in front of the object that it hides
        hidden = true;
        walk.enter(6);
        return;
    case 0x4100:
        return beginMesh();
    case 0x4110:
        return readVertices();
    case 0x4120:
        return readFaces();
    case 0x4130:
        return readFaceMaterials();
    case 0x4140:
        return readTextureCoords();
    case 0x4150:
        return readSmoothing();
    case 0x4160:
        return readAxes();
    case 0x4600:
        return beginLight();
    case 0x4659:
    case 0x465A:
        if (!light)
            return walk.skip();
        (vrkLoader.chunkID == 0x4659 ? light->innerRange : light->outerRange) = vrkLoader.getFloat();
        return;
    case 0x4700:
        return readCamera();
    default:
        if (light && loaderTolerant)
            readLightColor();
        else
            walk.skip();
    }
}

void ObjectReader::beginMesh()
{
    finishMesh();
    mesh = new Mesh;
    mesh->visible = !hidden;
    mesh->setName(name);
    if (!(flags & LOAD_MESHES) || group->addMesh(mesh) != 0)
        spareMesh.reset(mesh);
    walk.enter(6);
}

void ObjectReader::finishMesh()
{
    if (mesh)
    {
        if (loaderTolerant)
            mendVertices(mesh);
        mendFaces(mesh);
    }
    spareMesh.reset();
    mesh = nullptr;
}

void ObjectReader::readVertices()
{
    if (!mesh)
        return walk.skip();
    const int count = ChunkWalk::clip(readCount(), 12);
    mesh->createVertices(count);
    if (mesh->vertexCount < count)
        throw std::bad_alloc();
    Vertex3D* vertices = mesh->originalVertices;
    readList(count, [vertices](int i, Loader& cursor) { vertices[i] = readVector(cursor); });
}

void ObjectReader::readFaces()
{
    if (!mesh)
        return walk.skip();
    const int count = readCount(), kept = ChunkWalk::clip(count, 8);
    mesh->createFaces(kept);
    if (mesh->faceCount < kept)
        throw std::bad_alloc();
    Facelist* faces = mesh->faces;
    uint8_t* faceFlags = mesh->faceFlags;
    readList(mesh->faceCount,
             [=](int i, Loader& cursor)
             {
                 faces[i].a = readUnsignedShort(cursor);
                 faces[i].b = readUnsignedShort(cursor);
                 faces[i].c = readUnsignedShort(cursor);
                 faceFlags[i] = static_cast<uint8_t>(readShort(cursor));
             });
    walk.enter(8 * static_cast<int64_t>(count) + 8);
}

void ObjectReader::readFaceMaterials()
{
    char material[256] = "";
    if (!mesh)
        return walk.skip();
    vrkLoader.getString(material, sizeof(material));
    int id = 0;
    if (loaderMaterials)
    {
        const Material* found = findLoadedMaterial(material);
        if (!found)
            found = findLoadedMaterial("VRKDefault");
        id = found ? found->id : 0;
    }
    // Signed for hosts of old, to whom a list of more than 32,767 faces is empty.
    const int count = loaderTolerant ? ChunkWalk::clip(readCount(), 2) : vrkLoader.getShort();
    Textlist* faceMaterials = mesh->faceMaterials;
    readList(count,
             [=, faceCount = mesh->faceCount, tolerant = loaderTolerant](int, Loader& cursor)
             {
                 const short value = readShort(cursor);
                 const int face = tolerant ? static_cast<uint16_t>(value) : value;
                 if (face >= 0 && face < faceCount)
                     faceMaterials[face].materialIndex = id;
             });
}

void ObjectReader::readTextureCoords()
{
    if (!mesh)
        return walk.skip();
    const int count = ChunkWalk::clip(readCount(), 8);
    Vertex2D* textureCoords = mesh->textureCoords;
    readList(count,
             [=, vertexCount = mesh->vertexCount](int i, Loader& cursor)
             {
                 Vertex2D coords;
                 coords.x = readFloat(cursor);
                 coords.y = readFloat(cursor);
                 if (i < vertexCount)
                     textureCoords[i] = coords;
             });
}

void ObjectReader::readSmoothing()
{
    if (!mesh)
        return walk.skip();
    const int count = ChunkWalk::clip(mesh->faceCount, 4);
    uint32_t* groups = mesh->smoothingGroups;
    readList(count,
             [groups, tolerant = loaderTolerant](int i, Loader& cursor)
             {
                 const uint32_t value = static_cast<uint32_t>(readInt(cursor));
                 // Exporters write 0 for a face that is not smoothed at all, which the strict reading takes
                 // for a group like any other. A value that no file uses keeps the face by itself.
                 groups[i] = tolerant && value == 0 ? ~static_cast<uint32_t>(i) : value;
             });
}

// Vertices are in world coordinates already: the axes matter only to the mesh's node.
void ObjectReader::readAxes()
{
    float axes[12];
    for (float& value : axes)
        value = vrkLoader.getFloat();
    if (loaderTolerant && mesh && !spareMesh)
        rememberAxes(mesh, axes);
}

static void takeColor(Light* light)
{
    Color* color = read3dsColor();
    if (color)
        light->color = *color;
    free(color);
}

void ObjectReader::beginLight()
{
    finishLight();
    light = new Light;
    light->visible = !hidden;
    light->setName(name);
    if (!(flags & LOAD_LIGHTS) || group->addLight(light) != 0)
        spareLight.reset(light);
    light->location = readVector(vrkLoader);
    walk.enter(18);
    if (loaderTolerant)
    {
        light->color = {1, 1, 1, 1};
        return;
    }
    vrkLoader.getChunkID();
    walk.count(vrkLoader.chunkLength);
    takeColor(light);
}

// What else the tolerant reading takes of a light: its first colour, wherever it stands, and its strength.
void ObjectReader::readLightColor()
{
    const uint16_t id = vrkLoader.chunkID;
    if (id == 0x4620) // switched off
        multiplier = 0.0f;
    else if (id == 0x465B)
    {
        const float factor = vrkLoader.getFloat();
        multiplier *= isfinite(factor) ? factor : 1.0f;
    }
    else if (id >= 0x0010 && id <= 0x0013 && !lightHasColor)
    {
        takeColor(light);
        lightHasColor = true;
    }
}

void ObjectReader::finishLight()
{
    // Not by 1 either in the strict reading: it would change a signalling NaN.
    if (light && loaderTolerant)
    {
        light->color.r *= multiplier;
        light->color.g *= multiplier;
        light->color.b *= multiplier;
    }
    multiplier = 1.0f;
    lightHasColor = false;
    spareLight.reset();
    light = nullptr;
}

void ObjectReader::readCamera()
{
    auto* camera = new Camera;
    camera->visible = !hidden;
    camera->setName(name);
    std::unique_ptr<Camera> spare;
    if (!(flags & LOAD_CAMERAS) || group->addCamera(camera) != 0)
        spare.reset(camera);
    camera->eye = readVector(vrkLoader);
    camera->target = readVector(vrkLoader);
    camera->roll = vrkLoader.getFloat();
    camera->lens = vrkLoader.getFloat();
    camera->calcFOV();
    // Its children are counted once more as they come up, so that the walk may end among them.
    walk.enter(walk.childLength());
}

void read3dsObject(int length, OGroup* group, int flags)
{
    loaderTolerant = (flags & LOAD_TOLERANT) != 0;
    char name[1024] = "";
    const int nameBytes = vrkLoader.getString(name, sizeof(name));
    readWhileMemoryLasts([&] { ObjectReader(length, group, flags, name, nameBytes).read(); });
}
