// The spline of a track: tangents in the manner of Kochanek and Bartels, "Interpolating Splines with Local
// Tension, Continuity, and Bias Control" (1984), and Hermite interpolation between two keys. The scale
// factors are the engine's own and part of what hosts rely on.

#include <cmath>
#include <cstdint>

#include "vornik/animation/path.h"

// Weights of the step from the key before and of the step to the key behind, for both tangents.
struct Weights
{
    float inBefore, inBehind, outBefore, outBehind;
};

static Weights weightsOf(const Key& key)
{
    const float t = key.tension, c = key.continuity, b = key.bias;
    return {0.5f * (1 + b) * (1 - t) * (1 - c), (1 - t) * (1 + c) * (1 - b),
            0.5f * (1 + b) * (1 - t) * (1 + c), (1 - t) * (1 - c) * (1 - b)};
}

// A key with its neighbours. They wrap around.
struct Neighbourhood
{
    const Key &before, &key, &behind;

    Neighbourhood(const Key* keys, int count, int k)
        : before(keys[k == 0 ? count - 1 : k - 1]), key(keys[k]), behind(keys[k == count - 1 ? 0 : k + 1])
    {
    }

    // Whole: a fraction of frame numbers is cut to 0, 1 or 2.
    float firstFactor() const
    {
        const int64_t sum = int64_t(before.frame) + key.frame;
        const int64_t whole = sum == 0 ? 0 : 2 * int64_t(key.frame) / sum;
        return static_cast<float>(whole);
    }
    float secondFactor() const
    {
        const int64_t sum = int64_t(before.frame) + behind.frame;
        return 2.0f * static_cast<float>(before.frame) / (sum == 0 ? 1.0f : static_cast<float>(sum));
    }
};

static void scale(float (&tangent)[4], float factor)
{
    for (float& component : tangent)
        component *= factor;
}

// Both factors fall on the incoming tangent; the outgoing one stays.
static void scaleIncoming(Key& key, const Neighbourhood& around, int count)
{
    if (count <= 1)
        return;
    scale(key.tangentIn, around.firstFactor());
    scale(key.tangentIn, around.secondFactor());
}

static void calcRotationTangents(Key& key, const Neighbourhood& around, int count)
{
    const Weights w = weightsOf(key);
    const float* before = around.before.rotation;
    const float* here = key.rotation;
    const float* behind = around.behind.rotation;
    for (int j = 0; j < 3; ++j)
    {
        key.tangentIn[j] = (here[j] - before[j]) * w.inBefore + (behind[j] - here[j]) * w.inBehind;
        key.tangentOut[j] = (here[j] - before[j]) * w.outBefore + (behind[j] - here[j]) * w.outBehind;
    }
    // An angle is a step from the key before, so it is a difference already.
    key.tangentIn[3] = (behind[3] - here[3]) * w.inBehind + here[3] * w.inBefore;
    key.tangentOut[3] = (behind[3] - here[3]) * w.outBehind + here[3] * w.outBefore;
    scaleIncoming(key, around, count);
}

// Positions have the last word on the first three components, in a rotation track too.
static void calcPositionTangents(Key& key, const Neighbourhood& around, int count)
{
    const Weights w = weightsOf(key);
    for (int j = 0; j < 3; ++j)
    {
        const float stepTo = key.position[j] - around.before.position[j];
        const float stepFrom = around.behind.position[j] - key.position[j];
        key.tangentIn[j] = stepTo * w.inBefore + stepFrom * w.inBehind;
        key.tangentOut[j] = stepTo * w.outBefore + stepFrom * w.outBehind;
    }
    scaleIncoming(key, around, count);
}

void VRKPath::calcTans()
{
    if (!keys)
        return;
    for (int k = 0; k < keyCount; ++k)
        calcRotationTangents(keys[k], Neighbourhood(keys, keyCount, k), keyCount);
    for (int k = 0; k < keyCount; ++k)
        calcPositionTangents(keys[k], Neighbourhood(keys, keyCount, k), keyCount);
}

// The last key at or before a frame, in the order of the array; the first one if there is none.
static int keyBefore(const VRKPath& path, float frame)
{
    int found = 0;
    for (int k = 0; k < path.keyCount; ++k)
        if (static_cast<float>(path.keys[k].frame) <= frame)
            found = k;
    return found;
}

Key VRKPath::interpolateKey(float frame)
{
    Key result = {};
    if (!keys || keyCount < 1)
        return result;
    const int k = keyBefore(*this, frame);
    const Key& from = keys[k];
    const bool isLast = k + 1 >= keyCount; // behind it its own values go on
    const Key& to = isLast ? from : keys[k + 1];
    const float span = static_cast<float>(to.frame) - static_cast<float>(from.frame);
    const float t = isLast ? 0.0f : (frame - static_cast<float>(from.frame)) / (span == 0.0f ? 1.0f : span);
    // Powers of doubles: those of floats aren't the nearest ones, and differ from one C library to the next.
    const float t2 = static_cast<float>(std::pow(double(t), 2.0));
    const float t3 = static_cast<float>(std::pow(double(t), 3.0));
    const float h1 = 2 * t3 - 3 * t2 + 1;
    const float h2 = 3 * t2 - 2 * t3;
    const float h3 = t3 - 2 * t2 + t;
    const float h4 = t3 - t2;
    const auto blend = [&](float a, float b, int j)
    { return h1 * a + h2 * b + h4 * to.tangentIn[j] + h3 * from.tangentOut[j]; };

    // Positions and axes share the tangents.
    for (int j = 0; j < 3; ++j)
    {
        result.position[j] = blend(from.position[j], to.position[j], j);
        result.rotation[j] = blend(from.rotation[j], to.rotation[j], j);
    }
    result.rotation[3] = blend(from.rotation[3], to.rotation[3], 3);
    return result;
}
