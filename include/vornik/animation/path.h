#ifndef VORNIK_ANIMATION_PATH_H
#define VORNIK_ANIMATION_PATH_H

// Keyframe tracks of objects, and the list of them that a load makes.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Object;

/// One key. Which values count depends on the track's kind.
struct Key
{
    float position[3];                 ///< x, y, z
    float rotation[4];                 ///< axis, and the angle in degrees: a turn from the key before
    float value;                       ///< of a scalar track: the roll of a camera, degrees
    int32_t frame;                     ///< at which the values hold
    float tension, continuity, bias;   ///< shape the spline; constants of VRKPath::set
    float tangentIn[4], tangentOut[4]; ///< filled by VRKPath::calcTans
};

/// What a track holds.
enum VRKTrackKind
{
    VRK_TRACK_POSITION = 0,
    VRK_TRACK_ROTATION = 1,
    VRK_TRACK_SCALAR = 2 ///< the roll of a camera
};

/// What a track moves, by the kind of its node in the file.
enum VRKNodeType
{
    VRK_NODE_OBJECT = 5,
    VRK_NODE_LIGHT = 6,
    VRK_NODE_CAMERA = 7,
    VRK_NODE_TARGET = 8 ///< the target of a camera
};

/// Frame of a closing key: behind every other.
enum
{
    VRK_CLOSING_FRAME = 65535
};

/// The track of one object. Behind its last key stands a closing key of the same values, so that a frame
/// behind the last key still lies between two.
class VRK_API VRKPath
{
public:
    Key* keys;        ///< [keyCount], a malloc block, owned
    int32_t keyCount; ///< with the closing key: a track of n keys has n + 1
    int32_t nodeType; ///< VRK_NODE_...
    int32_t kind;     ///< VRK_TRACK_...
    Object* object;   ///< not owned

    /// @param keys  without the closing one; below 0 counts as 0. All are cleared
    VRKPath(int keys, int nodeType, int kind, Object* object);
    /// Without keys.
    VRKPath(int nodeType, int kind, Object* object);
    /// Shares the keys as assignment does.
    VRKPath(const VRKPath&) = default;
    /// Copies member by member: the keys are shared, and only one of the two may release them.
    VRKPath& operator=(const VRKPath&) = default;
    ~VRKPath();

    /// Replaces the keys by cleared ones. @param count  without the closing one
    void initKeys(int count);

    // Each writes a key and makes the one behind it the closing key. An index outside the track is ignored.

    /// A key of a scalar track.
    void set(int index, float value, int frame);
    /// Arguments stand in reverse: the key's position is (c, b, a).
    void set(int index, float a, float b, float c, int frame);
    /// The axis is (c, b, a). @param angle  degrees
    void set(int index, float a, float b, float c, float angle, int frame);

    // A spline for hosts; the engine's own animation is linear.

    /// Tangents in the manner of Kochanek and Bartels (1984), scaled by the keys' frame numbers. Call it when
    /// all keys are set.
    void calcTans();
    /// Position and rotation at a frame, by Hermite interpolation; the other fields are 0. Frames before the
    /// first key extrapolate. A track without keys gives zeros.
    Key interpolateKey(float frame);
};

/// The point of an object that its tracks move.
struct PivotPoint
{
    Vertex3D pivot; ///< in the object's own coordinates
    Object* object; ///< not owned
};

enum
{
    VRK_PATH_CAPACITY = 4096 ///< tracks of a PathList
};

/// The tracks of one load.
class VRK_API PathList
{
public:
    VRKPath* paths[VRK_PATH_CAPACITY]; ///< owned
    PivotPoint* pivots;                ///< a malloc block, owned; null until initPivots
    int32_t pathCount;                 ///< used entries of paths
    int32_t pivotCount;                ///< used entries of pivots
    /// As the file has them.
    int32_t firstFrame, lastFrame;
    int32_t frameCount; ///< lastFrame - firstFrame
    uint8_t stopAtEnd;  ///< 0: frame numbers wrap; otherwise they stop at the end

    PathList();
    /// Shares tracks and pivots as assignment does.
    PathList(const PathList&) = default;
    /// Copies member by member: tracks and pivots are shared, and only one of the two may be destroyed.
    PathList& operator=(const PathList&) = default;
    ~PathList();

    /// Replaces the pivots by room for a number of them.
    void initPivots(int count);
    /// Without room nothing is stored.
    void addPivotPoint(Object* object, const Vertex3D* pivot);

    /// Takes ownership. @return 0; 32 when full, logged, and the path stays the caller's
    int addPath(VRKPath* path);
    /// Destroys a path and closes the gap; pathCount stays, so that the list ends in an empty slot.
    /// @return 0; 33 for an empty slot, logged
    int delPath(int index);
    /// The first path of an object, of whatever kind; null if there is none.
    VRKPath* findPath(Object* object);

private:
    int32_t pivotRoom;
};

#endif
