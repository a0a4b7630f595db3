// Turns the scene into a .3DS file and its images.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "samples/scene.h"

namespace sample
{

/// The bytes of the .3DS file. One unit of the file is ten metres.
std::vector<uint8_t> encodeScene(const Scene& scene);
/// The bytes of a JPEG (for a name that ends in .jpg) or a TGA of 32 bits a pixel.
std::vector<uint8_t> encodePicture(const std::string& name, const Image& image);

} // namespace sample
