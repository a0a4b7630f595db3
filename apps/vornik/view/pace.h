// How long to wait between pictures where the swap doesn't wait for the display.
#pragma once

class Pace
{
public:
    /// The first picture is wanted now.
    void begin(double now) { due = now; }
    /// After a picture. @param refreshRate  of the display, in Hz
    /// @return seconds until the next picture is wanted; 0 or less when it is late
    double next(double now, int refreshRate);

private:
    double due = 0.0; // when the next picture is wanted
};
