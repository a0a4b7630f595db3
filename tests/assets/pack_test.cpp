// The reader of pack files: directory, members, and what it does with packs that make no sense.

#include "vornik/assets/pack.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "apps/vornik/packformat.h"
#include "tests/support/tempfolder.h"

using Bytes = std::vector<uint8_t>;

static const uint32_t entrySize = 264;

static Bytes& operator+=(Bytes& bytes, const std::string& text)
{
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

class Pack : public ::testing::Test
{
protected:
    ~Pack() override { packClose(); }

    int open(const Bytes& bytes) { return packOpen(folder.write("x.pak", bytes).c_str()); }

    // A directory of records and an end mark with the data behind it.
    int open(const std::vector<PackEntry>& entries, const std::string& data)
    {
        Bytes bytes;
        for (const PackEntry& entry : entries)
            appendPackRecord(&bytes, entry.start, entry.end, entry.name);
        appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
        return open(bytes += data);
    }

    // Bytes that one read of a member delivers.
    static std::string read(PackHandle* handle, size_t count)
    {
        std::string bytes(count, '?');
        bytes.resize(packFileRead(bytes.data(), 1, count, handle));
        return bytes;
    }
    static std::string readWhole(const char* name)
    {
        PackHandle* handle = packFileOpen(name, "rb");
        if (!handle)
            return "none";
        std::string bytes = read(handle, packFileSize(handle));
        packFileClose(handle);
        return bytes;
    }

    TempFolder folder;
};

// Handles of members by name, closed with the test.
using Handle = std::unique_ptr<PackHandle, int (*)(PackHandle*)>;
static Handle member(const char* name)
{
    return Handle(packFileOpen(name, "rb"), packFileClose);
}

TEST_F(Pack, MembersAreFoundInAnyCase)
{
    ASSERT_EQ(open({{0, 4, "Maps\\Wall.jpg"}, {5, 9, "SCENE.3DS"}}, "walls"
                                                                    "scene"),
              0);
    EXPECT_EQ(packEntryCount, 3u); // with the end mark
    EXPECT_EQ(packDirectorySize, 3 * entrySize);
    EXPECT_STREQ(packDirectory[0].name, "MAPS\\WALL.JPG");
    EXPECT_EQ(readWhole("maps\\wall.JPG"), "walls");
    EXPECT_EQ(readWhole("scene.3ds"), "scene");
    EXPECT_EQ(packFindEntry("Scene.3ds"), 1);
}

TEST_F(Pack, NamesAreComparedWhole)
{
    open({{0, 0, "MAPS\\A.JPG"}}, "a");
    for (const char* name : {"A.JPG", "MAPS/A.JPG", "MAPS\\A", "MAPS\\A.JPGX", " MAPS\\A.JPG"})
    {
        EXPECT_EQ(packFindEntry(name), -1) << name;
        EXPECT_EQ(packFileOpen(name, "rb"), nullptr) << name;
    }
}

TEST_F(Pack, NumbersInTheFileAreLittleEndian)
{
    Bytes bytes = {1, 2, 0, 0, 3, 2, 0, 0, 'n', 'a', 'm', 'e'};
    bytes.resize(entrySize);
    bytes.insert(bytes.end(), 4, 0xFF);
    bytes.resize(2 * entrySize);
    ASSERT_EQ(open(bytes), 0);
    EXPECT_EQ(packDirectory[0].start, 0x201u);
    EXPECT_EQ(packDirectory[0].end, 0x203u);
    EXPECT_STREQ(packDirectory[0].name, "NAME");
    EXPECT_EQ(packEntryCount, 2u);
}

TEST_F(Pack, FirstOfTwoNamesIsTheMember)
{
    open({{0, 0, "a"}, {1, 1, "A"}}, "12");
    EXPECT_EQ(readWhole("A"), "1");
}

TEST_F(Pack, EndMarkTakesPartInTheSearch)
{
    open({{0, 0, "a"}}, "1");
    EXPECT_EQ(packFindEntry(""), 1);
    EXPECT_NE(member(""), nullptr);
}

TEST_F(Pack, RecordsBehindTheEndMarkAreData)
{
    Bytes bytes;
    appendPackRecord(&bytes, 0, 7, "data");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    appendPackRecord(&bytes, 0x64636261, 0x68676665, "no member");
    ASSERT_EQ(open(bytes), 0);
    EXPECT_EQ(packEntryCount, 2u);
    EXPECT_EQ(packFindEntry("no member"), -1);
    EXPECT_EQ(readWhole("data"), "abcdefgh");
}

TEST_F(Pack, SizesOfMembers)
{
    open({{0, 2, "three"},
          {3, 3, "one"},
          {4, 3, "empty"},
          {0, 0xFFFFFFFF, "empty at the start"},
          {9, 3, "odd"}},
         "abcd");
    EXPECT_EQ(packFileSize(member("three").get()), 3u);
    EXPECT_EQ(packFileSize(member("one").get()), 1u);
    EXPECT_EQ(packFileSize(member("empty").get()), 0u);
    EXPECT_EQ(packFileSize(member("empty at the start").get()), 0u);
    EXPECT_EQ(packFileSize(member("odd").get()), 0xFFFFFFFBu); // wraps around
}

TEST_F(Pack, EndOfAMemberIsTold)
{
    open({{0, 0, "first"}, {1, 1, "one"}, {2, 1, "empty"}}, "abc");
    const Handle one = member("one");
    EXPECT_EQ(one->position, 1u); // counted from the first member's start
    EXPECT_EQ(one->entryIndex, 1u);
    EXPECT_EQ(packFileEof(one.get()), 0);
    EXPECT_EQ(read(one.get(), 1), "b");
    EXPECT_EQ(packFileEof(one.get()), 1);
    EXPECT_EQ(packFileEof(member("empty").get()), 1);
}

TEST_F(Pack, EndsAreComparedAsSignedNumbers)
{
    open({{0, 0x80000000, "beyond 2 GiB"}, {0x80000000, 0, "behind"}}, "abc");
    EXPECT_EQ(packFileEof(member("beyond 2 GiB").get()), 1);
    EXPECT_EQ(packFileEof(member("behind").get()), 0);
}

TEST_F(Pack, ReadsGoOnBehindTheMember)
{
    open({{0, 1, "a"}, {2, 4, "b"}}, "aabbb");
    const Handle a = member("a");
    EXPECT_EQ(read(a.get(), 4), "aabb");
    EXPECT_EQ(a->position, 4u);
    EXPECT_EQ(packFileEof(a.get()), 1);
    EXPECT_EQ(read(a.get(), 1), "b");
}

TEST_F(Pack, PositionMovesByWhatWasAskedFor)
{
    open({{0, 4, "a"}}, "abcde");
    const Handle a = member("a");
    char buffer[100];
    EXPECT_EQ(packFileRead(buffer, 2, 50, a.get()), 2u); // whole items
    EXPECT_EQ(a->position, 100u);
    EXPECT_EQ(packStreamPos, 5u); // the stream stands where the file ends
    EXPECT_EQ(packFileRead(buffer, 1, 1, a.get()), 0u);
    EXPECT_EQ(a->position, 101u);
}

TEST_F(Pack, ReadsOfTwoMembersInTurn)
{
    open({{0, 3, "a"}, {4, 7, "b"}}, "abcdefgh");
    const Handle a = member("a"), b = member("b");
    EXPECT_EQ(read(b.get(), 2), "ef");
    EXPECT_EQ(read(a.get(), 2), "ab");
    EXPECT_EQ(read(b.get(), 2), "gh");
    EXPECT_EQ(read(a.get(), 2), "cd");
}

TEST_F(Pack, GoesOnWithoutASeek)
{
    open({{0, 3, "a"}}, "abcd");
    const Handle a = member("a");
    EXPECT_EQ(read(a.get(), 1), "a");
    EXPECT_EQ(packStreamPos, 1u);
    std::fseek(packStream, -1, SEEK_END); // the stream moves behind the layer's back
    EXPECT_EQ(read(a.get(), 1), "d");
    EXPECT_EQ(packStreamPos, 4u); // and tells where it stands now
    EXPECT_EQ(read(a.get(), 1), "c");
}

TEST_F(Pack, FirstReadAtTheSizeOfTheDirectoryGetsTheFirstBytes)
{
    const std::string data = "start" + std::string(2 * entrySize - 5, '.') + "member";
    open({{2 * entrySize, 2 * entrySize + 5, "a"}}, data);
    EXPECT_EQ(packStreamPos, packDirectorySize);
    const Handle a = member("a");
    EXPECT_EQ(read(a.get(), 3), "sta");
    EXPECT_EQ(read(a.get(), 3), "ber"); // from now on in its own place
    packFileClose(packFileOpen("a", "rb"));
    EXPECT_EQ(readWhole("a"), "member"); // later handles never were elsewhere
}

TEST_F(Pack, DirectoryWithoutAnEndMarkEndsWithTheFile)
{
    Bytes bytes;
    appendPackRecord(&bytes, 0, 0, "a");
    Bytes whole = bytes;
    ASSERT_EQ(open(whole), 0);
    EXPECT_EQ(packEntryCount, 2u); // the read that met the end counts
    EXPECT_EQ(packDirectorySize, 2 * entrySize);
    EXPECT_EQ(readWhole("a"), "");

    ASSERT_EQ(open(bytes += std::string("\1\0\0\0\2\0\0\0part", 12)), 0);
    EXPECT_EQ(packEntryCount, 2u);
    EXPECT_EQ(packFindEntry("part"), 1);
    EXPECT_EQ(packFileSize(member("part").get()), 2u);
    EXPECT_EQ(readWhole("part"), "");
}

TEST_F(Pack, WhatIsNoPackIsRefused)
{
    EXPECT_EQ(packOpen(folder.path("none.pak").c_str()), 1);
    EXPECT_EQ(packOpen(folder.root().c_str()), 1);
    EXPECT_EQ(packOpen(""), 1);
    EXPECT_EQ(packOpen(nullptr), 1);
    for (uint32_t size = 0; size < entrySize; ++size)
        EXPECT_EQ(open(Bytes(size, 0xFF)), 1) << size;
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(packDirectory, nullptr);
    EXPECT_EQ(packEntryCount, 0u);
}

TEST_F(Pack, LargestDirectory)
{
    Bytes bytes;
    for (int i = 0; i < 4095; ++i)
        appendPackRecord(&bytes, 0, 0, "member" + std::to_string(i));
    Bytes marked = bytes;
    appendPackRecord(&marked, 0xFFFFFFFF, 0, "");
    ASSERT_EQ(open(marked += "x"), 0);
    EXPECT_EQ(packEntryCount, 4096u);
    EXPECT_EQ(readWhole("MEMBER4094"), "x");
    EXPECT_EQ(open(bytes), 0); // the end of the file is the last record
    EXPECT_EQ(packEntryCount, 4096u);

    appendPackRecord(&bytes, 0, 0, "one more");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    EXPECT_EQ(open(bytes), 1);
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(open(Bytes(5000 * entrySize)), 1);
}

TEST_F(Pack, NamesWithoutAnEndAreCut)
{
    const std::string name(256, 'n');
    Bytes bytes;
    appendPackRecord(&bytes, 0, 0, name);
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, name);
    ASSERT_EQ(open(bytes += "x"), 0);
    EXPECT_EQ(std::strlen(packDirectory[0].name), 255u);
    EXPECT_EQ(packFindEntry(std::string(255, 'n').c_str()), 0);
    EXPECT_EQ(packFindEntry(name.c_str()), -1);
    EXPECT_EQ(packFindEntry(std::string(5000, 'n').c_str()), -1);
}

TEST_F(Pack, ClosedPackAnswersNothing)
{
    open({{0, 0, "a"}}, "x");
    const Handle a = member("a");
    EXPECT_EQ(packClose(), 0);
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(packDirectory, nullptr);
    EXPECT_EQ(packEntryCount, 2u); // these stay
    EXPECT_EQ(packDirectorySize, 2 * entrySize);
    EXPECT_EQ(packStreamPos, 2 * entrySize);

    char byte = 'z';
    EXPECT_EQ(packFileOpen("a", "rb"), nullptr);
    EXPECT_EQ(packFindEntry("a"), -1);
    EXPECT_EQ(packFileSize(a.get()), 0u);
    EXPECT_EQ(packFileRead(&byte, 1, 1, a.get()), 0u);
    EXPECT_EQ(byte, 'z');
    EXPECT_EQ(packFileEof(a.get()), 1);
    EXPECT_EQ(packClose(), 0);
}

TEST_F(Pack, NullArguments)
{
    open({{0, 0, "a"}}, "x");
    char byte = 'z';
    const Handle a = member("a");
    EXPECT_EQ(packFileOpen(nullptr, nullptr), nullptr);
    EXPECT_NE(Handle(packFileOpen("a", nullptr), packFileClose), nullptr);
    EXPECT_EQ(packFindEntry(nullptr), -1);
    EXPECT_EQ(packFileSize(nullptr), 0u);
    EXPECT_EQ(packFileRead(&byte, 1, 1, nullptr), 0u);
    EXPECT_EQ(packFileRead(nullptr, 1, 1, a.get()), 0u);
    EXPECT_EQ(a->position, 0u);
    EXPECT_EQ(packFileEof(nullptr), 1);
    EXPECT_EQ(packFileClose(nullptr), 0);
    EXPECT_EQ(packFileClose(packFileOpen("a", "rb")), 1);
}

TEST_F(Pack, RequestsThatNoMemoryCouldHold)
{
    open({{0, 0, "a"}}, "x");
    const Handle a = member("a");
    char byte = 'z';
    EXPECT_EQ(packFileRead(&byte, SIZE_MAX, 2, a.get()), 0u);
    EXPECT_EQ(packFileRead(&byte, SIZE_MAX / 2 + 1, 2, a.get()), 0u);
    EXPECT_EQ(packFileRead(&byte, 0, 5, a.get()), 0u);
    EXPECT_EQ(byte, 'z');
    EXPECT_EQ(a->position, 0u);
}

TEST_F(Pack, HandlesOfAnotherPack)
{
    open({{0, 0, "a"}, {0, 0, "b"}, {0, 0, "c"}}, "x");
    const Handle c = member("c");
    open({{0, 0, "a"}}, "y");
    EXPECT_EQ(packFileSize(c.get()), 0u);
    EXPECT_EQ(packFileEof(c.get()), 1);
    EXPECT_EQ(read(c.get(), 1), "y"); // a read needs no record
}

TEST_F(Pack, OpeningClosesThePackBefore) // the sanitizers see what is left
{
    for (int i = 0; i < 2000; ++i) // more than a process may open
        ASSERT_EQ(open({{0, 0, "a"}}, std::to_string(i % 10)), 0);
    EXPECT_EQ(readWhole("a"), "9");
    EXPECT_EQ(packOpen(folder.path("none.pak").c_str()), 1);
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(packDirectory, nullptr);
}

TEST_F(Pack, HostileRecordsDeliverNothing)
{
    open({{0xFFFFFFFE, 0xFFFFFFFE, "far"}, {0xFFFFFFF0, 5, "wraps"}, {0, 0xFFFFFFFE, "all"}}, "abc");
    for (const char* name : {"far", "wraps"})
    {
        const Handle handle = member(name);
        EXPECT_EQ(read(handle.get(), 100), "") << name;
        EXPECT_EQ(read(handle.get(), 100), "") << name;
    }
    const Handle all = member("all");
    EXPECT_EQ(packFileSize(all.get()), 0xFFFFFFFFu);
    EXPECT_EQ(read(all.get(), 1000), "abc");
}

TEST_F(Pack, FoundLikeAnyFile)
{
    Bytes bytes;
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    folder.write("Data/Game.pak", bytes);
    EXPECT_EQ(packOpen((folder.root() + "\\DATA\\GAME.PAK").c_str()), 0);
    EXPECT_EQ(packEntryCount, 1u);
}

TEST_F(Pack, DamagedPacksNeverHarm)
{
    const std::string whole = buildPack({{"A.3DS", std::string(300, 'a')}, {"B.JPG", "bbb"}, {"C.IFL", "c"}});
    std::mt19937 random(5);
    for (size_t i = 0; i < whole.size() + 500; ++i)
    {
        Bytes bytes(whole.begin(), whole.end());
        if (i < whole.size()) // cut at every length
            bytes.resize(i);
        else
            for (int change = 0; change < 20; ++change)
                bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        const int result = open(bytes);
        ASSERT_EQ(result, i < entrySize ? 1 : 0);
        ASSERT_EQ(packStream != nullptr, result == 0);
        for (uint32_t entry = 0; packStream && entry < packEntryCount; ++entry)
        {
            const Handle handle = member(packDirectory[entry].name);
            ASSERT_NE(handle, nullptr);
            read(handle.get(), std::min<size_t>(packFileSize(handle.get()), 2000));
            packFileEof(handle.get());
        }
    }
}
