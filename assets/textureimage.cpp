// Operations on the pixels of a loaded image: RGBA bytes, in integer arithmetic.

#include "vornik/assets/texture.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>

static uint8_t toByte(int64_t value)
{
    return static_cast<uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

static size_t imageBytes(const Texture& texture)
{
    return texture.width < 1 || texture.height < 1
               ? 0
               : static_cast<size_t>(texture.width) * static_cast<size_t>(texture.height) * 4;
}

void Texture::multiply()
{
    if (!pixels || height < 1)
        return;
    uint8_t* end = pixels + imageBytes(*this);
    for (uint8_t* pixel = pixels; pixel < end; pixel += 4)
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] = toByte(2 * pixel[channel] - 28);
}

// Replaces texture.pixels by the filtered image. Byte tells how source bytes are read: signed or unsigned.
// Sums are always taken of the unchanged image. The outermost pixels, which lack neighbours, stay.
template <typename Byte>
static void applyKernel(Texture& texture, const int* kernel, int64_t divisor)
{
    const size_t bytes = imageBytes(texture);
    uint8_t* result = static_cast<uint8_t*>(std::malloc(bytes ? bytes : 1));
    if (!result)
        return;
    std::memcpy(result, texture.pixels, bytes);

    const Byte* source = reinterpret_cast<const Byte*>(texture.pixels);
    const ptrdiff_t stride = static_cast<ptrdiff_t>(texture.width) * 4;
    for (int y = 1; y < texture.height - 1; ++y)
        for (int x = 1; x < texture.width - 1; ++x)
            for (int channel = 0; channel < 4; ++channel)
            {
                const ptrdiff_t at = y * stride + x * 4 + channel;
                int64_t sum = 0;
                for (int row = 0; row < 3; ++row)
                    for (int column = 0; column < 3; ++column)
                        sum += static_cast<int64_t>(kernel[row * 3 + column]) *
                               source[at + (row - 1) * stride + (column - 1) * 4];
                result[at] = toByte(sum / divisor);
            }

    std::free(texture.pixels);
    texture.pixels = result;
}

static const int sharpenKernel[9] = {-1, -2, -1, -2, 19, -2, -1, -2, -1};

void Texture::filter(const int* kernel)
{
    if (!kernel || !pixels)
        return;
    int64_t sum = 0;
    for (int i = 0; i < 9; ++i)
        sum += kernel[i];
    if (sum != 0)
        applyKernel<uint8_t>(*this, kernel, sum);
}

void Texture::sharpenTexture()
{
    if (pixels)
        applyKernel<int8_t>(*this, sharpenKernel, 7);
}

// Power of two that a side shrinks to. The logarithm of 2 is a float a little above the true one, so that an
// exact power of two comes out just below its exponent and falls to the next smaller size.
static int shrunkSize(int size, float scale)
{
    const float logarithmOfTwo = 0.693147182464599609375f;
    const double exponent = std::log(static_cast<double>(size) * static_cast<double>(scale)) / logarithmOfTwo;
    const int whole = static_cast<int>(exponent);
    // Below 2^0 nothing is left of the side; one pixel stays.
    return whole < 1 ? 1 : 1 << whole;
}

static uint8_t blockAverage(const Texture& texture, int left, int bottom, int width, int height, int channel)
{
    uint64_t sum = 0;
    for (int y = bottom; y < bottom + height; ++y)
        for (int x = left; x < left + width; ++x)
            sum += texture.pixels[(static_cast<size_t>(y) * static_cast<size_t>(texture.width) +
                                   static_cast<size_t>(x)) *
                                      4 +
                                  static_cast<size_t>(channel)];
    return toByte(static_cast<int64_t>(sum / (static_cast<uint64_t>(width) * static_cast<uint64_t>(height))));
}

void Texture::scaleTexture(float scale)
{
    if (!(scale > 0.0f) || scale > 1.0f || !pixels || width < 1 || height < 1)
        return;
    const int newWidth = shrunkSize(width, scale);
    const int newHeight = shrunkSize(height, scale);
    const int blockWidth = width / newWidth;
    const int blockHeight = height / newHeight;

    const size_t bytes = static_cast<size_t>(newWidth) * static_cast<size_t>(newHeight) * 4;
    uint8_t* result = static_cast<uint8_t*>(std::malloc(bytes));
    if (!result)
        return;
    uint8_t* out = result;
    for (int y = 0; y < newHeight; ++y)
        for (int x = 0; x < newWidth; ++x)
            for (int channel = 0; channel < 4; ++channel)
                *out++ =
                    blockAverage(*this, x * blockWidth, y * blockHeight, blockWidth, blockHeight, channel);

    width = newWidth;
    height = newHeight;
    std::free(pixels);
    pixels = result;
    // Averaging softens; every scaled image is sharpened again.
    filter(sharpenKernel);
}
