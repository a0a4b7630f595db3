// Animated PNG files (APNG 1.0), written picture by picture. They play for ever.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "apps/vornik/imagefile.h"

/// Does the name end in .apng?
bool isAnimationName(const std::string& path);

/// begin, add for every picture, end. Each returns an empty text, or what went wrong.
class AnimatedPng
{
public:
    std::string begin(const std::string& path, int width, int height, int pictures, int picturesASecond);
    std::string add(const Image& picture);
    std::string end();

private:
    void writeChunk(const char* type, const std::string& data);

    struct Closer
    {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, Closer> file;
    uint32_t sequence = 0; // of the chunks that speak of pictures
    int rate = 1;
};
