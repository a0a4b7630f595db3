// Playing tracks: of objects onto the rasterizer's matrix stack, of cameras into their records, of textures
// into their frame numbers.

#include "animation/ogroupanimation.h"

#include <iterator>

#include "scene/statictransform.h"
#include "scene/transformpoint.h"
#include "vornik/animation/path.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

void OGroup::setCurrentFrame(int frame)
{
    currentFrame = frame;
    if (!stopAtEnd)
        // With the sign of the frame. In 64 bits, which hold the quotient of any two.
        currentFrame = frameCount == 0 ? 0 : static_cast<int>(int64_t(frame) % int64_t(frameCount));
    else if (frame > frameCount)
        currentFrame = static_cast<int>(int64_t(frameCount) - 1);
}

static float framesBetween(int from, int to)
{
    return static_cast<float>(int64_t(to) - int64_t(from));
}

// Two keys around a frame, and how far it is between them.
struct Bracket
{
    const Key &from, &to;
    float span, passed;

    Bracket(const Key* keys, int i, int frame)
        : from(keys[i - 1]), to(keys[i]), span(framesBetween(from.frame, to.frame)),
          passed(framesBetween(from.frame, frame))
    {
        if (span == 0.0f)
            span = 1.0f;
    }
    float value(float a, float b) const { return (b - a) / span * passed + a; }
    Vertex3D position() const
    {
        return {value(from.position[0], to.position[0]), value(from.position[1], to.position[1]),
                value(from.position[2], to.position[2])};
    }
};

static Vertex3D positionOf(const Key& key)
{
    return {key.position[0], key.position[1], key.position[2]};
}

// The first key that the frame is not behind; keyCount if it is behind all.
static int walkTo(const VRKPath& path, int frame)
{
    int i = 0;
    while (i < path.keyCount && frame > path.keys[i].frame)
        ++i;
    return i;
}

// The first key that the frame has not reached; 0 if it has not reached the first, keyCount if it has reached
// all.
static int walkBehind(const VRKPath& path, int frame)
{
    int k = 0;
    while (k < path.keyCount && frame >= path.keys[k].frame)
        ++k;
    return k;
}

static bool hasKeys(const VRKPath* path)
{
    return path && path->keys && path->keyCount > 0;
}

// Up to its first key a camera stands where that key puts it.
static void placeCamera(const VRKPath* path, int frame, Vertex3D* place)
{
    if (!hasKeys(path))
        return;
    const int i = walkTo(*path, frame);
    if (i == 0)
        *place = positionOf(path->keys[0]);
    else if (i >= path->keyCount)
        *place = positionOf(path->keys[path->keyCount - 1]);
    else
        *place = Bracket(path->keys, i, frame).position();
}

void OGroup::doCameraAnim(Camera* camera)
{
    if (!camera || !activePathList)
        return;
    placeCamera(findTrack(*activePathList, camera, VRK_TRACK_POSITION, VRK_NODE_CAMERA), currentFrame,
                &camera->eye);
    const VRKPath* roll = findTrack(*activePathList, camera, VRK_TRACK_SCALAR);
    if (hasKeys(roll))
    {
        const int i = walkTo(*roll, currentFrame);
        if (i >= 1 && i < roll->keyCount)
        {
            const Bracket bracket(roll->keys, i, currentFrame);
            camera->roll = bracket.value(bracket.from.value, bracket.to.value);
        }
    }
    placeCamera(findTrack(*activePathList, camera, VRK_TRACK_POSITION, VRK_NODE_TARGET), currentFrame,
                &camera->target);
}

static void translate(const Vertex3D& by)
{
    vrkTranslate(by.x, by.y, by.z);
}

static void rotateByKey(const Key& key, float angle)
{
    vrkRotate(angle, -key.rotation[0], -key.rotation[1], -key.rotation[2]);
}

// A single key holds at every frame. Of several, the closing one holds up to the first.
static void applyPosition(const VRKPath& path, int frame)
{
    if (path.keyCount <= 2)
        return translate(positionOf(path.keys[0]));
    const int i = walkTo(path, frame);
    if (i >= 1 && i < path.keyCount)
        translate(Bracket(path.keys, i, frame).position());
    else
        translate(positionOf(path.keys[path.keyCount - 1]));
}

// Keys are turns from the key before: the part of the turn under way comes first onto the stack, then all
// that are done, back to the oldest, which is nearest to the vertices.
static void applyRotation(const VRKPath& path, int frame)
{
    if (path.keyCount <= 2)
        return rotateByKey(path.keys[0], path.keys[0].rotation[3]);
    const int k = walkBehind(path, frame);
    if (k >= 1 && k < path.keyCount)
    {
        const Bracket bracket(path.keys, k, frame);
        rotateByKey(bracket.to, bracket.passed * (bracket.to.rotation[3] / bracket.span));
    }
    for (int j = k - 1; j >= 0; --j)
        rotateByKey(path.keys[j], path.keys[j].rotation[3]);
}

static bool animateObject(const Object& object, const Object* self, const Tracks& tracks, int frame)
{
    if (hasKeys(tracks.position))
        applyPosition(*tracks.position, frame);
    applyRotationOf(object);
    if (!hasKeys(tracks.rotation))
        return false;
    applyRotation(*tracks.rotation, frame);
    // Of the object that is drawn only, never of a parent on the way to it.
    if (&object == self)
        translate(-object.pivot);
    return true;
}

bool OGroup::doObjectAnim(Object* object, Object* self)
{
    return object && activePathList &&
           animateObject(*object, self, findTracks(*activePathList, object), currentFrame);
}

// How many objects there are from an object up to its root. A hierarchy that closes to a circle counts each
// of its objects once (cycle detection by R. P. Brent, 1980).
static int chainLength(const Object* object)
{
    int power = 1, circle = 1, length = 1;
    const Object* tortoise = object;
    const Object* hare = object->parent;
    while (hare && hare != tortoise)
    {
        if (circle == power)
        {
            tortoise = hare;
            power *= 2;
            circle = 0;
        }
        hare = hare->parent;
        ++circle;
        ++length;
    }
    if (!hare)
        return length;

    // The steps in front of the circle: two walkers, a circle apart, meet where it begins.
    const Object* ahead = object;
    for (int i = 0; i < circle; ++i)
        ahead = ahead->parent;
    int lead = 0;
    for (const Object* behind = object; behind != ahead; behind = behind->parent, ahead = ahead->parent)
        ++lead;
    return lead + circle;
}

// The root of the chain comes first.
static void animateChain(const OGroup& group, const Object& object, const Object* self, FindTracks find,
                         int length)
{
    if (length > 1)
        animateChain(group, *object.parent, self, find, length - 1);
    animateObject(object, self, find(*group.activePathList, &object), group.currentFrame);
}

int applyAnimation(const OGroup& group, Object* object, Object* self, FindTracks find)
{
    if (!group.activePathList)
        return vrkPutToErrorLog("PathList used in functioncall is NULL!", 34);
    if (object)
        animateChain(group, *object, self, find, chainLength(object));
    return 0;
}

int OGroup::doAnimation(Object* object, Object* self)
{
    return applyAnimation(*this, object, self, findTracks);
}

// Where an object of the group stands now, onto the rasterizer's matrix.
static void applyTransform(OGroup& group, Object* object)
{
    if (group.animated)
        group.doAnimation(object, object);
    else
        applyStaticTransform(*object);
}

void OGroup::transformVertices(Mesh* mesh)
{
    if (!mesh || !mesh->calculatedVertices || !mesh->transformedVertices)
        return;
    double m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    vrkPushMatrix();
    vrkInitMatrix();
    applyTransform(*this, mesh);
    vrkGetModelViewMatrix(m);
    vrkPopMatrix();
    for (int i = 0; i < mesh->vertexCount; ++i)
        mesh->transformedVertices[i] = transformPoint(m, mesh->calculatedVertices[i]);
}

void OGroup::getObjectAnimatedMatrix(Object* object, float* matrix)
{
    if (!object)
        return;
    vrkPushMatrix();
    vrkInitMatrix();
    applyTransform(*this, object);
    vrkGetModelViewMatrix(matrix);
    vrkPopMatrix();
}

void OGroup::getObjectAnimatedMatrixWithCamera(Object* object, float* modelView, float* projection,
                                               int* viewport)
{
    if (!object)
        return;
    vrkPushMatrix();
    applyTransform(*this, object);
    vrkGetModelViewMatrix(modelView);
    vrkGetProjectionMatrix(projection);
    vrkGetViewportMatrix(viewport);
    vrkPopMatrix();
}

static void stepFrame(Texture* texture)
{
    if (!texture || texture->frameCount < 2)
        return;
    texture->currentFrame = texture->currentFrame >= texture->frameCount - 1 ? 0 : texture->currentFrame + 1;
}

int OGroup::animateTextures()
{
    for (Material* material = activeTList ? activeTList->first : nullptr; material; material = material->next)
        for (Texture* texture : {material->firstTexture, material->secondTexture, material->opacityTexture,
                                 material->reflectionTexture})
            stepFrame(texture);
    return 0;
}
