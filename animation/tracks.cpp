#include "animation/tracks.h"

#include <algorithm>
#include <cstdint>

#include "vornik/animation/path.h"

static int pathCount(const PathList& list)
{
    return std::clamp<int>(list.pathCount, 0, VRK_PATH_CAPACITY);
}

VRKPath* findTrack(const PathList& list, const Object* object, int kind, int nodeType)
{
    for (int i = 0; i < pathCount(list); ++i)
    {
        VRKPath* path = list.paths[i];
        if (path && path->object == object && path->kind == kind &&
            (nodeType == 0 || path->nodeType == nodeType))
            return path;
    }
    return nullptr;
}

Tracks findTracks(const PathList& list, const Object* object)
{
    return {findTrack(list, object, VRK_TRACK_POSITION), findTrack(list, object, VRK_TRACK_ROTATION)};
}

// A hash table with linear probing, at most half full. The walk over a list for each object would cost a
// frame objects times paths.
struct Slot
{
    const Object* object;
    Tracks tracks;
    bool used;
};

static Slot slots[2 * VRK_PATH_CAPACITY];
static size_t slotCount = 1; // a power of two

// The slot of an object, or the free one that it would take.
static Slot& slotOf(const Object* object)
{
    size_t at = (reinterpret_cast<uintptr_t>(object) >> 4) * 0x9E3779B97F4A7C15u >> 40;
    for (;; ++at)
    {
        Slot& slot = slots[at & (slotCount - 1)];
        if (!slot.used || slot.object == object)
            return slot;
    }
}

void noteTracks(const PathList& list)
{
    slotCount = 1;
    while (slotCount < 2 * static_cast<size_t>(pathCount(list)))
        slotCount *= 2;
    std::fill(slots, slots + slotCount, Slot{});
    for (int i = 0; i < pathCount(list); ++i)
    {
        const VRKPath* path = list.paths[i];
        if (!path || (path->kind != VRK_TRACK_POSITION && path->kind != VRK_TRACK_ROTATION))
            continue;
        Slot& slot = slotOf(path->object);
        slot.object = path->object;
        slot.used = true;
        const VRKPath*& track =
            path->kind == VRK_TRACK_POSITION ? slot.tracks.position : slot.tracks.rotation;
        if (!track)
            track = path;
    }
}

Tracks findNotedTracks(const PathList&, const Object* object)
{
    const Slot& slot = slotOf(object);
    return slot.used ? slot.tracks : Tracks{};
}
