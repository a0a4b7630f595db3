// JPEG decoding and encoding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

/// A decoded image: rows from the top, channels bytes a pixel, no padding.
struct JpegImage
{
    int width = 0;
    int height = 0;
    int channels = 0; ///< 3 RGB, 1 grey
    std::vector<uint8_t> pixels;
};

/// Decodes a JPEG stream. @param grey  asks for one channel instead of three
/// @return false if it is no JPEG, uses colours that can't be converted, or is too large. Of image only the
///         size is then of use: that of the header if it could be read, else 0.
///         A stream that is cut in its image data decodes, with the rest grey.
bool jpegDecode(const uint8_t* data, size_t size, bool grey, JpegImage* image);

/// Encodes packed pixels, rows from the top, with one colour value for each 2 by 2 of them.
/// @param quality  1 to 100
/// @param channels  bytes a pixel: 3 RGB; 4 RGBA, of which alpha is dropped
/// @return the stream; empty on failure
std::vector<uint8_t> jpegEncode(const uint8_t* pixels, int width, int height, int quality, int channels = 3);
