#ifndef VORNIK_RASTERIZER_FONT_H
#define VORNIK_RASTERIZER_FONT_H

// Text in a bitmap font: the system font on Windows, elsewhere the engine's own, of 8 by 16 pixels a
// character.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

/// Makes the font's 128 display lists from vrkFontBase on, which is the first free name counted from 0. Name
/// 0 is always free, so the lists 1 to 127 become glyphs: call it before anything else takes display lists,
/// and so before scenes are loaded. @return 0 or 49, logged
VRK_API int vrkInitFont();

/// Writes text, formatted as by printf, over the frame. Needs vrkInitFont.
/// @param x, y  left end of the base line, in pixels from the top left corner of vrkViewport: at y = 0 the
///              text lies above the window. Lines fit 16 pixels apart. On Direct3D the top left corner.
/// @param c  alpha isn't read
/// @param format  cut to 1,024 characters when formatted. Codes above 127 draw nothing and take no room;
///                control codes, line feeds too, are blanks. Null writes nothing.
/// Text lies on the window's very front, where depth test and fog leave it alone. Matrices stay as they are.
/// Leaves VRK_TEXTURE_2D and VRK_BLEND on, whatever they were.
VRK_API void vrkWrite(float x, float y, Color* c, const char* format, ...);

#endif
