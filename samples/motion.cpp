// Curves sampled into keys.

#include "samples/motion.h"

namespace sample
{

static float timeOf(int frame)
{
    return static_cast<float>(frame) / static_cast<float>(lastFrame);
}

std::vector<RotationKey> turning(Vec3 axis, int step, const std::function<float(float)>& angle)
{
    std::vector<RotationKey> keys = {{0, axis, 0}};
    for (int frame = step; frame <= lastFrame; frame += step)
        keys.push_back({frame, axis, angle(timeOf(frame)) - angle(timeOf(frame - step))});
    return keys;
}

std::vector<PositionKey> moving(int step, const std::function<Vec3(float)>& place)
{
    std::vector<PositionKey> keys;
    for (int frame = 0; frame <= lastFrame; frame += step)
        keys.push_back({frame, place(timeOf(frame % lastFrame))});
    return keys;
}

float swing(float time, int swings)
{
    return std::sin(2 * pi * static_cast<float>(swings) * time);
}

// The spline of E. Catmull and R. Rom (1974).
Vec3 onClosedCurve(const std::vector<Vec3>& places, float time)
{
    const int count = static_cast<int>(places.size());
    const float along = (time - std::floor(time)) * static_cast<float>(count);
    const int i = static_cast<int>(along);
    const auto at = [&](int k) { return places[static_cast<size_t>((i + k + count) % count)]; };
    const Vec3 a = at(-1), b = at(0), c = at(1), d = at(2);
    const float t = along - static_cast<float>(i);
    return (b * 2 + (c - a) * t + (a * 2 - b * 5 + c * 4 - d) * (t * t) +
            (b * 3 - a - c * 3 + d) * (t * t * t)) *
           0.5f;
}

} // namespace sample
