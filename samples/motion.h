// Motion as keys. Players go straight from key to key, so what moves in curves gets a key every few frames.
// Time runs from 0 to 1 over the whole animation, and every motion ends where it begins.
#pragma once

#include <functional>
#include <vector>

#include "samples/geometry.h"

namespace sample
{

constexpr int lastFrame = 360; ///< of the animation

/// Steps of a turn about an axis. @param angle  in radians at a time; at time 1 what it is at 0, give or take
/// whole turns
std::vector<RotationKey> turning(Vec3 axis, int step, const std::function<float(float time)>& angle);

/// Places on a way. @param place  at a time, from the place of rest; zero at times 0 and 1
std::vector<PositionKey> moving(int step, const std::function<Vec3(float time)>& place);

/// A sine that makes whole swings in the course of the animation.
float swing(float time, int swings);

/// Place on a smooth closed curve that reaches the given places one after the other, in equal times.
Vec3 onClosedCurve(const std::vector<Vec3>& places, float time);

} // namespace sample
