// Walking through a group: gravity, walls to slide along, steps to climb, by questions to its octree.
//
// Time goes by steps of one length, however often pictures are drawn, so that a walk ends at the same place
// on every machine. z is up.
#pragma once

#include "apps/vornik/camera.h"

/// Measures of the one who walks.
struct Body
{
    float eyeHeight = 1.7f;
    float radius = 0.4f; ///< kept from walls
    float step = 0.35f;  ///< climbed without a jump
    float speed = 4.0f;  ///< a second
    float gravity = 9.8f;
    float leap = 3.0f; ///< speed upward of a jump
};

/// A body for a scene of these bounds, whatever its unit. @param scale  1 for the one that suits most scenes
Body bodyFor(const Bounds& bounds, float scale);

struct Walker
{
    Vertex3D feet = {0, 0, 0};
    float rising = 0.0f; ///< speed upward; negative while falling
    bool onGround = false;
    float lag = 0.0f;              ///< how far the eye is still behind a step that was climbed
    Vertex3D foothold = {0, 0, 0}; ///< the last ground, to come back to from a fall out of the world
};

/// What the walker wants.
struct Stride
{
    Vertex3D direction = {0, 0, 0}; ///< level; 1 long for full speed
    bool run = false;
    bool jump = false;
};

const int walkStepsASecond = 120;

/// One step of time. The group is to have an octree.
void walkStep(Walker* walker, const Body& body, const Stride& stride, OGroup* group);

/// A place to stand, best under the eye, else where the eye looks, else anywhere in the scene.
/// @return false if the scene has no ground
bool findFoothold(OGroup* group, const Bounds& bounds, const Body& body, const Vertex3D& eye,
                  const Vertex3D& forward, Vertex3D* foothold);

/// A walk in the time of pictures.
class Walk
{
public:
    void begin(const Body& newBody, const Vertex3D& feet);
    /// Goes on for the time since the last picture, a quarter of a second at most.
    void advance(double seconds, const Stride& stride, OGroup* group);
    /// Between the last two steps, as time demands.
    Vertex3D eye() const;
    /// Keeps the feet where they are.
    void setBody(const Body& newBody) { body = newBody; }

    Body body;
    float scale = 1.0f; ///< of the body, chosen by the user

private:
    Walker now, before;
    double rest = 0.0; // seconds not walked yet
};
