#include "apps/vornik/view/pilot.h"

#include <algorithm>
#include <cmath>

static const float degreesAPixel = 0.3f;

void Pilot::begin(const Stage& stage, char upAxis, int firstCamera, bool classic)
{
    axes = axesOf(upAxis);
    classicCameras = classic;
    way = Movement::orbit;
    eye = FreeCamera();
    cameraNumber = 0;
    chosenFov = 0.0f;
    frameAll(stage);
    const int cameras = stage.group ? stage.group->cameraCount : 0;
    setCamera(firstCamera < 0 ? std::min(cameras, 1) : std::min(firstCamera, cameras), stage);
}

// Does the own eye stand where a view has it?
bool Pilot::isAt(const View& view) const
{
    const Vertex3D& place = view.camera.eye;
    return cameraNumber == 0 && eye.eye.x == place.x && eye.eye.y == place.y && eye.eye.z == place.z;
}

void Pilot::frameAll(const Stage& stage)
{
    if (way == Movement::walk)
        way = Movement::orbit;
    if (!stage.group)
        return;
    const bool core = stage.hasSurroundings() && !isAt(stage.coreView);
    const Camera& first = (core ? stage.coreView : stage.firstView).camera;
    size = std::max(stage.core.diagonal(), 1e-6f);
    fov = first.fov;
    Vertex3D forward = first.target - first.eye;
    forward.normalize();
    const float distance = ((core ? stage.core : stage.bounds).middle() - first.eye) * forward;
    eye = freeCameraAt(first.eye, first.target, axes, std::max(distance, 1e-3f * size));
    cameraNumber = 0;
}

// From here on the own eye stands where the scene's camera stood.
void Pilot::takeOver(const Stage& stage)
{
    if (cameraNumber == 0)
        return;
    const View seen = view(stage);
    cameraNumber = 0;
    fov = seen.camera.fov;
    Vertex3D forward = seen.camera.target - seen.camera.eye;
    forward.normalize();
    const float middle = (stage.core.middle() - seen.camera.eye) * forward;
    eye = freeCameraAt(seen.camera.eye, seen.camera.target, axes, std::max(middle, 0.1f * size));
}

std::string Pilot::setMovement(Movement wanted, const Stage& stage)
{
    if (!stage.group)
        return "";
    takeOver(stage);
    if (wanted == Movement::walk)
    {
        if (!isUpright())
            return "gravity pulls along z: no walking with another axis up";
        if (!stage.group->octree)
            stage.group->constructOctree();
        const Body body = bodyFor(stage.core, walk.scale);
        Vertex3D foothold;
        if (!findFoothold(stage.group, stage.bounds, body, eye.eye, forwardOf(eye, axes), &foothold))
            return "no ground to stand on";
        walk.begin(body, foothold);
        eye.pitch = std::clamp(eye.pitch, -10.0f, 10.0f);
    }
    else if (way == Movement::walk)
        eye.eye = walk.eye();
    way = wanted;
    return "";
}

void Pilot::setCamera(int number, const Stage& stage)
{
    const int cameras = stage.group ? stage.group->cameraCount : 0;
    if (number <= 0 || cameras == 0)
        return takeOver(stage);
    if (way == Movement::walk)
        setMovement(Movement::orbit, stage);
    cameraNumber = (number - 1) % cameras + 1;
    chosenFov = 0.0f;
}

void Pilot::setFov(float degrees)
{
    fov = chosenFov = std::clamp(degrees, 1.0f, 170.0f);
}

void Pilot::drag(const Stage& stage, float x, float y, bool shift, float height)
{
    takeOver(stage);
    if (way != Movement::orbit)
        return look(&eye, degreesAPixel * x, -degreesAPixel * y);
    if (!shift)
        return orbit(&eye, axes, degreesAPixel * x, -degreesAPixel * y);
    // What lies at the centre's distance follows the mouse.
    const float pixel = 2.0f * eye.distance * std::tan(vrkRad(fov) / 2.0f) / std::max(height, 1.0f);
    pan(&eye, axes, -x * pixel, y * pixel);
}

void Pilot::wheel(const Stage& stage, float notches)
{
    takeOver(stage);
    if (way == Movement::orbit)
        zoom(&eye, axes, std::pow(0.85f, notches), 1e-4f * size);
    else if (way == Movement::fly)
        flySpeed = std::clamp(flySpeed * std::pow(1.25f, notches), 0.01f, 100.0f);
}

static float sign(bool positive, bool negative)
{
    return (positive ? 1.0f : 0.0f) - (negative ? 1.0f : 0.0f);
}

void Pilot::move(const Stage& stage, const Held& held, double seconds)
{
    const float forward = sign(held.forward, held.back);
    const float right = sign(held.right, held.left);
    const float up = sign(held.up, held.down);
    const float turn = sign(held.turnRight, held.turnLeft);
    const bool moves = forward != 0.0f || right != 0.0f || up != 0.0f || turn != 0.0f;
    if (moves)
        takeOver(stage);
    if (!stage.group || (!moves && way != Movement::walk))
        return;
    const float time = static_cast<float>(std::min(seconds, 0.25));
    const float degrees = 90.0f * turn * time;
    if (way == Movement::walk)
    {
        look(&eye, degrees, 0.0f);
        Stride stride;
        stride.direction = directionAt(axes, eye.heading, 0.0f);
        stride.direction *= forward;
        Vertex3D side = directionAt(axes, eye.heading + 90.0f, 0.0f);
        side *= right;
        stride.direction += side;
        stride.run = held.fast;
        stride.jump = held.up;
        walk.advance(seconds, stride, stage.group);
        return;
    }
    const float pace = (held.fast ? 4.0f : 1.0f) * (held.slow ? 0.25f : 1.0f) * time;
    if (way == Movement::orbit)
    {
        orbit(&eye, axes, 60.0f * (right - turn) * -pace, 60.0f * up * -pace);
        zoom(&eye, axes, std::exp(-1.5f * forward * pace), 1e-4f * size);
        return;
    }
    look(&eye, degrees, 0.0f);
    const float way3d = 0.25f * size * flySpeed * pace;
    fly(&eye, axes, forward * way3d, right * way3d, up * way3d);
}

void Pilot::resizeWalker(float factor)
{
    const float scale = std::clamp(walk.scale * factor, 0.01f, 20.0f);
    factor = scale / walk.scale;
    walk.scale = scale;
    Body body = walk.body;
    for (float* measure : {&body.eyeHeight, &body.radius, &body.step, &body.speed, &body.gravity, &body.leap})
        *measure *= factor;
    walk.setBody(body);
}

// Also for what is no number.
static float limited(float value, float low, float high)
{
    return value >= low ? std::min(value, high) : low;
}

void Pilot::limit()
{
    Body& body = walk.body;
    flySpeed = limited(flySpeed, 0.01f, 100.0f);
    body.eyeHeight = limited(body.eyeHeight, 2.0f * body.radius, 10.0f * size);
    body.speed = limited(body.speed, 0.0f, 10.0f * size);
    body.gravity = limited(body.gravity, 0.0f, 100.0f * size);
}

View Pilot::ownView() const
{
    FreeCamera standing = eye;
    if (way == Movement::walk)
        standing.eye = walk.eye();
    return viewOf(standing, axes, fov);
}

View Pilot::view(const Stage& stage) const
{
    if (cameraNumber == 0 || !stage.group || cameraNumber > stage.group->cameraCount)
        return ownView();
    if (stage.group->animated)
        stage.group->doCameraAnim(stage.group->cameras[cameraNumber - 1]);
    View seen = cameraView(stage.group, cameraNumber - 1, classicCameras);
    if (chosenFov > 0.0f)
        seen.camera.fov = chosenFov;
    return seen;
}

float Pilot::closest() const
{
    if (cameraNumber > 0)
        return 1e-3f * size;
    return way == Movement::walk ? 0.3f * walk.body.radius : 0.05f * eye.distance;
}
