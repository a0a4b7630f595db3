// Where an animation stands while it is played, paused or stepped. The engine counts whole frames and has no
// clock; this is the clock.
#pragma once

class Playback
{
public:
    /// Starts over with a scene of so many frames; 0 for one that stands still.
    void begin(int frames);

    void advance(double seconds);
    void togglePlaying() { playing = !playing; }
    /// Pauses and goes some frames on, or back below 0.
    void step(int frames);
    void rewind() { position = 0.0; }
    /// Goes to a frame, playing on or not.
    void goTo(int frame);
    /// Doubles or halves the pace, within a 16th and 16 times.
    void faster();
    void slower();

    bool isPlaying() const { return playing; }
    /// 0 to frameCount - 1.
    int frame() const;
    /// Goes on where frame() begins again.
    int textureFrame() const { return static_cast<int>(position); }
    int frames() const { return frameCount; }
    double pace() const { return speed; }

private:
    double position = 0.0; // in frames since the start; kept low enough for an int
    double speed = 1.0;
    int frameCount = 0;
    bool playing = true;
};
