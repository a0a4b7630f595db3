#ifndef VORNIK_SCENE_OBJECT_H
#define VORNIK_SCENE_OBJECT_H

// What can be named, found by name and keyframed: the base record of meshes, cameras and lights.

#include <stdint.h>

#include "vornik/core/vectors.h"
#include "vornik/export.h"

/// Base record without virtual functions: whoever holds an Object* knows its class from the list that it came
/// from.
class VRK_API Object
{
public:
    Vertex3D location;   ///< world position of a light; unused by meshes and cameras
    Vertex4D rotation;   ///< degrees about x, y, z; for a camera x is the heading and y the pitch
    Vertex3D position;   ///< world position of a mesh
    Vertex3D pivot;      ///< point about which a mesh turns
    char* name;          ///< a malloc block, shared with copies; the last holder releases it
    Object* parent;      ///< in the keyframe hierarchy; not owned
    int32_t objectId;    ///< node number of the file
    int32_t parentId;    ///< node number of the parent, -1 for none
    uint8_t visible;     ///< 0 hides
    uint8_t special;     ///< set by setSpecial
    int32_t specialType; ///< the argument of setSpecial
    float specialFade;   ///< strength of the glow sprite, 0 to 1

    /// Leaves location, rotation, position and pivot unset; only Mesh clears them.
    Object();
    /// Copies share the name.
    Object(const Object& other);
    /// Shares the name, too.
    Object& operator=(const Object& other);
    ~Object();

    /// A copy of all fields that shares the name. The caller owns it.
    Object* copyObject();
    /// Replaces the name by a copy of the text; copies made with copyObject keep the old one.
    void setName(const char* text);
    /// Marks the object as special and hides it. @param type  1: a glow sprite; other kinds draw nothing
    void setSpecial(int type);
};

/// Where the scene is seen from. Pitch 90 is level, 0 looks straight down.
class VRK_API Camera : public Object
{
public:
    Vertex3D eye;    ///< where the camera stands; its position, not Object::position
    Vertex3D target; ///< the point looked at
    float roll;      ///< bank angle, degrees
    float lens;      ///< focal length, millimetres
    float fov;       ///< field of view, degrees

    Camera();
    /// A copy that shares the name. The caller owns it.
    Object* copyObject();

    /// eye.
    Vertex3D getPosition();
    /// Sets eye; target stays.
    void moveTo(float x, float y, float z);
    /// Adds to eye; target stays.
    void moveBy(float x, float y, float z);
    /// Sets eye and target.
    void moveTo(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ);
    /// Adds to eye and target.
    void moveBy(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ);

    /// Flies by heading and pitch and moves eye only. After it, call targetFromRotation.
    ///@{
    void forward(float d);
    void reverse(float d);
    ///@}
    /// A level step to the side, as above. It shrinks with the sine of the pitch.
    ///@{
    void stepLeft(float d);
    void stepRight(float d);
    ///@}

    /// fov from lens, by a parabola; not limited.
    void calcFOV();
    /// target at distance d from eye, along heading and pitch.
    void targetFromRotation(float d);
    /// Heading and pitch from eye and target.
    void rotationFromTarget();
};

/// A point light.
class VRK_API Light : public Object
{
public:
    Color color;      ///< 255 in all channels until set
    float innerRange; ///< full strength up to here
    float outerRange; ///< nothing from here on

    Light();
    /// A copy that shares the name. The caller owns it.
    Object* copyObject();
};

#endif
