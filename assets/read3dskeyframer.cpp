// The keyframer chunk of a .3DS file: tracks, pivots and node numbers.

#include "vornik/assets/read3dskeyframer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>

#include "assets/chunkwalk.h"
#include "assets/loadervalues.h"
#include "assets/loadkeyframes.h"
#include "assets/loadnodes.h"
#include "assets/objectnames.h"
#include "vornik/animation/path.h"
#include "vornik/assets/loader.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

PathList* loaderPaths = nullptr;
bool keyframesRead = false;

namespace
{

// One flat walk: node chunks are entered, and their children speak of the node whose header came last. The
// strict reading writes straight into the objects. The tolerant one notes nodes, which are placed when all
// are known.
class KeyframeReader
{
public:
    KeyframeReader(int length, OGroup* target, PathList* list)
        : group(target), paths(list), walk(std::max(length, 1), 0), oneChunk(length < 1)
    {
    }
    int read();

private:
    int readPart();
    void beginNode(int nodeType);
    void readFrames();
    void readLength();
    int readHeader();
    void readInstanceName();
    void readPivot();
    void readNumber();
    void readStrictPositions();
    void readStrictRotations();
    void readPositions();
    void readRotations();
    void readRolls();
    void readScale();
    int readKeyHeader();
    VRKPath* takePath(std::unique_ptr<VRKPath> path);

    OGroup* group;
    PathList* paths;
    ChunkWalk walk;
    bool oneChunk; // a section that claims no length has one chunk all the same
    int type = 0;
    Object* object = nullptr;
    int number = 0;
    LoadedNode* node = nullptr; // tolerant only
    bool hasFrames = false;
};

} // namespace

int read3dsKeyframer(int length, OGroup* group, PathList* paths)
{
    // Only load3ds knows what to do with the nodes of the tolerant reading.
    loaderTolerant = loaderTolerant && areNodesBegun();
    int result = 0;
    readWhileMemoryLasts([&] { result = KeyframeReader(length, group, paths).read(); });
    return result;
}

int KeyframeReader::read()
{
    while (walk.next())
    {
        if (const int result = readPart())
            return result;
        if (oneChunk)
            break;
    }
    keyframesRead = !loaderTolerant || hasNodes();
    return 0;
}

int KeyframeReader::readPart()
{
    switch (vrkLoader.chunkID)
    {
    case 0xB002:
        beginNode(VRK_NODE_OBJECT);
        return 0;
    case 0xB003:
        beginNode(VRK_NODE_CAMERA);
        return 0;
    case 0xB004:
        beginNode(VRK_NODE_TARGET);
        return 0;
    case 0xB005:
        beginNode(VRK_NODE_LIGHT);
        return 0;
    case 0xB008:
        readFrames();
        return 0;
    case 0xB010:
        return readHeader();
    case 0xB013:
        readPivot();
        return 0;
    case 0xB020:
        loaderTolerant ? readPositions() : readStrictPositions();
        return 0;
    case 0xB021:
        loaderTolerant ? readRotations() : readStrictRotations();
        return 0;
    case 0xB030:
        readNumber();
        return 0;
    default:
        break;
    }
    if (!loaderTolerant)
        walk.skip();
    else if (vrkLoader.chunkID == 0xB00A)
        readLength();
    else if (vrkLoader.chunkID == 0xB011)
        readInstanceName();
    else if (vrkLoader.chunkID == 0xB022)
        readScale();
    else if (vrkLoader.chunkID == 0xB024)
        readRolls();
    return 0;
}

void KeyframeReader::beginNode(int nodeType)
{
    type = nodeType;
    if (loaderTolerant)
    {
        object = nullptr;
        node = addNode(type);
    }
    walk.enter(6);
}

static void setFrames(OGroup* group, PathList* paths, int first, int last)
{
    group->firstFrame = paths->firstFrame = first;
    group->lastFrame = paths->lastFrame = last;
    group->frameCount = paths->frameCount = static_cast<int32_t>(int64_t(last) - int64_t(first));
}

void KeyframeReader::readFrames()
{
    const int first = vrkLoader.getInt();
    const int last = vrkLoader.getInt();
    setFrames(group, paths, first, last);
    hasFrames = true;
}

// A file without a segment plays from 0 to its length.
void KeyframeReader::readLength()
{
    char name[64];
    vrkLoader.getShort();
    vrkLoader.getString(name, sizeof name);
    const int length = vrkLoader.getInt();
    if (!hasFrames)
        setFrames(group, paths, 0, length);
}

int KeyframeReader::readHeader()
{
    char name[1024] = "";
    vrkLoader.getString(name, sizeof name);
    if (!loaderTolerant)
    {
        object = findNamedObject(group, name);
        if (!object)
            return vrkPutToErrorLog("Fatal keyframer error in .3DS loader!", 37);
    }
    else if (node)
    {
        takeObject(node, name);
        object = node->object;
    }
    vrkLoader.getShort();
    vrkLoader.getShort();
    const int parent = vrkLoader.getShort();
    if (node)
        node->parentNumber = parent;
    if (!object || loaderTolerant)
        return 0;
    object->parentId = parent;
    if (parent == -1)
        object->parent = nullptr;
    object->objectId = number;
    return 0;
}

// The name of a dummy, or of one of several nodes of a mesh.
void KeyframeReader::readInstanceName()
{
    char name[1024] = "";
    vrkLoader.getString(name, sizeof name);
    if (node && node->isNew && node->mesh && name[0])
        node->mesh->setName(name);
}

void KeyframeReader::readPivot()
{
    if (!paths->pivots && !loaderTolerant)
        paths->initPivots(group->meshCount + group->cameraCount + group->lightCount);
    const Vertex3D pivot = readVector(vrkLoader);
    if (node)
        node->pivot = pivot;
    if (!object || loaderTolerant)
        return;
    object->pivot = pivot;
    paths->addPivotPoint(object, &pivot);
}

void KeyframeReader::readNumber()
{
    number = vrkLoader.getShort();
    if (node)
        node->number = number;
}

static void passTrackHeader()
{
    vrkLoader.getShort();
    vrkLoader.getInt();
    vrkLoader.getInt();
}

// The number of keys, taken as signed. Keys that the block doesn't have come out as its reads do at the end;
// that happens to one track of a file at most.
static int readStrictKeyCount()
{
    passTrackHeader();
    const int count = vrkLoader.getShort();
    vrkLoader.getShort();
    return std::max(count, 0);
}

// No more keys than the track's chunk holds.
static int readKeyCount(int keySize)
{
    passTrackHeader();
    return ChunkWalk::clip(std::max(vrkLoader.getInt(), 0), keySize);
}

// A path that a full list doesn't take is read all the same and dropped. @return the path, if it was taken
VRKPath* KeyframeReader::takePath(std::unique_ptr<VRKPath> path)
{
    return paths->addPath(path.get()) == 0 ? path.release() : nullptr;
}

void KeyframeReader::readStrictPositions()
{
    const int count = readStrictKeyCount();
    auto path = makeTrack(count, type, VRK_TRACK_POSITION, object);
    for (int k = 0; k < count; ++k)
    {
        const int frame = vrkLoader.getShort();
        vrkLoader.getInt();
        const Vertex3D p = readVector(vrkLoader);
        path->set(k, p.z, p.y, p.x, frame);
    }
    takePath(std::move(path));
}

// Frames of turns are unsigned, those of positions signed: hosts know both.
void KeyframeReader::readStrictRotations()
{
    const int count = readStrictKeyCount();
    auto path = makeTrack(count, type, VRK_TRACK_ROTATION, object);
    for (int k = 0; k < count; ++k)
    {
        const int frame = static_cast<uint16_t>(vrkLoader.getShort());
        vrkLoader.getInt();
        const float angle = vrkUnRad(vrkLoader.getFloat());
        const Vertex3D axis = readVector(vrkLoader);
        path->set(k, axis.z, axis.y, axis.x, angle, frame);
    }
    takePath(std::move(path));
}

// The tolerant reading of a key's frame. Spline values that its flags announce are passed over.
int KeyframeReader::readKeyHeader()
{
    const int frame = vrkLoader.getInt();
    const int flags = vrkLoader.getShort();
    for (int bit = 0; bit < 5; ++bit)
        if (flags & 1 << bit)
            vrkLoader.getFloat();
    return frame;
}

// Objects would stand at their last key up to the first one. A key in front of all keeps them at the first.
void KeyframeReader::readPositions()
{
    const int count = readKeyCount(18);
    if (count == 0 || (node && !node->object))
        return;
    const bool lead = count > 1 && type == VRK_NODE_OBJECT;
    auto path = makeTrack(count + (lead ? 1 : 0), type, VRK_TRACK_POSITION, object);
    int at = 0;
    for (int k = 0; k < count; ++k)
    {
        const int frame = readKeyHeader();
        Vertex3D p = readVector(vrkLoader);
        if (!isFinite(p))
            p = {0, 0, 0};
        if (k == 0 && lead)
            path->set(at++, p.z, p.y, p.x, leadFrame);
        path->set(at++, p.z, p.y, p.x, frame);
    }
    VRKPath* taken = takePath(std::move(path));
    if (node && !node->position)
        node->position = taken;
}

// The first turn is where the node stands: it is noted and taken out. A turn of nothing at the end keeps the
// last one from being begun again.
void KeyframeReader::readRotations()
{
    const int count = readKeyCount(22);
    if (count == 0 || !node || !node->object)
        return;
    const bool tail = count > 1;
    auto path = makeTrack(count + (tail ? 1 : 0), type, VRK_TRACK_ROTATION, object);
    int frame = 0;
    for (int k = 0; k < count; ++k)
    {
        frame = readKeyHeader();
        float angle = vrkUnRad(vrkLoader.getFloat());
        const Vertex3D axis = readVector(vrkLoader);
        if (!std::isfinite(angle) || !isFinite(axis))
            angle = 0.0f;
        if (k == 0)
            node->firstTurn = {axis.x, axis.y, axis.z, angle};
        path->set(k, axis.z, axis.y, axis.x, k == 0 ? 0.0f : angle, frame);
    }
    if (tail)
        path->set(count, 0.0f, 0.0f, 1.0f, 0.0f, frame);
    node->rotation = takePath(std::move(path));
}

// Degrees.
void KeyframeReader::readRolls()
{
    const int count = readKeyCount(10);
    if (count == 0 || type != VRK_NODE_CAMERA || !object)
        return;
    auto path = makeTrack(count + 1, type, VRK_TRACK_SCALAR, object);
    for (int k = 0; k < count; ++k)
    {
        const int frame = readKeyHeader();
        float roll = vrkLoader.getFloat();
        if (!std::isfinite(roll))
            roll = 0.0f;
        if (k == 0)
            path->set(0, roll, leadFrame);
        path->set(k + 1, roll, frame);
    }
    VRKPath* taken = takePath(std::move(path));
    if (node)
        node->roll = taken;
}

// Only where a node stands at its first key; how its size changes is not played.
void KeyframeReader::readScale()
{
    const int count = readKeyCount(18);
    if (count == 0 || !node)
        return;
    readKeyHeader();
    const Vertex3D scale = readVector(vrkLoader);
    if (isFinite(scale))
        node->scale = scale;
}
