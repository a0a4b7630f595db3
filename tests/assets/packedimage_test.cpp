// Images and lists that come out of packs: the same results as from loose files, and what differs.

#include "vornik/assets/image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "apps/vornik/packformat.h"
#include "tests/support/imagewriter.h"
#include "tests/support/tempfolder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/pack.h"
#include "vornik/assets/texture.h"

using Bytes = std::vector<uint8_t>;
using Lines = std::vector<std::string>;

static std::string text(const Bytes& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

// A texture with its images in a pack, in the folder MAPS.
class PackedImage : public ::testing::Test
{
protected:
    PackedImage() { texture.setBaseDir("Maps\\"); }
    ~PackedImage() override { packClose(); }

    void pack(const std::vector<PackContent>& files) { name = folder.write("x.pak", buildPack(files)); }
    // A pack without the care that the writer takes.
    void packPlainly(const std::vector<PackContent>& files)
    {
        Bytes bytes;
        uint32_t place = 0;
        std::string data;
        for (const PackContent& file : files)
        {
            const auto size = static_cast<uint32_t>(file.bytes.size());
            appendPackRecord(&bytes, place, place + size - 1, file.name);
            place += size;
            data += file.bytes;
        }
        appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
        bytes.insert(bytes.end(), data.begin(), data.end());
        name = folder.write("x.pak", bytes);
    }
    int load(const char* image, float scale = 1.0f)
    {
        texture.width = texture.height = 0;
        texture.setFilename(image, 0);
        return texture.loadTexture(0, name.c_str(), scale);
    }
    Bytes image() const { return Bytes(texture.pixels, texture.pixels + texture.width * texture.height * 4); }
    // The same image from a loose file.
    Bytes loose(const std::string& file, const Bytes& bytes)
    {
        folder.write(file, bytes);
        Texture other;
        other.setBaseDir((folder.root() + "/").c_str());
        other.acceptSubstitutes = texture.acceptSubstitutes;
        other.setFilename(file.c_str(), 0);
        EXPECT_EQ(other.loadTexture(0, 1.0f), 0);
        return Bytes(other.pixels, other.pixels + other.width * other.height * 4);
    }
    // The entries of a list that was packed with bytes behind it; "-1" if it can't be read.
    Lines entries(const std::string& list, const std::string& behind = "")
    {
        packPlainly({{"X.IFL", list}, {"Y", behind}});
        std::vector<String> lines(64, String(""));
        const int count = readPackedImageList("x.ifl", lines.data(), name.c_str());
        if (count < 0)
            return {"-1"};
        Lines all;
        for (size_t i = 0; i < static_cast<size_t>(count); ++i)
            all.emplace_back(lines[i].data, static_cast<size_t>(lines[i].length()));
        return all;
    }

    TempFolder folder;
    LogCapture log;
    Texture texture;
    std::string name;
    std::mt19937 random{3};
    Picture picture = makePicture();

private:
    Picture makePicture()
    {
        Picture made(16, 8);
        for (uint8_t& byte : made.rgba)
            byte = static_cast<uint8_t>(random() % 5 * 60); // few values, so that runs occur
        return made;
    }
};

TEST_F(PackedImage, JpegIsThatOfALooseFile)
{
    const Bytes bytes = writeJpeg(picture);
    pack({{"OTHER.TXT", "other"}, {"MAPS\\WALL.JPG", text(bytes)}});
    EXPECT_EQ(load("wall.jpg"), 0);
    EXPECT_EQ(texture.width, 16);
    EXPECT_EQ(texture.height, 8);
    EXPECT_EQ(texture.bytesPerPixel, 3);
    EXPECT_EQ(image(), loose("wall.jpg", bytes));
    EXPECT_EQ(packStream, nullptr); // closed again
    EXPECT_EQ(log.text(), "");
}

TEST_F(PackedImage, TgaIsThatOfALooseFile)
{
    for (const bool packed : {false, true})
        for (const int bits : {24, 32})
        {
            const Bytes bytes = writeTga(picture, {.packed = packed, .bits = bits});
            pack({{"OTHER.TXT", "other"}, {"MAPS\\LEAF.TGA", text(bytes)}, {"LAST", "last"}});
            EXPECT_EQ(load("leaf.tga"), 0);
            EXPECT_EQ(texture.bytesPerPixel, bits / 8);
            EXPECT_EQ(image(), loose("leaf.tga", bytes));
            EXPECT_EQ(packStream, nullptr);
        }
    EXPECT_EQ(log.text(), "");
}

TEST_F(PackedImage, ScaledOnTheWay)
{
    pack({{"MAPS\\A.TGA", text(writeTga(Picture(16, 16)))}});
    EXPECT_EQ(load("a.tga", 0.5f), 0);
    EXPECT_EQ(texture.width, 4);
}

TEST_F(PackedImage, NamesAreDirectoryAndFileJoined)
{
    const std::string jpeg = text(writeJpeg(picture));
    pack({{"WALL.JPG", jpeg}, {"MAPS/WALL.JPG", jpeg}, {"MAPS\\SUB\\WALL.JPG", jpeg}});
    EXPECT_EQ(load("wall.jpg"), 8);
    EXPECT_EQ(load("sub\\wall.jpg"), 0);
}

TEST_F(PackedImage, LooseFilesAreNoSubstitute)
{
    pack({{"OTHER.TXT", "other"}});
    texture.setBaseDir((folder.root() + "/").c_str());
    folder.write("a.jpg", writeJpeg(picture));
    folder.write("a.tga", writeTga(picture));
    folder.write("a.ifl", std::string("a.jpg\nb.jpg\n"));
    EXPECT_EQ(load("a.jpg"), 8);
    EXPECT_EQ(load("a.tga"), 9);
    texture.setFilename("a.ifl", 0);
    EXPECT_EQ(texture.extractNames(name.c_str()), 7);
    texture.acceptSubstitutes = true;
    EXPECT_EQ(load("a.jpg"), 10);
    EXPECT_EQ(log.text(), "Error loading .JPG file\nFile not found!\nError loading .TGA file\n"
                          "Error loading .IFL file\nError loading file\n");
}

TEST_F(PackedImage, MissingMemberLeavesThePackOpen)
{
    pack({{"OTHER.TXT", "other"}});
    EXPECT_EQ(load("none.jpg"), 8);
    EXPECT_NE(packStream, nullptr);
    packClose();
    EXPECT_EQ(load("none.tga"), 9);
    EXPECT_NE(packStream, nullptr);
    packClose();
    String lines[64];
    EXPECT_EQ(readPackedImageList("none.ifl", lines, name.c_str()), -1);
    EXPECT_NE(packStream, nullptr);
}

TEST_F(PackedImage, RefusedTgaLeavesThePackOpen)
{
    Bytes shallow = writeTga(picture), unknown = shallow;
    shallow[16] = 16;
    unknown[2] = 1;
    pack({{"MAPS\\SHALLOW.TGA", text(shallow)}, {"MAPS\\UNKNOWN.TGA", text(unknown)}});
    EXPECT_EQ(load("shallow.tga"), 9);
    EXPECT_NE(packStream, nullptr);
    packClose();
    EXPECT_EQ(load("unknown.tga"), 9);
    EXPECT_NE(packStream, nullptr);
    EXPECT_EQ(log.text(), "TGA depth is too low!\nError loading .TGA file\n"
                          "Imagetype is unknown!\nError loading .TGA file\n");
}

TEST_F(PackedImage, MissingPack)
{
    name = folder.path("none.pak");
    EXPECT_EQ(load("a.jpg"), 8);
    EXPECT_EQ(load("a.tga"), 9);
    String lines[64];
    EXPECT_EQ(readPackedImageList("a.ifl", lines, name.c_str()), -1);
    EXPECT_EQ(readPackedImageList("a.ifl", lines, nullptr), -1);
    uint8_t* block = static_cast<uint8_t*>(std::malloc(VRK_IMAGE_BLOCK));
    int width = 0, height = 0, bytes = 0;
    EXPECT_EQ(loadPackedTGA("a.tga", &block, &width, &height, &bytes, nullptr), 46);
    std::free(block);
}

TEST_F(PackedImage, ReadersBehindTheTexture)
{
    pack({{"A.TGA", text(writeTga(picture, {.bits = 32}))}, {"A.JPG", text(writeJpeg(picture))}});
    uint8_t* block = static_cast<uint8_t*>(std::malloc(VRK_IMAGE_BLOCK));
    int width = 0, height = 0, bytes = 0;
    EXPECT_EQ(loadPackedTGA("a.tga", &block, &width, &height, &bytes, name.c_str()), 0);
    EXPECT_EQ(width, 16);
    EXPECT_EQ(bytes, 4);
    std::memset(block, 7, 16);
    EXPECT_TRUE(loadJPEG("a.jpg", &block, &width, &height, true, name.c_str()));
    EXPECT_EQ(block[0], 7); // only alpha is written
    EXPECT_FALSE(loadJPEG("none.jpg", &block, &width, &height, true, name.c_str()));
    std::free(block);
}

TEST_F(PackedImage, CutTgaGoesOnWithWhatLiesBehind)
{
    Bytes bytes = writeTga(Picture(2, 1, 0x010203FF));
    bytes.resize(bytes.size() - 3);
    packPlainly({{"MAPS\\A.TGA", text(bytes)}, {"B", "abcdef"}});
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(image(), (Bytes{1, 2, 3, 255, 'c', 'b', 'a', 255}));
    packPlainly({{"MAPS\\A.TGA", text(bytes)}});
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(image(), (Bytes{1, 2, 3, 255, 0, 0, 0, 255})); // nothing lies there
}

TEST_F(PackedImage, PacketsMayTakeMoreThanTheirPixels)
{
    Bytes bytes = writeTga(Picture(4, 1), {.packed = true, .bits = 32});
    bytes.resize(18);
    for (uint8_t i = 0; i < 4; ++i) // each pixel in a packet of its own
        bytes.insert(bytes.end(), {0, i, i, i, i});
    packPlainly({{"MAPS\\A.TGA", text(bytes)}});
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(image(), (Bytes{0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3}));
}

TEST_F(PackedImage, HeaderOfATgaAtTheSizeOfTheDirectoryIsTakenFromTheFirstBytes)
{
    // Only the first read is astray: the pixels come from the member again.
    const Bytes first = writeTga(Picture(1, 1, 0x111111FF), {.bits = 32});
    const Bytes second = writeTga(Picture(2, 1, 0x222222FF));
    const size_t directorySize = 3 * 264;
    std::string padded = text(first) + std::string(directorySize - first.size(), '.');
    packPlainly({{"MAPS\\A.TGA", padded}, {"MAPS\\B.TGA", text(second)}});
    EXPECT_EQ(load("b.tga"), 0);
    EXPECT_EQ(texture.width, 1);
    EXPECT_EQ(texture.bytesPerPixel, 4);
    EXPECT_EQ(image(), (Bytes{0x22, 0x22, 0x22, 0x22}));
}

TEST_F(PackedImage, OtherFormatsStandForAJpegAndRefuseATga)
{
    pack({{"MAPS\\A.JPG", text(writeJpeg(picture))}, {"MAPS\\B.TGA", text(writeTga(picture))}});
    for (const char* file : {"a.png", "a.tif", "a.gif"})
        EXPECT_EQ(load(file), 0) << file;
    EXPECT_EQ(load("b.png"), 10);
    EXPECT_EQ(load("a.bmp"), 6);
}

TEST_F(PackedImage, SizesThatAreNoPowerOfTwoReport)
{
    pack({{"MAPS\\A.JPG", text(writeJpeg(Picture(20, 13)))}});
    EXPECT_EQ(load("a.jpg"), 12);
}

TEST_F(PackedImage, SubstitutesAreLookedUpAmongTheMembers)
{
    texture.acceptSubstitutes = true;
    pack({{"MAPS\\A.JPG", text(writeJpeg(picture))}, {"MAPS\\B.TGA", text(writeTga(Picture(3, 5)))}});
    for (const char* file : {"a.bmp", "a.tga", "A.CEL", "C:\\art\\a.jpg", "art/a.png", "a"})
    {
        EXPECT_EQ(load(file), 0) << file;
        EXPECT_EQ(texture.width, 16) << file;
    }
    EXPECT_EQ(load("b.jpg"), 0);
    EXPECT_EQ(texture.height, 5);
    EXPECT_EQ(load("c.jpg"), 10);
    EXPECT_EQ(log.text(), "Error loading file\n");
}

TEST_F(PackedImage, TolerantNamesMayDifferInTheirSeparators)
{
    texture.acceptSubstitutes = true;
    pack({{"MAPS/A.TGA", text(writeTga(Picture(1, 1)))},
          {".\\MAPS\\B.TGA", text(writeTga(Picture(2, 1)))},
          {"\\C.TGA", text(writeTga(Picture(3, 1)))}});
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(texture.width, 1);
    EXPECT_EQ(load("b.tga"), 0);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(load("c.tga"), 10);
    texture.setBaseDir(".\\");
    EXPECT_EQ(load("c.tga"), 0);
    EXPECT_EQ(texture.width, 3);
    texture.acceptSubstitutes = false;
    EXPECT_EQ(load("c.tga"), 9);
}

TEST_F(PackedImage, TolerantTga)
{
    texture.acceptSubstitutes = true;
    const Bytes bytes = writeTga(picture, {.topOrigin = true, .identification = "made by hand"});
    packPlainly({{"MAPS\\A.TGA", text(bytes)}});
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(image(), loose("a.tga", bytes));
}

TEST_F(PackedImage, ListsOfImages)
{
    pack({{"MAPS\\FIRE.IFL", "A.TGA\nB.TGA\nC.TGA\n"},
          {"MAPS\\A.TGA", text(writeTga(Picture(1, 1)))},
          {"MAPS\\B.TGA", text(writeTga(Picture(2, 1)))}});
    texture.setFilename("fire.ifl", 0);
    EXPECT_EQ(texture.extractNames(name.c_str()), 0);
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(texture.frameCount, 3);
    EXPECT_STREQ(texture.names[0], "fire.ifl");
    EXPECT_STREQ(texture.names[2], "B.TGA");
    EXPECT_EQ(texture.loadTexture(2, name.c_str(), 1.0f), 0);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(texture.loadTexture(0, name.c_str(), 1.0f), 0); // the list itself is no image
    EXPECT_EQ(texture.pixels, nullptr);
    EXPECT_EQ(texture.loadTexture(64, name.c_str(), 1.0f), 0);
}

TEST_F(PackedImage, NamesOfASingleImage)
{
    texture.frameCount = 9;
    texture.setFilename("a.jpg", 0);
    EXPECT_EQ(texture.extractNames("none.pak"), 0); // not opened
    EXPECT_EQ(texture.frameCount, 1);
}

TEST_F(PackedImage, LinesOfALooseList)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO.JPG\x1BTHREE.TGA\n"), (Lines{"ONE.JPG", "TWO.JPG", "THREE.TGA"}));
    EXPECT_EQ(entries("ONE.JPG\r\nTWO.JPG\r\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE\rX.JPG\r\rTWO.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("\nONE.JPG\nA.JP\n<EOF>\n    B.JPG\n"), (Lines{"ONE.JPG", "<EOF>", "    B.JPG"}));
    EXPECT_EQ(entries(std::string(600, 'n') + "\n"), Lines{std::string(255, 'n')});
    EXPECT_EQ(entries(""), Lines{});
    std::string full;
    for (int i = 0; i < 100; ++i)
        full += "FRAME" + std::to_string(i) + ".JPG\n";
    EXPECT_EQ(entries(full).size(), 63u);
}

TEST_F(PackedImage, ListEndsWithItsMember)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO.JPG\n", "THREE.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("", "THREE.JPG\n"), Lines{});
}

TEST_F(PackedImage, LastLineGoesOnBehindTheMember)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO", ".JPG\nTHREE.JPG\n"), (Lines{"ONE.JPG", "TWO.JPG"}));
    EXPECT_EQ(entries("ONE.JPG\r", "\nTHREE.JPG\n"), Lines{"ONE.JPG"});
}

TEST_F(PackedImage, LastLineEndsWithThePack)
{
    EXPECT_EQ(entries("ONE.JPG\nTWO.JPG"), (Lines{"ONE.JPG", "TWO.JPGG"})); // as in a loose file
    EXPECT_EQ(entries("ONE.JPG\r"), Lines{"ONE.JPG"});
    EXPECT_EQ(entries("A\nB", "CD"), Lines{}); // too short to be a name, also with its D twice
}

TEST_F(PackedImage, WriterEndsTheLastLine)
{
    pack({{"X.IFL", "ONE.JPG\nTWO.JPG"}, {"Y", "behind"}});
    String lines[64];
    EXPECT_EQ(readPackedImageList("x.ifl", lines, name.c_str()), 2);
    EXPECT_STREQ(lines[1].toChar(), "TWO.JPG");
}

TEST_F(PackedImage, ListOfAnyClaimedSizeEnds)
{
    Bytes bytes;
    appendPackRecord(&bytes, 0, 0x7FFFFFFE, "X.IFL");
    appendPackRecord(&bytes, 0x7FFFFFF0, 0x7FFFFFFE, "Y.IFL");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    for (const char c : std::string("ONE.JPG\n"))
        bytes.push_back(static_cast<uint8_t>(c));
    name = folder.write("x.pak", bytes);
    String lines[64];
    EXPECT_EQ(readPackedImageList("x.ifl", lines, name.c_str()), 1);
    EXPECT_EQ(readPackedImageList("y.ifl", lines, name.c_str()), 0);
}

TEST_F(PackedImage, LinesOneByOne)
{
    packPlainly({{"X.IFL", "ONE\nTWO\n"}});
    ASSERT_EQ(packOpen(name.c_str()), 0);
    PackHandle* handle = packFileOpen("x.ifl", "rb");
    EXPECT_STREQ(readPackedImageListLine(handle).toChar(), "ONE");
    EXPECT_EQ(handle->position, 4u);
    EXPECT_STREQ(readPackedImageListLine(handle).toChar(), "TWO");
    EXPECT_EQ(readPackedImageListLine(handle).length(), 0);
    EXPECT_EQ(readPackedImageListLine(nullptr).length(), 0);
    packClose();
    EXPECT_EQ(readPackedImageListLine(handle).length(), 0);
    packFileClose(handle);
}

TEST_F(PackedImage, ImagesOfAnyClaimedSize)
{
    const Bytes jpeg = writeJpeg(picture), tga = writeTga(picture);
    Bytes bytes;
    appendPackRecord(&bytes, 0, 0xFFFFFFFE, "MAPS\\A.JPG");
    appendPackRecord(&bytes, static_cast<uint32_t>(jpeg.size()), 0xFFFFFFFE, "MAPS\\A.TGA");
    appendPackRecord(&bytes, 5, 0, "MAPS\\B.JPG");
    appendPackRecord(&bytes, 0xFFFFFFF0, 0xFFFFFFFE, "MAPS\\C.TGA");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    bytes.insert(bytes.end(), jpeg.begin(), jpeg.end());
    bytes.insert(bytes.end(), tga.begin(), tga.end());
    name = folder.write("x.pak", bytes);
    EXPECT_EQ(load("a.jpg"), 0);
    EXPECT_EQ(load("a.tga"), 0);
    EXPECT_EQ(load("b.jpg"), 8);
    EXPECT_EQ(load("c.tga"), 9);
}

TEST_F(PackedImage, DamagedPacksNeverHarm)
{
    const std::string whole = buildPack({{"MAPS\\A.JPG", text(writeJpeg(Picture(4, 4)))},
                                         {"MAPS\\A.TGA", text(writeTga(Picture(4, 4), {.packed = true}))},
                                         {"MAPS\\A.IFL", "A.JPG\nA.TGA\n"}});
    for (size_t i = 0; i < whole.size() + 400; ++i)
    {
        std::string bytes = whole;
        if (i < whole.size()) // cut at every length
            bytes.resize(i);
        else
            for (int change = 0; change < 10; ++change)
                bytes[random() % bytes.size()] = static_cast<char>(random());
        name = folder.write("x.pak", bytes);
        texture.acceptSubstitutes = i % 2 == 0;
        load("a.jpg");
        load("a.tga");
        texture.setFilename("a.ifl", 0);
        texture.extractNames(name.c_str());
        EXPECT_LE(texture.frameCount, 63);
    }
}
