#include "platform/jpeg.h"

#include <algorithm>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include <jpeglib.h>

// A smooth picture, so that the codec changes little.
static std::vector<uint8_t> gradient(int width, int height)
{
    std::vector<uint8_t> rgb;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            rgb.insert(rgb.end(),
                       {static_cast<uint8_t>(x * 255 / width), static_cast<uint8_t>(y * 255 / height), 128});
    return rgb;
}

struct StreamOptions
{
    int components = 3;
    bool progressive = false;
    int restartInterval = 0;
};

// A stream of a form that jpegEncode doesn't write.
static std::vector<uint8_t> stream(int width, int height, const StreamOptions& options)
{
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    unsigned char* block = nullptr;
    unsigned long size = 0;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &block, &size);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = options.components;
    info.in_color_space = options.components == 1   ? JCS_GRAYSCALE
                          : options.components == 4 ? JCS_CMYK
                                                    : JCS_RGB;
    jpeg_set_defaults(&info);
    if (options.progressive)
        jpeg_simple_progression(&info);
    info.restart_interval = static_cast<unsigned>(options.restartInterval);
    jpeg_start_compress(&info, TRUE);
    std::vector<uint8_t> row(static_cast<size_t>(width * options.components), 100);
    while (info.next_scanline < info.image_height)
    {
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const std::vector<uint8_t> bytes(block, block + size);
    free(block);
    return bytes;
}

TEST(Jpeg, EncodedPicturesDecodeToThemselves)
{
    const int width = 61, height = 37;
    const std::vector<uint8_t> rgb = gradient(width, height);
    const std::vector<uint8_t> bytes = jpegEncode(rgb.data(), width, height, 95);
    ASSERT_FALSE(bytes.empty());
    JpegImage image;
    ASSERT_TRUE(jpegDecode(bytes.data(), bytes.size(), false, &image));
    EXPECT_EQ(image.width, width);
    EXPECT_EQ(image.height, height);
    EXPECT_EQ(image.channels, 3);
    ASSERT_EQ(image.pixels.size(), rgb.size());
    for (size_t i = 0; i < rgb.size(); ++i)
        EXPECT_NEAR(image.pixels[i], rgb[i], 12) << i;
}

TEST(Jpeg, AlphaIsDropped)
{
    const int width = 19, height = 11;
    const std::vector<uint8_t> rgb = gradient(width, height);
    std::vector<uint8_t> rgba;
    for (size_t i = 0; i < rgb.size(); i += 3)
        rgba.insert(rgba.end(), {rgb[i], rgb[i + 1], rgb[i + 2], static_cast<uint8_t>(i * 7)});
    const std::vector<uint8_t> bytes = jpegEncode(rgba.data(), width, height, 90, 4);
    EXPECT_FALSE(bytes.empty());
    EXPECT_EQ(bytes, jpegEncode(rgb.data(), width, height, 90));
    EXPECT_TRUE(jpegEncode(rgba.data(), width, height, 90, 2).empty());
    EXPECT_TRUE(jpegEncode(rgba.data(), width, height, 90, 5).empty());
}

// The frame header tells how finely each channel is kept.
TEST(Jpeg, ColourIsKeptForEachTwoByTwoPixels)
{
    const std::vector<uint8_t> bytes = jpegEncode(gradient(32, 16).data(), 32, 16, 90);
    const uint8_t frameMarker[] = {0xFF, 0xC0};
    const auto frame =
        std::search(bytes.begin(), bytes.end(), std::begin(frameMarker), std::end(frameMarker));
    ASSERT_GT(bytes.end() - frame, 19);
    EXPECT_EQ(frame[9], 3);     // channels
    EXPECT_EQ(frame[11], 0x22); // brightness
    EXPECT_EQ(frame[14], 0x11);
    EXPECT_EQ(frame[17], 0x11);
}

TEST(Jpeg, LowerQualityMakesASmallerStream)
{
    std::mt19937 random(1);
    std::vector<uint8_t> noise(64 * 64 * 3);
    for (uint8_t& byte : noise)
        byte = static_cast<uint8_t>(random());
    EXPECT_LT(jpegEncode(noise.data(), 64, 64, 20).size(), jpegEncode(noise.data(), 64, 64, 90).size() / 2);
}

TEST(Jpeg, GreyCanBeAskedOfAnyPicture)
{
    for (const int components : {1, 3})
    {
        const std::vector<uint8_t> bytes = stream(16, 8, {components, false, 0});
        JpegImage image;
        ASSERT_TRUE(jpegDecode(bytes.data(), bytes.size(), true, &image));
        EXPECT_EQ(image.channels, 1);
        EXPECT_EQ(image.pixels.size(), 16u * 8u);
        EXPECT_NEAR(image.pixels[5], 100, 2);
        ASSERT_TRUE(jpegDecode(bytes.data(), bytes.size(), false, &image));
        EXPECT_EQ(image.channels, 3);
        EXPECT_NEAR(image.pixels[0], 100, 2);
        EXPECT_NEAR(image.pixels[2], 100, 2);
    }
}

TEST(Jpeg, ProgressiveAndRestartMarkersDecode)
{
    for (const bool progressive : {false, true})
    {
        const std::vector<uint8_t> bytes = stream(100, 60, {3, progressive, 4});
        JpegImage image;
        ASSERT_TRUE(jpegDecode(bytes.data(), bytes.size(), false, &image));
        EXPECT_EQ(image.width, 100);
        EXPECT_NEAR(image.pixels.back(), 100, 2);
    }
}

TEST(Jpeg, PrintColoursAreRefused)
{
    const std::vector<uint8_t> bytes = stream(16, 8, {4, false, 0});
    JpegImage image;
    EXPECT_FALSE(jpegDecode(bytes.data(), bytes.size(), false, &image));
    EXPECT_EQ(image.width, 16); // the header was good
    EXPECT_EQ(image.height, 8);
    EXPECT_FALSE(jpegDecode(bytes.data(), 20, false, &image));
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.height, 0);
}

TEST(Jpeg, CutStreamsDecodeOrFailAtEveryLength)
{
    const std::vector<uint8_t> rgb = gradient(24, 16);
    const std::vector<uint8_t> bytes = jpegEncode(rgb.data(), 24, 16, 80);
    for (size_t size = 0; size < bytes.size(); ++size)
    {
        const std::vector<uint8_t> cut(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(size));
        JpegImage image;
        const bool decoded = jpegDecode(cut.data(), cut.size(), false, &image);
        EXPECT_TRUE(!decoded || image.pixels.size() == rgb.size());
    }
    JpegImage image;
    EXPECT_FALSE(jpegDecode(nullptr, 0, false, &image));
    EXPECT_FALSE(jpegDecode(bytes.data(), 20, false, &image));
}

TEST(Jpeg, ChangedBytesNeverHarm)
{
    const std::vector<uint8_t> rgb = gradient(24, 16);
    const std::vector<uint8_t> bytes = jpegEncode(rgb.data(), 24, 16, 80);
    for (size_t i = 0; i < bytes.size(); ++i)
        for (const uint8_t value : {0x00, 0xFF, bytes[i] ^ 0x55})
        {
            std::vector<uint8_t> changed = bytes;
            changed[i] = value;
            JpegImage image;
            const bool decoded = jpegDecode(changed.data(), changed.size(), false, &image);
            const size_t pixels = static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
            EXPECT_TRUE(!decoded || image.pixels.size() == pixels * 3);
        }
}

TEST(Jpeg, ASizeThatTheDataCannotFillIsRefused)
{
    std::vector<uint8_t> bytes = jpegEncode(gradient(8, 8).data(), 8, 8, 80);
    // The frame header FFC0 holds height and width behind length and precision.
    for (size_t i = 0; i + 9 < bytes.size(); ++i)
        if (bytes[i] == 0xFF && bytes[i + 1] == 0xC0)
            bytes[i + 5] = bytes[i + 6] = bytes[i + 7] = bytes[i + 8] = 0xF0;
    JpegImage image;
    EXPECT_FALSE(jpegDecode(bytes.data(), bytes.size(), false, &image));
    EXPECT_EQ(image.width, 0); // nor is the size told
}

// A progressive stream of one component whose last scan, of a dozen bytes, stands in it several times.
static std::vector<uint8_t> streamOfScans(int scans)
{
    std::vector<uint8_t> bytes = stream(16, 16, {.components = 1, .progressive = true});
    const uint8_t marker[] = {0xFF, 0xDA};
    int there = 0;
    auto last = bytes.end();
    for (auto at = bytes.begin();
         (at = std::search(at, bytes.end(), std::begin(marker), std::end(marker))) != bytes.end(); ++at)
    {
        last = at;
        ++there;
    }
    const std::vector<uint8_t> scan(last, bytes.end() - 2);
    for (; there < scans; ++there)
        bytes.insert(bytes.end() - 2, scan.begin(), scan.end());
    return bytes;
}

// Each walks the whole picture, however large it is.
TEST(Jpeg, StreamsOfMoreScansThanAnyWriterMakesAreRefused)
{
    JpegImage image;
    for (const int scans : {10, 64})
    {
        const std::vector<uint8_t> bytes = streamOfScans(scans);
        ASSERT_TRUE(jpegDecode(bytes.data(), bytes.size(), false, &image)) << scans;
        EXPECT_NEAR(image.pixels[0], 100, 2);
    }
    for (const int scans : {65, 5000})
    {
        const std::vector<uint8_t> bytes = streamOfScans(scans);
        EXPECT_FALSE(jpegDecode(bytes.data(), bytes.size(), false, &image)) << scans;
    }
}

TEST(Jpeg, NothingToEncodeGivesAnEmptyStream)
{
    const std::vector<uint8_t> rgb = gradient(4, 4);
    EXPECT_TRUE(jpegEncode(nullptr, 4, 4, 90).empty());
    EXPECT_TRUE(jpegEncode(rgb.data(), 0, 4, 90).empty());
    EXPECT_TRUE(jpegEncode(rgb.data(), 4, -1, 90).empty());
    EXPECT_TRUE(jpegEncode(rgb.data(), 70000, 1, 90).empty());
}
