#include "vornik/scene/object.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

#include "scene/sharedname.h"

Object::Object()
    : name(nullptr), parent(nullptr), objectId(0), parentId(0), visible(1), special(0), specialType(0),
      specialFade(0.0f)
{
}

Object::Object(const Object& other) : name(nullptr)
{
    *this = other;
}

Object& Object::operator=(const Object& other)
{
    if (this == &other)
        return *this;
    char* shared = shareName(other.name);
    releaseName(&name);
    name = shared;
    location = other.location;
    rotation = other.rotation;
    position = other.position;
    pivot = other.pivot;
    parent = other.parent;
    objectId = other.objectId;
    parentId = other.parentId;
    visible = other.visible;
    special = other.special;
    specialType = other.specialType;
    specialFade = other.specialFade;
    return *this;
}

Object::~Object()
{
    releaseName(&name);
}

Object* Object::copyObject()
{
    return new (std::nothrow) Object(*this);
}

void Object::setName(const char* text)
{
    // Copied before the old one goes: the text may be that very name.
    const size_t size = std::strlen(text) + 1;
    char* copy = static_cast<char*>(std::malloc(size));
    if (copy)
        std::memcpy(copy, text, size);
    releaseName(&name);
    name = copy;
}

void Object::setSpecial(int type)
{
    special = 1;
    specialType = type;
    visible = 0;
}

Camera::Camera() : eye{0, 0, 0}, target{0, 0, 0}, roll(0.0f), lens(0.0f), fov(90.0f) {}

Object* Camera::copyObject()
{
    return new (std::nothrow) Camera(*this);
}

Vertex3D Camera::getPosition()
{
    return eye;
}

void Camera::moveTo(float x, float y, float z)
{
    eye = {x, y, z};
}

void Camera::moveBy(float x, float y, float z)
{
    eye += Vertex3D{x, y, z};
}

void Camera::moveTo(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ)
{
    eye = {eyeX, eyeY, eyeZ};
    target = {targetX, targetY, targetZ};
}

void Camera::moveBy(float eyeX, float eyeY, float eyeZ, float targetX, float targetY, float targetZ)
{
    eye += Vertex3D{eyeX, eyeY, eyeZ};
    target += Vertex3D{targetX, targetY, targetZ};
}

// Unit view direction for a heading and a pitch in degrees.
static Vertex3D direction(float heading, float pitch)
{
    const double h = vrkRad(heading);
    const double p = vrkRad(pitch);
    return {static_cast<float>(-std::sin(h) * std::sin(p)), static_cast<float>(std::cos(h) * std::sin(p)),
            static_cast<float>(-std::cos(p))};
}

void Camera::forward(float d)
{
    Vertex3D step = direction(rotation.x, rotation.y);
    step *= d;
    eye += step;
}

void Camera::reverse(float d)
{
    forward(-d);
}

void Camera::stepLeft(float d)
{
    // The factor of the pitch stays in: looking straight down there is no step aside.
    Vertex3D step = direction(rotation.x + 90.0f, rotation.y);
    step *= d;
    eye.x += step.x;
    eye.y += step.y;
}

void Camera::stepRight(float d)
{
    stepLeft(-d);
}

void Camera::calcFOV()
{
    fov = lens * lens * 0.046432316f - lens * 4.9570117f + 178.1292f;
}

void Camera::targetFromRotation(float d)
{
    Vertex3D step = direction(rotation.x, rotation.y);
    step *= d;
    target = eye + step;
}

void Camera::rotationFromTarget()
{
    const Vertex2D from = {eye.x, eye.y};
    const Vertex2D to = {target.x, target.y};
    const Vertex2D low = {0.0f, eye.z};
    const Vertex2D high = {vrkDistance(&from, &to), target.z};
    rotation.x = vrkAngle(&from, &to);
    rotation.y = vrkAngle(&low, &high);
}

Light::Light() : color{255.0f, 255.0f, 255.0f, 255.0f}, innerRange(0.0f), outerRange(10000.0f) {}

Object* Light::copyObject()
{
    return new (std::nothrow) Light(*this);
}
