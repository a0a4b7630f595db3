#ifndef VORNIK_RASTERIZER_SCREENSHOT_H
#define VORNIK_RASTERIZER_SCREENSHOT_H

// The picture, read back and saved. Both wait for all drawing: they suit a key press, not every frame.

#include "vornik/export.h"

/// Reads pixels from the bottom left corner of the window. On Direct3D the buffer stays as it is.
/// @param buffer  [width * height * 4], out: RGBA, rows from the bottom
VRK_API void vrkGetBuffer(char* buffer, int width, int height);

/// Saves the picture, as large as vrkViewport, as a JPEG of quality 90 in the current directory, under the
/// first free name of Shot0000.jpg to Shot0999.jpg. With all names taken, or where the file can't be written,
/// nothing happens and nothing is logged. The picture is black on Direct3D.
VRK_API void vrkScreenShot();

#endif
