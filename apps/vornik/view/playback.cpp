#include "apps/vornik/view/playback.h"

#include <algorithm>
#include <cmath>

static const double framesASecond = 30.0; // as editors of .3DS files count

void Playback::begin(int frames)
{
    frameCount = std::max(frames, 0);
    position = 0.0;
}

// Keeps the position short. A multiple of all small numbers of images, so that textures go on smoothly.
static double wrapped(double position, int frameCount)
{
    const double round = 5040.0 * std::max(frameCount, 1);
    position = std::fmod(position, round);
    return position < 0.0 ? position + round : position;
}

void Playback::advance(double seconds)
{
    if (playing)
        position = wrapped(position + seconds * framesASecond * speed, frameCount);
}

void Playback::step(int frames)
{
    playing = false;
    position = wrapped(std::floor(position) + frames, frameCount);
}

void Playback::goTo(int frame)
{
    position = wrapped(frame, frameCount);
}

void Playback::faster()
{
    speed = std::min(speed * 2.0, 16.0);
}

void Playback::slower()
{
    speed = std::max(speed / 2.0, 1.0 / 16.0);
}

int Playback::frame() const
{
    return frameCount > 0 ? textureFrame() % frameCount : 0;
}
