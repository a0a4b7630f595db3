// An image file of any content, read by every way that reads one.
#pragma once

#include <cstddef>
#include <cstdint>

/// @param name  of the file, with the extension that says what it is
void readImageFile(const char* name, const uint8_t* data, size_t size);
