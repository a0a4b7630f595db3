// The keys of one track.

#include "vornik/animation/path.h"

#include <algorithm>
#include <cstdlib>

#include "vornik/core/memory.h"

VRKPath::VRKPath(int count, int type, int trackKind, Object* moved)
    : keys(nullptr), keyCount(0), nodeType(type), kind(trackKind), object(moved)
{
    initKeys(count);
}

VRKPath::VRKPath(int type, int trackKind, Object* moved)
    : keys(nullptr), keyCount(0), nodeType(type), kind(trackKind), object(moved)
{
}

VRKPath::~VRKPath()
{
    keyCount = 0;
    object = nullptr;
    nodeType = 0;
    vrkFree(reinterpret_cast<char**>(&keys));
}

void VRKPath::initKeys(int count)
{
    vrkFree(reinterpret_cast<char**>(&keys));
    const size_t records = static_cast<size_t>(std::max(count, 0)) + 1;
    keys = static_cast<Key*>(std::calloc(records, sizeof(Key)));
    keyCount = keys ? static_cast<int32_t>(records) : 0;
}

// Writes key index and the closing key behind it. store fills in what the kind of track keeps.
template <class Store>
static void setKey(VRKPath& path, int index, int frame, Store store)
{
    if (!path.keys || index < 0 || index >= path.keyCount)
        return;
    Key& key = path.keys[index];
    store(key);
    key.frame = frame;
    key.tension = 0.9f;
    key.continuity = 0.5f;
    key.bias = 0.5f;
    if (index + 1 >= path.keyCount)
        return;
    Key& closing = path.keys[index + 1];
    store(closing);
    closing.frame = VRK_CLOSING_FRAME;
    closing.tension = closing.continuity = closing.bias = 0.5f;
}

void VRKPath::set(int index, float value, int frame)
{
    setKey(*this, index, frame, [&](Key& key) { key.value = value; });
}

void VRKPath::set(int index, float a, float b, float c, int frame)
{
    setKey(*this, index, frame,
           [&](Key& key)
           {
               key.position[0] = c;
               key.position[1] = b;
               key.position[2] = a;
           });
}

void VRKPath::set(int index, float a, float b, float c, float angle, int frame)
{
    setKey(*this, index, frame,
           [&](Key& key)
           {
               key.rotation[0] = c;
               key.rotation[1] = b;
               key.rotation[2] = a;
               key.rotation[3] = angle;
           });
}
