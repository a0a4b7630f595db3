// TGA reading behind loadTGA.
#pragma once

#include <cstdint>

/// What a reader of TGA files takes.
enum class TgaReading
{
    strict, ///< types 2 and 10 of 24 or 32 bits; identification field and origin aren't looked at
    tolerant ///< also grey types 3 and 11 of 8 bits; skips the identification field, turns images that begin on top
};

// loadTGA and loadPackedTGA with a choice of reading; see vornik/assets/image.h.
int readTGA(const char* name, TgaReading reading, uint8_t** image, int* width, int* height,
            int* bytesPerPixel);
int readPackedTGA(const char* name, TgaReading reading, uint8_t** image, int* width, int* height,
                  int* bytesPerPixel, const char* packName);
