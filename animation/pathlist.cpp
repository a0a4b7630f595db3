// The tracks of one load.

#include <algorithm>
#include <cstdlib>

#include "vornik/animation/path.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"

PathList::PathList()
    : paths{}, pivots(nullptr), pathCount(0), pivotCount(0), firstFrame(0), lastFrame(0), frameCount(0),
      stopAtEnd(0), pivotRoom(0)
{
}

PathList::~PathList()
{
    for (int i = 0; i < pathCount && i < VRK_PATH_CAPACITY; ++i)
        delete paths[i];
    vrkFree(reinterpret_cast<char**>(&pivots));
    pathCount = 0;
}

void PathList::initPivots(int count)
{
    vrkFree(reinterpret_cast<char**>(&pivots));
    pivotCount = 0;
    pivotRoom = std::max(count, 0);
    pivots = static_cast<PivotPoint*>(std::calloc(static_cast<size_t>(pivotRoom) + 1, sizeof(PivotPoint)));
    if (!pivots)
        pivotRoom = 0;
}

void PathList::addPivotPoint(Object* object, const Vertex3D* pivot)
{
    if (!pivots || !pivot || pivotCount < 0 || pivotCount >= pivotRoom)
        return;
    pivots[pivotCount++] = {*pivot, object};
}

int PathList::addPath(VRKPath* path)
{
    if (pathCount < 0 || pathCount >= VRK_PATH_CAPACITY)
        return vrkPutToErrorLog(
            "PathList is full (VRKPath) create another PathList or increase number of maxPaths", 32);
    paths[pathCount++] = path;
    return 0;
}

int PathList::delPath(int index)
{
    if (index < 0 || index >= VRK_PATH_CAPACITY || !paths[index])
        return vrkPutToErrorLog("Path used in functioncall is NULL!", 33);
    delete paths[index];
    paths[index] = nullptr;
    if (index >= pathCount)
        return 0;
    // The entry behind the last one comes along: an empty slot, which a full list lacks.
    const int last = std::min<int>(pathCount, VRK_PATH_CAPACITY - 1);
    std::copy(paths + index + 1, paths + last + 1, paths + index);
    if (pathCount >= VRK_PATH_CAPACITY)
        paths[last] = nullptr;
    return 0;
}

VRKPath* PathList::findPath(Object* object)
{
    VRKPath** end = paths + std::clamp<int>(pathCount, 0, VRK_PATH_CAPACITY);
    VRKPath** found =
        std::find_if(paths, end, [object](const VRKPath* path) { return path && path->object == object; });
    return found == end ? nullptr : *found;
}
