// Image files on their way into a Texture: names, formats, failures.

#include "vornik/assets/image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/support/imagewriter.h"
#include "tests/support/realfiles.h"
#include "tests/support/tempfolder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"

using Bytes = std::vector<uint8_t>;

static Picture randomPicture(std::mt19937& random, int width, int height)
{
    Picture picture(width, height);
    for (uint8_t& byte : picture.rgba)
        byte = static_cast<uint8_t>(random() % 5 * 60); // few values, so that runs occur
    return picture;
}

// What a reader makes of a picture: rows from the bottom.
static Bytes bottomUp(const Picture& picture, bool keepAlpha)
{
    Bytes bytes;
    for (int y = picture.height - 1; y >= 0; --y)
        bytes.insert(bytes.end(), picture.at(0, y), picture.at(0, y) + picture.width * 4);
    for (size_t i = 3; !keepAlpha && i < bytes.size(); i += 4)
        bytes[i] = 255;
    return bytes;
}

TEST(TextureSize, PowersOfTwoUpTo2048)
{
    for (int size = -3; size <= 5000; ++size)
    {
        bool power = false;
        for (const int legal : {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048})
            power = power || size == legal;
        EXPECT_EQ(isTextureSizeLegal(size, 1), power) << size;
        EXPECT_EQ(isTextureSizeLegal(2048, size), power) << size;
    }
}

// A JPEG whose header can be read and whose picture can't: its quantization tables are taken out.
static Bytes writeJpegWithoutTables(const Picture& picture)
{
    Bytes bytes = writeJpeg(picture);
    for (size_t i = 2; i + 3 < bytes.size() && bytes[i + 1] != 0xDA;)
    {
        const auto begin = bytes.begin() + static_cast<ptrdiff_t>(i);
        const int length = 2 + (bytes[i + 2] << 8 | bytes[i + 3]);
        if (bytes[i + 1] == 0xDB)
            bytes.erase(begin, begin + length);
        else
            i += static_cast<size_t>(length);
    }
    return bytes;
}

// A block as the readers take it, and what they gave back.
class ImageReader : public ::testing::Test
{
protected:
    ImageReader() : block(static_cast<uint8_t*>(std::malloc(VRK_IMAGE_BLOCK)))
    {
        std::memset(block, 0xAB, VRK_IMAGE_BLOCK);
    }
    ~ImageReader() override { std::free(block); }

    int readTga(const Bytes& bytes)
    {
        return loadTGA(folder.write("x.tga", bytes).c_str(), &block, &width, &height, &bytesPerPixel);
    }
    bool readJpeg(const Bytes& bytes, bool alphaOnly = false)
    {
        return loadJPEG(folder.write("x.jpg", bytes).c_str(), &block, &width, &height, alphaOnly, nullptr);
    }
    Bytes image() const { return Bytes(block, block + width * height * 4); }

    TempFolder folder;
    LogCapture log;
    std::mt19937 random{3};
    uint8_t* block;
    int width = -1, height = -1, bytesPerPixel = -1;
};

TEST_F(ImageReader, TgaOfEveryKind)
{
    for (const bool packed : {false, true})
        for (const int bits : {24, 32})
            for (const auto& [w, h] : {std::pair{1, 1}, {7, 5}, {300, 3}, {16, 16}})
            {
                const Picture picture = randomPicture(random, w, h);
                ASSERT_EQ(readTga(writeTga(picture, {.packed = packed, .bits = bits})), 0);
                EXPECT_EQ(width, w);
                EXPECT_EQ(height, h);
                EXPECT_EQ(bytesPerPixel, bits / 8);
                EXPECT_EQ(image(), bottomUp(picture, bits == 32));
            }
    EXPECT_EQ(log.text(), "");
}

TEST_F(ImageReader, TgaChannelsChangePlaces)
{
    const Picture picture(1, 1, 0x10203040);
    readTga(writeTga(picture, {.bits = 32}));
    EXPECT_EQ(image(), (Bytes{0x10, 0x20, 0x30, 0x40}));
    readTga(writeTga(picture, {.bits = 24}));
    EXPECT_EQ(image(), (Bytes{0x10, 0x20, 0x30, 0xFF}));
}

TEST_F(ImageReader, TgaRowsStayInTheOrderOfTheFile)
{
    Picture picture(1, 2, 0x000000FF);
    *picture.at(0, 0) = 200; // the upper row is red
    readTga(writeTga(picture));
    EXPECT_EQ(block[4], 200);
    readTga(writeTga(picture, {.topOrigin = true})); // the origin isn't looked at
    EXPECT_EQ(block[0], 200);
}

TEST_F(ImageReader, TgaIdentificationIsNotSkipped)
{
    const Picture picture(2, 1, 0x010101FF);
    readTga(writeTga(picture, {.identification = "abcdef"}));
    EXPECT_EQ(image(), (Bytes{'c', 'b', 'a', 255, 'f', 'e', 'd', 255}));
}

TEST_F(ImageReader, TgaDepthIsASignedByte)
{
    Bytes bytes = writeTga(Picture(2, 2));
    for (int depth = 0; depth < 256; ++depth)
    {
        bytes[16] = static_cast<uint8_t>(depth);
        const int expected = depth < 24 || depth > 127 ? 47 : depth >= 40 ? 48 : 0;
        EXPECT_EQ(readTga(bytes), expected) << depth;
        EXPECT_TRUE(expected != 0 || bytesPerPixel == depth / 8) << depth;
    }
    EXPECT_EQ(log.text().substr(0, 22), "TGA depth is too low!\n");
}

TEST_F(ImageReader, TgaOfAnotherTypeIsUnknown)
{
    Bytes bytes = writeTga(Picture(2, 2));
    for (int type = 0; type < 256; ++type)
    {
        bytes[2] = static_cast<uint8_t>(type);
        EXPECT_EQ(readTga(bytes), type == 2 || type == 10 ? 0 : 48) << type;
    }
    EXPECT_EQ(log.text().substr(0, 22), "Imagetype is unknown!\n");
    bytes[16] = 8;
    bytes[2] = 3;
    EXPECT_EQ(readTga(bytes), 47); // the depth is looked at first
}

TEST_F(ImageReader, TgaThatFailsLeavesTheSize)
{
    Bytes bytes = writeTga(Picture(2, 2));
    bytes[2] = 1;
    readTga(bytes);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(height, -1);
    EXPECT_EQ(bytesPerPixel, -1);
    EXPECT_EQ(loadTGA(folder.path("none.tga").c_str(), &block, &width, &height, &bytesPerPixel), 46);
    EXPECT_EQ(log.text(), "Imagetype is unknown!\nFile not found!\n");
}

TEST_F(ImageReader, CutTgaIsBlackBehindTheCutAndClearIfItHasAnAlpha)
{
    const Picture picture = randomPicture(random, 9, 4);
    for (const TgaOptions& options : std::initializer_list<TgaOptions>{
             {.bits = 24}, {.packed = true, .bits = 24}, {.bits = 32}, {.packed = true, .bits = 32}})
    {
        const Bytes whole = writeTga(picture, options);
        const Bytes expected = bottomUp(picture, options.bits == 32);
        const int missingAlpha = options.bits == 32 ? 0 : 255;
        for (size_t length = 18; length <= whole.size(); ++length)
        {
            ASSERT_EQ(readTga(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length))), 0);
            const Bytes read = image();
            size_t good = 0;
            while (good < read.size() && read[good] == expected[good])
                ++good;
            for (size_t i = good; i < read.size(); ++i)
                ASSERT_EQ(read[i], i % 4 == 3 ? missingAlpha : 0) << length;
        }
    }
}

TEST_F(ImageReader, TgaCutInItsHeaderIsRefused)
{
    const Bytes whole = writeTga(Picture(2, 2));
    for (size_t length = 0; length < 17; ++length)
        EXPECT_EQ(readTga(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length))), 47)
            << length;
}

TEST_F(ImageReader, TgaRunsEndWithTheImage)
{
    Bytes bytes = writeTga(Picture(3, 1), {.packed = true, .bits = 32});
    bytes.resize(18);
    bytes.insert(bytes.end(), {0x80 | 99, 1, 2, 3, 4});
    EXPECT_EQ(readTga(bytes), 0);
    EXPECT_EQ(image(), (Bytes{3, 2, 1, 4, 3, 2, 1, 4, 3, 2, 1, 4}));
    EXPECT_EQ(block[12], 0xAB);
    bytes.resize(18);
    bytes.push_back(99); // raw pixels
    for (uint8_t i = 0; i < 200; ++i)
        bytes.push_back(i);
    EXPECT_EQ(readTga(bytes), 0);
    EXPECT_EQ(image(), (Bytes{2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11}));
    EXPECT_EQ(block[12], 0xAB);
}

TEST_F(ImageReader, BlockGrowsWithTheTga)
{
    const Picture picture = randomPicture(random, 2048, 1024);
    ASSERT_EQ(readTga(writeTga(picture, {.packed = true})), 0);
    EXPECT_EQ(image(), bottomUp(picture, false));
}

TEST_F(ImageReader, TgaThatClaimsTooMuchIsRefused)
{
    Bytes bytes = writeTga(Picture(1, 1));
    bytes[12] = bytes[13] = bytes[14] = bytes[15] = 0xFF; // 16 GiB of pixels
    EXPECT_EQ(readTga(bytes), 48);
}

TEST_F(ImageReader, JpegIsTurnedAndOpaque)
{
    Picture picture(32, 32, 0x20C040FF);
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 16; ++y)
            *picture.at(x, y) = 0xE0; // the upper half is redder
    ASSERT_TRUE(readJpeg(writeJpeg(picture, 100)));
    EXPECT_EQ(width, 32);
    EXPECT_EQ(height, 32);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
        {
            const uint8_t* pixel = block + (y * 32 + x) * 4;
            EXPECT_EQ(pixel[3], 255);
            if (y >= 14 && y < 18)
                continue; // colours are coarser than pixels and mix at the seam
            EXPECT_NEAR(pixel[0], y < 16 ? 0x20 : 0xE0, 4);
            EXPECT_NEAR(pixel[1], 0xC0, 4);
            EXPECT_NEAR(pixel[2], 0x40, 4);
        }
}

TEST_F(ImageReader, JpegAlphaIsLaidOverAnImage)
{
    Picture picture(8, 8, 0x404040FF);
    for (int x = 0; x < 8; ++x)
        for (int y = 4; y < 8; ++y)
            std::memset(picture.at(x, y), 0xC0, 3);
    ASSERT_TRUE(readJpeg(writeJpeg(picture, 100), true));
    for (int i = 0; i < 64; ++i)
    {
        EXPECT_EQ(block[i * 4], 0xAB);
        EXPECT_EQ(block[i * 4 + 2], 0xAB);
        EXPECT_NEAR(block[i * 4 + 3], i < 32 ? 0xC0 : 0x40, 4);
    }
}

TEST_F(ImageReader, JpegNeedsABlockAndAFile)
{
    const std::string name = folder.write("x.jpg", writeJpeg(Picture(8, 8)));
    uint8_t* none = nullptr;
    EXPECT_FALSE(loadJPEG(name.c_str(), nullptr, &width, &height, false, nullptr));
    EXPECT_FALSE(loadJPEG(name.c_str(), &none, &width, &height, false, nullptr));
    EXPECT_FALSE(loadJPEG(folder.path("none.jpg").c_str(), &block, &width, &height, false, nullptr));
    EXPECT_EQ(width, -1);
}

TEST_F(ImageReader, JpegTellsItsSizeWhereOnlyItsHeaderCanBeRead)
{
    EXPECT_FALSE(readJpeg(writeJpegWithoutTables(Picture(32, 16))));
    EXPECT_EQ(width, 32);
    EXPECT_EQ(height, 16);
    EXPECT_EQ(block[0], 0xAB);
    EXPECT_FALSE(readJpeg(Bytes{1, 2, 3}));
    EXPECT_EQ(width, 32);
}

TEST_F(ImageReader, CutJpegIsReadOrRefused)
{
    const Bytes whole = writeJpeg(randomPicture(random, 16, 16));
    int refused = 0, read = 0;
    for (size_t length = 0; length < whole.size(); ++length)
    {
        width = height = 16;
        ++(readJpeg(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length))) ? read : refused);
        EXPECT_EQ(width, 16);
        EXPECT_EQ(height, 16);
    }
    EXPECT_GT(refused, 100); // without its tables
    EXPECT_GT(read, 10);     // cut in its data
}

TEST_F(ImageReader, BlockGrowsWithTheJpeg)
{
    ASSERT_TRUE(readJpeg(writeJpeg(Picture(2048, 1024, 0x808080FF))));
    EXPECT_EQ(image().size(), size_t(2048 * 1024 * 4));
    EXPECT_NEAR(image()[2048 * 1024 * 4 - 4], 0x80, 3);
}

class ImageList : public ::testing::Test
{
protected:
    // The entries of a list of this text; "-1" if it can't be read.
    std::vector<std::string> entries(const std::string& text)
    {
        std::vector<String> lines(64, String(""));
        const int count = readImageList(folder.write("x.ifl", text).c_str(), lines.data());
        if (count < 0)
            return {"-1"};
        std::vector<std::string> all;
        for (int i = 0; i < count; ++i)
            all.emplace_back(lines[static_cast<size_t>(i)].data,
                             static_cast<size_t>(lines[static_cast<size_t>(i)].length()));
        return all;
    }
    TempFolder folder;
};

using Lines = std::vector<std::string>;

TEST_F(ImageList, OneNameALine)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO.JPG\nTHREE.TGA\n"), (Lines{"ONE.JPG", "TWO.JPG", "THREE.TGA"}));
    EXPECT_EQ(entries("ONE.JPG\r\nTWO.JPG\r\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE.JPG\x1BTWO.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
}

TEST_F(ImageList, ShortLinesAreDropped)
{
    EXPECT_EQ(entries("\nONE.JPG\n\n\nA.JP\nB.JPG\n   \n"), (Lines{"ONE.JPG", "B.JPG"}));
    EXPECT_EQ(entries("    A.JP\n    B.JPG\n"), Lines{"    B.JPG"}); // leading blanks don't count, but stay
    EXPECT_EQ(entries("A\nB\n"), Lines{});
    EXPECT_EQ(entries(""), Lines{});
}

TEST_F(ImageList, LastLineWithoutALineFeedRepeatsItsLastCharacter)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO.JPG"), (Lines{"ONE.JPG", "TWO.JPGG"}));
    EXPECT_EQ(entries("X.JP"), Lines{"X.JPP"}); // and so it is long enough
}

TEST_F(ImageList, EndMarkIsALineLikeOthers)
{
    EXPECT_EQ(entries("ONE.JPG\n<EOF>\nTWO.JPG\n"), (Lines{"ONE.JPG", "<EOF>", "TWO.JPG"}));
}

TEST_F(ImageList, ByteBehindACarriageReturnIsDropped)
{
    EXPECT_EQ(entries("ONE\rX.JPG\nTWO.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE.JPG\r\rTWO.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE.JPG\r\x1BTWO.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE.JPG\r"), Lines{"ONE.JPG"}); // the read at the end repeats the carriage return
}

TEST_F(ImageList, LongLinesAreCut)
{
    EXPECT_EQ(entries(std::string(600, 'n') + "\nTWO.JPG\n"), (Lines{std::string(255, 'n'), "TWO.JPG"}));
}

TEST_F(ImageList, KeepsAsManyAsATextureHasSlots)
{
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "FRAME" + std::to_string(100 + i) + ".JPG\n";
    const Lines lines = entries(text);
    ASSERT_EQ(lines.size(), 63u);
    EXPECT_EQ(lines[62], "FRAME162.JPG");
}

TEST_F(ImageList, MissingList)
{
    String lines[64];
    EXPECT_EQ(readImageList(folder.path("none.ifl").c_str(), lines), -1);
}

// A texture that finds its images in a folder of the test's own.
class ImageLoad : public ::testing::Test
{
protected:
    ImageLoad() { texture.setBaseDir((folder.root() + "/").c_str()); }

    int load(const char* name, float scale = 1.0f)
    {
        texture.setFilename(name, 0);
        return texture.loadTexture(0, scale);
    }
    int channel(int i) const { return texture.pixels[i]; }

    TempFolder folder;
    LogCapture log;
    Texture texture;
    const Picture red{4, 2, 0xFF0000FF};
    const Picture green{8, 8, 0x00FF0080};
};

TEST_F(ImageLoad, Jpeg)
{
    folder.write("WALL.JPG", writeJpeg(red, 100));
    texture.bytesPerPixel = 9;
    EXPECT_EQ(load("wall.jpg"), 0);
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(texture.height, 2);
    EXPECT_EQ(texture.bytesPerPixel, 3);
    EXPECT_NEAR(channel(0), 255, 3);
    EXPECT_EQ(channel(3), 255);
    EXPECT_EQ(log.text(), "");
}

TEST_F(ImageLoad, Tga)
{
    folder.write("Leaf.tga", writeTga(green, {.bits = 32}));
    EXPECT_EQ(load("LEAF.TGA"), 0);
    EXPECT_EQ(texture.bytesPerPixel, 4);
    EXPECT_EQ(channel(1), 255);
    EXPECT_EQ(channel(3), 0x80);
}

TEST_F(ImageLoad, NamesWithFoldersOfAnotherSystem)
{
    folder.write("Maps/Deep/wall.tga", writeTga(red));
    EXPECT_EQ(load("maps\\DEEP\\Wall.tga"), 0);
    EXPECT_EQ(texture.width, 4);
}

TEST_F(ImageLoad, FailuresReport)
{
    folder.write("bad.jpg", "no picture");
    folder.write("low.tga",
                 []
                 {
                     Bytes bytes = writeTga(Picture(2, 2));
                     bytes[16] = 16;
                     return bytes;
                 }());
    EXPECT_EQ(load("none.jpg"), 8);
    EXPECT_EQ(load("bad.jpg"), 8);
    EXPECT_EQ(load("none.tga"), 9);
    EXPECT_EQ(load("low.tga"), 9);
    EXPECT_EQ(load("wall.bmp"), 6);
    EXPECT_EQ(load("wall"), 6);
    EXPECT_EQ(load("<EOF>"), 6);
    EXPECT_EQ(log.text(), "Error loading .JPG file\n"
                          "Error loading .JPG file\n"
                          "File not found!\nError loading .TGA file\n"
                          "TGA depth is too low!\nError loading .TGA file\n"
                          "Texture (image) format not supported\n"
                          "Texture (image) format not supported\n"
                          "Texture (image) format not supported\n");
    EXPECT_NE(texture.pixels, nullptr); // stays for the pass that uploads
}

TEST_F(ImageLoad, JpegThatCannotBeDecodedLeavesItsSizeAndAnEmptyImage)
{
    texture.bytesPerPixel = 9;
    for (const auto& [w, h] : {std::pair{16, 8}, {2048, 2048}})
    {
        folder.write("bad.jpg", writeJpegWithoutTables(Picture(w, h, 0xFFFFFFFF)));
        EXPECT_EQ(load("bad.jpg"), 8);
        EXPECT_EQ(texture.width, w);
        EXPECT_EQ(texture.height, h);
        EXPECT_EQ(texture.bytesPerPixel, 9);
        ASSERT_NE(texture.pixels, nullptr);
        EXPECT_EQ(texture.pixels[static_cast<size_t>(w) * static_cast<size_t>(h) * 4 - 1], 0);
    }
    EXPECT_EQ(load("bad.png"), 0); // the size is a legal one
    EXPECT_EQ(texture.bytesPerPixel, 3);
    EXPECT_EQ(log.text(), "Error loading .JPG file\nError loading .JPG file\nFile not found!\n");
}

TEST_F(ImageLoad, FilesAreOpenedByTheirUpperCasedNames)
{
    folder.write("wall.tga", writeTga(green));
    folder.write("WALL.TGA", writeTga(red));
    EXPECT_EQ(load("wall.tga"), 0);
    EXPECT_EQ(texture.width, 4);
}

TEST_F(ImageLoad, SizesThatAreNoPowerOfTwoReport)
{
    folder.write("a.jpg", writeJpeg(Picture(640, 480)));
    folder.write("b.tga", writeTga(Picture(4, 3)));
    EXPECT_EQ(load("a.jpg"), 12);
    EXPECT_EQ(texture.width, 640);
    EXPECT_EQ(texture.height, 480);
    EXPECT_EQ(load("b.tga", 0.5f), 12);
    EXPECT_EQ(texture.width, 4); // not scaled
    EXPECT_EQ(log.text(), "Illegal texture size (width and height must be n^2)\n"
                          "Illegal texture size (width and height must be n^2)\n");
}

TEST_F(ImageLoad, SmallestAndLargestSizes)
{
    for (const auto& [w, h] : {std::pair{1, 1}, {2048, 2}, {1, 2048}, {2048, 2048}})
    {
        folder.write("x.tga", writeTga(Picture(w, h, 0x112233FF), {.packed = true}));
        EXPECT_EQ(load("x.tga"), 0);
        EXPECT_EQ(texture.width, w);
        EXPECT_EQ(texture.pixels[static_cast<size_t>(w) * static_cast<size_t>(h) * 4 - 2], 0x33);
    }
    EXPECT_EQ(log.text(), "");
}

TEST_F(ImageLoad, ScaledOnTheWay)
{
    folder.write("x.tga", writeTga(Picture(64, 32, 0x112233FF)));
    EXPECT_EQ(load("x.tga", 0.5f), 0);
    EXPECT_EQ(texture.width, 16);
    EXPECT_EQ(texture.height, 8);
    EXPECT_EQ(load("x.tga", 1.0f), 0);
    EXPECT_EQ(texture.width, 64);
}

TEST_F(ImageLoad, OtherFormatsStandForAJpeg)
{
    folder.write("wall.jpg", writeJpeg(red, 100));
    for (const char* name : {"wall.png", "WALL.TIF", "Wall.Gif"})
    {
        texture.width = 0;
        texture.bytesPerPixel = 4;
        EXPECT_EQ(load(name), 0);
        EXPECT_EQ(texture.width, 4);
        EXPECT_EQ(texture.bytesPerPixel, 3);
    }
    EXPECT_EQ(log.text(), "");
}

TEST_F(ImageLoad, TgaOfTheSameStemIsReadAndRefused)
{
    folder.write("wall.tga", writeTga(green, {.bits = 32}));
    EXPECT_EQ(load("wall.tif"), 10);
    EXPECT_EQ(texture.width, 8);
    EXPECT_EQ(texture.bytesPerPixel, 4);
    EXPECT_EQ(log.text(), "Error loading file\n");
}

TEST_F(ImageLoad, WithoutJpegAndTgaTheOldSizeIsJudged)
{
    EXPECT_EQ(load("wall.png"), 12); // a size of 0
    texture.width = texture.height = 16;
    EXPECT_EQ(load("wall.png"), 0);
    EXPECT_EQ(log.text(), "File not found!\nIllegal texture size (width and height must be n^2)\n"
                          "File not found!\n");
}

TEST_F(ImageLoad, BlockCoversTheSizeOfTheFrameBefore)
{
    folder.write("large.tga", writeTga(Picture(2048, 2048, 0x112233FF), {.packed = true}));
    EXPECT_EQ(load("large.tga"), 0);
    EXPECT_EQ(load("none.tga"), 9);
    EXPECT_EQ(texture.width, 2048);
    EXPECT_EQ(texture.pixels[2048 * 2048 * 4 - 1], 0); // readable to the end, and empty
}

TEST_F(ImageLoad, ListItselfIsNoImage)
{
    folder.write("fire.ifl", "ONE.JPG\n");
    EXPECT_EQ(load("fire.ifl"), 0);
    EXPECT_EQ(texture.pixels, nullptr);
}

TEST_F(ImageLoad, SlotsOutsideOfTheTableAreIgnored)
{
    EXPECT_EQ(texture.loadTexture(64, 1.0f), 0);
    EXPECT_EQ(texture.loadTexture(-1, 1.0f), 0);
    EXPECT_EQ(texture.pixels, nullptr);
}

TEST_F(ImageLoad, PathThatDoesNotFitNamesNoFile)
{
    texture.setBaseDir(std::string(255, 'd').c_str());
    EXPECT_EQ(load("wall.jpg"), 6); // the end of the name is cut away
    EXPECT_EQ(texture.extractNames(), 0);
}

TEST_F(ImageLoad, NamesOfASingleImage)
{
    texture.frameCount = 9;
    texture.setFilename("wall.jpg", 0);
    EXPECT_EQ(texture.extractNames(), 0);
    EXPECT_EQ(texture.frameCount, 1);
    EXPECT_STREQ(texture.names[0], "wall.jpg");
}

TEST_F(ImageLoad, NamesOfAList)
{
    folder.write("Fire.ifl", "one.jpg\nTWO.JPG\n\n  three.tga\n");
    texture.setFilename("fire.IFL", 0);
    EXPECT_EQ(texture.extractNames(), 0);
    EXPECT_EQ(texture.frameCount, 3);
    EXPECT_STREQ(texture.names[0], "fire.IFL");
    EXPECT_STREQ(texture.names[1], "one.jpg");
    EXPECT_STREQ(texture.names[2], "TWO.JPG");
    EXPECT_STREQ(texture.names[3], "  three.tga");
    EXPECT_STREQ(texture.names[4], "");
    EXPECT_EQ(log.text(), "");
}

TEST_F(ImageLoad, ListWithoutNamesReports)
{
    folder.write("short.ifl", "A\nB\n");
    texture.frameCount = 5;
    for (const char* name : {"short.ifl", "none.ifl"})
    {
        texture.setFilename(name, 0);
        EXPECT_EQ(texture.extractNames(), 7);
        EXPECT_EQ(texture.frameCount, 5);
    }
    EXPECT_EQ(log.text(), "Error loading .IFL file\nError loading .IFL file\n");
}

TEST_F(ImageLoad, FullListFillsAllSlots)
{
    std::string text;
    for (int i = 0; i < 80; ++i)
        text += "F" + std::to_string(100 + i) + ".JPG\n";
    folder.write("long.ifl", text);
    texture.setFilename("long.ifl", 0);
    EXPECT_EQ(texture.extractNames(), 0);
    EXPECT_EQ(texture.frameCount, 63);
    EXPECT_STREQ(texture.names[63], "F162.JPG");
}

TEST_F(ImageLoad, LongNameInAListIsCut)
{
    folder.write("x.ifl", std::string(250, 'n') + ".JPG\n");
    texture.setFilename("x.ifl", 0);
    EXPECT_EQ(texture.extractNames(), 0);
    EXPECT_EQ(texture.names[1], std::string(63, 'n'));
}

// The same with substitutes accepted.
class TolerantImageLoad : public ImageLoad
{
protected:
    TolerantImageLoad() { texture.acceptSubstitutes = true; }
};

TEST_F(TolerantImageLoad, AnyFormatStandsForJpegOrTga)
{
    folder.write("a.jpg", writeJpeg(red, 100));
    folder.write("b.tga", writeTga(green));
    for (const char* name : {"a.bmp", "A.CEL", "a.tga", "a.jpg", "a", "a.jpeg"})
    {
        texture.width = 0;
        EXPECT_EQ(load(name), 0) << name;
        EXPECT_EQ(texture.width, 4) << name;
    }
    for (const char* name : {"b.png", "B.DDS", "b.jpg", "b.tga"})
    {
        texture.width = 0;
        EXPECT_EQ(load(name), 0) << name;
        EXPECT_EQ(texture.width, 8) << name;
    }
    EXPECT_EQ(log.text(), "");
}

TEST_F(TolerantImageLoad, TheNamedFormatComesFirst)
{
    folder.write("a.jpg", writeJpeg(red));
    folder.write("a.tga", writeTga(green));
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(texture.width, 8);
    EXPECT_EQ(load("a.jpg"), 0);
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(load("a.bmp"), 0);
    EXPECT_EQ(texture.width, 4);
}

TEST_F(TolerantImageLoad, FoldersOfTheNameMayBeMissing)
{
    folder.write("wall.jpg", writeJpeg(red));
    EXPECT_EQ(load("C:\\art\\maps\\WALL.JPG"), 0);
    EXPECT_EQ(texture.width, 4);
    folder.write("maps/wall.jpg", writeJpeg(green));
    EXPECT_EQ(load("maps/wall.bmp"), 0);
    EXPECT_EQ(texture.width, 8); // where the folder is there, it counts
}

TEST_F(TolerantImageLoad, AnySizeIsTaken)
{
    folder.write("a.jpg", writeJpeg(Picture(20, 13)));
    EXPECT_EQ(load("a.jpg"), 0);
    EXPECT_EQ(texture.width, 20);
    EXPECT_EQ(texture.height, 13);
}

TEST_F(TolerantImageLoad, OriginAndIdentificationOfATga)
{
    Picture picture(1, 2, 0x000000FF);
    *picture.at(0, 0) = 200; // the upper row is red
    folder.write("a.tga", writeTga(picture, {.topOrigin = true, .identification = "made by hand"}));
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(channel(0), 0);
    EXPECT_EQ(channel(4), 200);
}

TEST_F(TolerantImageLoad, GreyTga)
{
    Picture picture(2, 1, 0x320000FF);
    *picture.at(1, 0) = 99;
    folder.write("plain.tga", writeTga(picture, {.bits = 8}));
    EXPECT_EQ(load("plain.tga"), 0);
    EXPECT_EQ(texture.bytesPerPixel, 3);
    EXPECT_EQ(Bytes(texture.pixels, texture.pixels + 8), (Bytes{50, 50, 50, 255, 99, 99, 99, 255}));
    folder.write("packed.tga", writeTga(Picture(2, 1, 0x460000FF), {.packed = true, .bits = 8}));
    EXPECT_EQ(load("packed.tga"), 0);
    EXPECT_EQ(Bytes(texture.pixels, texture.pixels + 8), (Bytes{70, 70, 70, 255, 70, 70, 70, 255}));
}

TEST_F(TolerantImageLoad, FailuresReport)
{
    folder.write("bad.jpg", "no picture");
    folder.write("bad.tga", "no picture");
    folder.write("header.jpg", writeJpegWithoutTables(Picture(16, 8)));
    EXPECT_EQ(load("bad.jpg"), 8);
    EXPECT_EQ(load("header.jpg"), 8);
    EXPECT_EQ(texture.width, 0);
    EXPECT_EQ(load("bad.tga"), 9);
    EXPECT_EQ(load("none.png"), 10);
    EXPECT_EQ(log.text(), "Error loading .JPG file\nError loading .JPG file\n"
                          "TGA depth is too low!\nError loading .TGA file\n"
                          "Error loading file\n");
}

TEST_F(TolerantImageLoad, ListsAreRead)
{
    folder.write("fire.ifl", "a.png\nb.png\n");
    folder.write("a.jpg", writeJpeg(red));
    folder.write("b.tga", writeTga(green));
    texture.setFilename("FIRE.IFL", 0);
    EXPECT_EQ(texture.extractNames(), 0);
    EXPECT_EQ(texture.frameCount, 2);
    EXPECT_EQ(texture.loadTexture(0, 1.0f), 0);
    EXPECT_EQ(texture.pixels, nullptr);
    EXPECT_EQ(texture.loadTexture(1, 1.0f), 0);
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(texture.loadTexture(2, 1.0f), 0);
    EXPECT_EQ(texture.width, 8);
}

TEST_F(TolerantImageLoad, DamagedImagesNeverHarm)
{
    std::mt19937 random(11);
    for (const Bytes& whole : {writeTga(randomPicture(random, 8, 8), {.packed = true, .bits = 32}),
                               writeTga(randomPicture(random, 8, 8), {.identification = "id"}),
                               writeJpeg(randomPicture(random, 8, 8))})
        for (int round = 0; round < 300; ++round)
        {
            Bytes bytes = whole;
            for (int change = 0; change < 3; ++change)
                bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
            folder.write("x.tga", bytes);
            folder.write("x.jpg", bytes);
            for (const char* name : {"x.tga", "x.jpg"})
            {
                texture.width = texture.height = 0;
                const int result = load(name);
                EXPECT_TRUE(result == 0 || result == 8 || result == 9) << result;
                EXPECT_TRUE(texture.pixels && texture.width >= 0 && texture.height >= 0);
            }
        }
}

// Images as other programs wrote them, where they are at hand.
TEST_F(TolerantImageLoad, RealImages)
{
    namespace fs = std::filesystem;
    const fs::path scenes = sharedScenes();
    if (!fs::exists(scenes))
        GTEST_SKIP() << "no real files at " << scenes;
    int images = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(scenes))
    {
        std::string name = entry.path().filename().string();
        texture.setBaseDir((entry.path().parent_path().string() + "/").c_str());
        std::string upper = name;
        if (!texture.checkExtension(upper.data(), ".JPG") && !texture.checkExtension(upper.data(), ".TGA"))
            continue;
        EXPECT_EQ(load(name.c_str()), 0) << entry.path();
        EXPECT_GT(texture.width * texture.height, 0) << entry.path();
        ++images;
    }
    EXPECT_GT(images, 0);
    EXPECT_EQ(log.text(), "");
}
