#include "platform/jpeg.h"

#include <csetjmp>
#include <cstdlib>

#include <jpeglib.h>

#include "core/memorylasts.h"

// The library reports errors through callbacks that must not return: they jump back to the caller.
struct ErrorManager
{
    jpeg_error_mgr base;
    std::jmp_buf back;
};

static void jumpBack(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->back, 1);
}

static void staySilent(j_common_ptr, int) {}

// A progressive stream may walk its whole picture again for every dozen bytes. Writers make ten or twenty
// scans; a stream of more than these is made to keep its reader busy.
static void endManyScans(j_common_ptr info)
{
    const int mostScans = 64;
    if (reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > mostScans)
        jumpBack(info);
}

static jpeg_error_mgr* prepare(ErrorManager* errors)
{
    jpeg_error_mgr* base = jpeg_std_error(&errors->base);
    base->error_exit = jumpBack;
    base->emit_message = staySilent;
    return base;
}

// A stream can claim a size that its data can't fill. What it may take grows with its length, so that a few
// bytes never ask for gigabytes; the flattest picture stays far below.
static uint64_t mostPixels(size_t streamSize)
{
    const uint64_t small = 1u << 20;
    const uint64_t large = 1u << 28;
    const uint64_t byLength = static_cast<uint64_t>(streamSize) * 4096;
    return byLength < small ? small : byLength > large ? large : byLength;
}

// Rows go straight into image->pixels, so that nothing is lost when the library jumps out.
static bool decodeRows(jpeg_decompress_struct* info, size_t streamSize, bool grey, JpegImage* image)
{
    jpeg_read_header(info, TRUE);
    if (static_cast<uint64_t>(info->image_width) * info->image_height > mostPixels(streamSize))
        return false;
    image->width = static_cast<int>(info->image_width);
    image->height = static_cast<int>(info->image_height);
    if (info->jpeg_color_space == JCS_CMYK || info->jpeg_color_space == JCS_YCCK)
        return false;

    info->out_color_space = grey ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_start_decompress(info);
    image->channels = info->output_components;
    const size_t stride = static_cast<size_t>(info->output_width) * static_cast<size_t>(image->channels);
    image->pixels.assign(stride * info->output_height, 0);
    while (info->output_scanline < info->output_height)
    {
        JSAMPROW row = image->pixels.data() + stride * info->output_scanline;
        jpeg_read_scanlines(info, &row, 1);
    }
    jpeg_finish_decompress(info);
    return true;
}

bool jpegDecode(const uint8_t* data, size_t size, bool grey, JpegImage* image)
{
    image->width = image->height = 0;
    if (!data || size == 0)
        return false;

    jpeg_decompress_struct info;
    ErrorManager errors;
    info.err = prepare(&errors);
    if (setjmp(errors.back))
    {
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_progress_mgr progress = {};
    progress.progress_monitor = endManyScans;
    info.progress = &progress;
    jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
    bool decoded = false;
    whileMemoryLasts([&] { decoded = decodeRows(&info, size, grey, image); });
    jpeg_destroy_decompress(&info);
    return decoded;
}

static void encodeRows(jpeg_compress_struct* info, const uint8_t* pixels, int width, int height, int quality,
                       int channels)
{
    info->image_width = static_cast<JDIMENSION>(width);
    info->image_height = static_cast<JDIMENSION>(height);
    info->input_components = channels;
    info->in_color_space = channels == 4 ? JCS_EXT_RGBX : JCS_RGB;
    jpeg_set_defaults(info);
    jpeg_set_quality(info, quality, TRUE);
    jpeg_start_compress(info, TRUE);
    const size_t stride = static_cast<size_t>(width) * static_cast<size_t>(channels);
    while (info->next_scanline < info->image_height)
    {
        JSAMPROW row = const_cast<JSAMPROW>(pixels + stride * info->next_scanline);
        jpeg_write_scanlines(info, &row, 1);
    }
    jpeg_finish_compress(info);
}

std::vector<uint8_t> jpegEncode(const uint8_t* pixels, int width, int height, int quality, int channels)
{
    std::vector<uint8_t> stream;
    if (!pixels || width < 1 || height < 1 || width > JPEG_MAX_DIMENSION || height > JPEG_MAX_DIMENSION ||
        (channels != 3 && channels != 4))
        return stream;

    jpeg_compress_struct info;
    ErrorManager errors;
    unsigned char* block = nullptr;
    unsigned long size = 0;
    info.err = prepare(&errors);
    if (setjmp(errors.back))
    {
        jpeg_destroy_compress(&info);
        std::free(block);
        return stream;
    }
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &block, &size);
    encodeRows(&info, pixels, width, height, quality, channels);
    jpeg_destroy_compress(&info);
    stream.assign(block, block + size);
    std::free(block);
    return stream;
}
