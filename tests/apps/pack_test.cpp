// Packs on the command line: made, listed, unpacked, checked, and drawn from.

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "apps/vornik/packformat.h"
#include "tests/apps/program.h"
#include "tests/apps/scenes.h"
#include "tests/support/imagewriter.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

class PackCommand : public ProgramTest
{
protected:
    // Fails with status 1 and one line that says why.
    void expectRefused(const std::vector<std::string>& arguments, const std::string& reason) const
    {
        const RunResult result = run(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(lineCount(result.err), 1) << result.err;
        EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
    }
    // Names of the members in order, each with a line feed.
    std::string names(const std::string& pack) const
    {
        const std::string listed = run({"pack", "list", pack}).out;
        std::string found;
        for (size_t line = 0; line < listed.size(); line = listed.find('\n', line) + 1)
            found += listed.substr(line + 12, listed.find('\n', line) - line - 11);
        return found.substr(0, found.rfind('\n', found.size() - 2) + 1); // without the sum
    }
    RunResult make(const std::vector<std::string>& files) const
    {
        std::vector<std::string> arguments = {"pack", "create", "x.pak"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        return run(arguments);
    }
    void verifiesWith(const std::string& fault) const
    {
        const RunResult result = run({"pack", "verify", "x.pak"});
        EXPECT_EQ(result.status, 1) << fault;
        EXPECT_NE(result.out.find(fault), std::string::npos) << result.out;
        EXPECT_EQ(lineCount(result.out), 1) << result.out;
        EXPECT_EQ(result.err, "vornik: x.pak: 1 fault\n");
    }
    std::vector<uint8_t> record(uint32_t start, uint32_t end, const std::string& name) const
    {
        std::vector<uint8_t> bytes;
        appendPackRecord(&bytes, start, end, name);
        return bytes;
    }
    // Writes x.pak of records and a number of bytes behind them.
    void writeRecords(const std::vector<std::vector<uint8_t>>& records, size_t dataSize, bool marked = true)
    {
        std::vector<uint8_t> bytes;
        for (const auto& one : records)
            bytes.insert(bytes.end(), one.begin(), one.end());
        if (marked)
            appendPackRecord(&bytes, packEndMark, 0, "");
        bytes.resize(bytes.size() + dataSize, 'd');
        folder.write("x.pak", bytes);
    }
    // A scene with an image in a folder.
    void writeScene() const
    {
        Scene3ds scene = boxScene();
        scene.materials[0].maps = {{.file = "Wall.tga"}};
        scene.cameras = {frontCamera("Front", 0, 4)};
        write("data/box.3ds", scene);
        folder.write("data/wall.tga", writeTga(Picture(4, 4, 0x40C020FF)));
    }
};

TEST_F(PackCommand, WhatIsPackedIsUnpacked)
{
    const std::string large(3 << 20, 'l');
    folder.write("in/a.jpg", std::string("aaa"));
    folder.write("in/maps/b.tga", large);
    folder.write("in/empty.ifl", std::string());
    const RunResult made = make({"in"});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out.substr(0, 19), "x.pak: 3 members, 3");
    EXPECT_EQ(names("x.pak"), ".\\EMPTY.IFL\n.\\A.JPG\n.\\MAPS\\B.TGA\n"); // lists come first
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).out, "x.pak: sound, 3 members\n");
    const RunResult out = run({"pack", "extract", "x.pak", "--into", "out"});
    EXPECT_EQ(out.status, 0) << out.err;
    EXPECT_EQ(out.out, "3 of 3 members extracted\n");
    EXPECT_EQ(folder.read("out/A.JPG"), "aaa");
    EXPECT_EQ(folder.read("out/MAPS/B.TGA"), large);
    EXPECT_TRUE(exists("out/EMPTY.IFL"));
    EXPECT_FALSE(exists("x.pak.part"));
}

TEST_F(PackCommand, NamesCountFromTheFolderThatHoldsAllFiles)
{
    folder.write("game/data/a.3ds", std::string("a"));
    folder.write("game/data/maps/b.jpg", std::string("b"));
    make({"game/data/a.3ds", "game/data/maps/b.jpg"});
    EXPECT_EQ(names("x.pak"), ".\\A.3DS\n.\\MAPS\\B.JPG\n");
    make({"./game/../game/data/maps/b.jpg"});
    EXPECT_EQ(names("x.pak"), ".\\B.JPG\n");
    make({"game/"}); // a folder counts itself
    EXPECT_EQ(names("x.pak"), ".\\DATA\\A.3DS\n.\\DATA\\MAPS\\B.JPG\n");
}

TEST_F(PackCommand, RootAndPrefix)
{
    folder.write("game/data/a.jpg", std::string("a"));
    make({"game/data/a.jpg", "--root", "game"});
    EXPECT_EQ(names("x.pak"), ".\\DATA\\A.JPG\n");
    make({"game/data/a.jpg", "--prefix", "my/maps/"});
    EXPECT_EQ(names("x.pak"), "MY\\MAPS\\A.JPG\n");
    make({"game/data/a.jpg", "--prefix", "", "--root", "."});
    EXPECT_EQ(names("x.pak"), "GAME\\DATA\\A.JPG\n");
    folder.write("other.jpg", std::string("o"));
    expectRefused({"pack", "create", "y.pak", "other.jpg", "--root", "game"}, "lies outside of");
    EXPECT_FALSE(exists("y.pak"));
}

TEST_F(PackCommand, RefusesWhatNoPackCanHold)
{
    folder.write("a.jpg", std::string("a"));
    folder.write("sub/A.JPG", std::string("b"));
    folder.write("A.jpg", std::string("c"));
    expectRefused({"pack", "create", "x.pak", "none.jpg"}, "none.jpg: no such file");
    expectRefused({"pack", "create", "x.pak", "a.jpg", "A.jpg"}, "two files of this name");
    expectRefused({"pack", "create", "x.pak", "a.jpg", "a.jpg"}, "two files of this name");
    expectRefused({"pack", "create", "x.pak", "a.jpg", "--prefix", std::string(250, 'p')},
                  "longer than 255 bytes");
    EXPECT_EQ(make({"a.jpg", "--prefix", std::string(249, 'p')}).status, 0); // 255
    fs::create_directory(folder.path("nothing"));
    expectRefused({"pack", "create", "x.pak", "nothing"}, "no files");
    expectRefused({"pack", "create", "x.pak", "x.pak"}, "can't hold itself");
    expectRefused({"pack", "create", "none/x.pak", "a.jpg"}, "can't be written");
    EXPECT_EQ(run({"pack", "create", "x.pak"}).status, 2);
    EXPECT_EQ(run({"pack"}).status, 2);
}

TEST_F(PackCommand, RefusesTooManyFiles)
{
    // Over several folders: some systems look through a whole one for each name.
    for (int i = 0; i < 4096; ++i)
        folder.write("many/" + std::to_string(i / 64) + "/" + std::to_string(i % 64), std::string());
    expectRefused({"pack", "create", "x.pak", "many"}, "4096 files are too many: a pack holds 4095");
    fs::remove(folder.path("many/0/7"));
    EXPECT_EQ(make({"many"}).status, 0);
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).status, 0);
}

TEST_F(PackCommand, RefusesMoreThanFourGigabytes)
{
    folder.write("large", std::string());
    fs::resize_file(folder.path("large"), (uint64_t{4} << 30) - 1000); // takes no space
    folder.write("small", std::string(1000, 's'));
    expectRefused({"pack", "create", "x.pak", "large", "small"}, "larger than 4 GiB");
    fs::resize_file(folder.path("large"), uint64_t{5} << 30);
    expectRefused({"pack", "create", "x.pak", "large"}, "larger than 4 GiB");
}

TEST_F(PackCommand, FailedPackLeavesWhatWasThere)
{
    folder.write("a.jpg", std::string("a"));
    folder.write("x.pak/inside", std::string("mine"));
    expectRefused({"pack", "create", "x.pak", "a.jpg"}, "can't be written");
    EXPECT_EQ(folder.read("x.pak/inside"), "mine");
    EXPECT_FALSE(exists("x.pak.part"));
}

TEST_F(PackCommand, FileThatCannotBeReadLeavesTheOldPack)
{
    folder.write("a.jpg", std::string("a"));
    make({"a.jpg"});
    const std::string before = folder.read("x.pak");
    // The system says it has a page of bytes, but gives fewer.
    const std::string file = "/sys/kernel/mm/transparent_hugepage/enabled";
    std::error_code failed;
    if (!hasTerminals() || fs::file_size(file, failed) < 1000 || failed)
        GTEST_SKIP() << "there is no such file";
    expectRefused({"pack", "create", "x.pak", file}, "can't be read");
    EXPECT_EQ(folder.read("x.pak"), before);
    EXPECT_FALSE(exists("x.pak.part"));
}

TEST_F(PackCommand, KeepsClearOfThePlaceThatReadersMistake)
{
    // The second member would start at the size of the directory.
    folder.write("a", std::string(3 * 264, 'a'));
    folder.write("b", std::string("bbb"));
    make({"a", "b"});
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).status, 0);
    EXPECT_EQ(folder.read("x.pak").size(), 2 * 3 * 264u + 1 + 3);
    run({"pack", "extract", "x.pak"});
    EXPECT_EQ(folder.read("B"), "bbb");
    writeRecords({record(0, 791, "A"), record(792, 794, "B")}, 795);
    verifiesWith("B: starts at 792, the size of the directory");
}

TEST_F(PackCommand, ListsEndWithALineFeed)
{
    folder.write("a.ifl", std::string("ONE.JPG"));
    folder.write("b.jpg", std::string("b"));
    make({"b.jpg", "a.ifl"});
    EXPECT_EQ(folder.read("x.pak").substr(3 * 264), "ONE.JPG\nb");
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).status, 0);
    EXPECT_EQ(run({"pack", "extract", "x.pak", "--into", "out"}).status, 0);
    EXPECT_EQ(folder.read("out/A.IFL"), "ONE.JPG"); // which isn't part of it
    writeRecords({record(0, 5, "A.IFL")}, 10);
    verifiesWith("A.IFL: the last line of the list has no line feed");
}

TEST_F(PackCommand, VerifyTellsEachFault)
{
    const auto name = [](const char* text) { return std::string(text); };
    writeRecords({record(0, 4, "A"), record(5, 9, "a")}, 10);
    verifiesWith("a: the name is taken by an earlier member");
    writeRecords({record(0, 9, "A"), record(9, 12, "B")}, 13);
    verifiesWith("B: overlaps A");
    writeRecords({record(0, 9, "A"), record(2, 3, "B"), record(10, 12, "C")}, 13);
    verifiesWith("B: overlaps A");
    writeRecords({record(0, 9, "A")}, 7);
    verifiesWith("A: lies past the end of the file, by 3 bytes");
    writeRecords({record(7, 3, "A")}, 10);
    verifiesWith("A: ends before it starts");
    writeRecords({record(0, 1, std::string(256, 'N'))}, 10);
    verifiesWith(": the name has no end");
    writeRecords({record(0, 1, name(""))}, 10);
    verifiesWith("a member without a name");
    writeRecords({record(0, 0xFFFFFFFF, "A")}, 0, false); // empty
    verifiesWith("the end mark is missing");
    writeRecords({record(0, 2, "A"), record(3, 2, "EMPTY"), record(3, 4, "B")}, 5);
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).status, 0);
}

TEST_F(PackCommand, RefusesWhatIsNoPack)
{
    folder.write("short", std::string(263, 'x'));
    folder.write("endless", std::string(5000 * 264, 'x'));
    for (const char* verb : {"list", "extract", "verify"})
    {
        expectRefused({"pack", verb, "none.pak"}, "none.pak: can't be opened");
        expectRefused({"pack", verb, "."}, "can't be opened");
        expectRefused({"pack", verb, "short"}, "not a pack file");
        expectRefused({"pack", verb, "endless"}, "no end mark among the first 4096 records");
    }
}

TEST_F(PackCommand, NamesNeverLeadOutOfTheFolder)
{
    fs::create_directory(folder.path("into"));
    std::vector<std::vector<uint8_t>> records;
    for (const std::string name : {"..\\UP", "../UP", "A\\..\\..\\UP", "A/../../UP", "..", ".", "", "\\",
                                   "A\\", "C:\\UP", "C:UP", "FILE:STREAM", "LINE\nFEED", "A\\..\\UP"})
        records.push_back(record(0, 3, name));
    writeRecords(records, 4);
    const RunResult result = run({"pack", "extract", "x.pak", "--into", "into"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "0 of 14 members extracted\n");
    EXPECT_EQ(lineCount(result.err), 14) << result.err;
    EXPECT_TRUE(fs::is_empty(folder.path("into")));
    EXPECT_FALSE(exists("UP"));

    // What begins with a separator is taken from the folder.
    writeRecords({record(0, 3, "\\/" + fs::path(folder.root()).relative_path().string() + "/UP"),
                  record(0, 3, "//ROOT")},
                 4);
    EXPECT_EQ(run({"pack", "extract", "x.pak", "--into", "into"}).status, 0);
    EXPECT_FALSE(exists("UP"));
    EXPECT_EQ(folder.read("into/ROOT"), "dddd");
}

TEST_F(PackCommand, LinksNeverLeadOutOfTheFolder)
{
    fs::create_directory(folder.path("into"));
    fs::create_directory(folder.path("elsewhere"));
    std::error_code failed;
    fs::create_directory_symlink(folder.path("elsewhere"), folder.path("into/LINK"), failed);
    if (failed)
        GTEST_SKIP() << "no links here";
    fs::create_symlink(folder.path("elsewhere/B"), folder.path("into/B"));
    writeRecords({record(0, 3, "LINK\\A"), record(0, 3, "B")}, 4);
    const RunResult result = run({"pack", "extract", "x.pak", "--into", "into", "--force"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lineCount(result.err), 2) << result.err;
    EXPECT_TRUE(fs::is_empty(folder.path("elsewhere")));
}

TEST_F(PackCommand, ExtractTakesWhatIsNamed)
{
    writeRecords({record(0, 0, "A"), record(1, 1, "MAPS\\B"), record(1, 2, "a")}, 3);
    RunResult result = run({"pack", "extract", "x.pak", "maps/b", "none"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vornik: NONE: not in the pack\n");
    EXPECT_EQ(result.out, "1 of 2 members extracted\n");
    EXPECT_EQ(folder.read("MAPS/B"), "d");
    EXPECT_FALSE(exists("A"));
    result = run({"pack", "extract", "x.pak", "a"});
    EXPECT_EQ(folder.read("A"), "d"); // the first of two names
}

TEST_F(PackCommand, TwoMembersOfOneFile)
{
    writeRecords({record(0, 0, "M/A"), record(0, 1, "M\\A")}, 2); // the engine tells them apart
    EXPECT_EQ(run({"pack", "extract", "x.pak", "--force"}).err,
              "vornik: M\\A: an earlier member has this file\n");
    EXPECT_EQ(folder.read("M/A"), "d");
}

TEST_F(PackCommand, ExtractReplacesNothingUnlessForced)
{
    folder.write("A", std::string("mine"));
    writeRecords({record(0, 0, "A")}, 1);
    const RunResult result = run({"pack", "extract", "x.pak"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("exists already"), std::string::npos);
    EXPECT_EQ(folder.read("A"), "mine");
    EXPECT_EQ(run({"pack", "extract", "x.pak", "--force"}).status, 0);
    EXPECT_EQ(folder.read("A"), "d");
}

TEST_F(PackCommand, ExtractLeavesOutWhatIsNotThere)
{
    writeRecords({record(0, 9, "CUT"), record(0xFFFFFFF0, 0xFFFFFFFE, "FAR"), record(5, 0, "REVERSED"),
                  record(0, 1, "GOOD")},
                 4);
    const RunResult result = run({"pack", "extract", "x.pak"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lineCount(result.err), 3) << result.err;
    for (const char* name : {"CUT", "FAR", "REVERSED"})
        EXPECT_FALSE(exists(name));
    EXPECT_EQ(folder.read("GOOD"), "dd");
}

TEST_F(PackCommand, LongCopiesShowTheirProgress)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    folder.write("large", std::string(20 << 20, 'l'));
    folder.write("small", std::string("s"));
    EXPECT_NE(runOnTerminal({"pack", "create", "x.pak", "large"}).find("[####"), std::string::npos);
    EXPECT_NE(runOnTerminal({"pack", "extract", "x.pak"}).find("100 %"), std::string::npos);
    EXPECT_EQ(runOnTerminal({"pack", "create", "x.pak", "small"}).find('['), std::string::npos);
    EXPECT_EQ(run({"pack", "create", "x.pak", "large"}).err, "");
}

TEST_F(PackCommand, PackedSceneLooksLikeTheLooseOne)
{
    writeScene();
    make({"data"});
    for (const std::string mode : {"--quiet", "--classic"})
    {
        const Bitmap loose = render("data/box.3ds", {mode});
        EXPECT_GT(loose.count([](const Rgb& pixel) { return pixel.g > 2 * pixel.r; }), 500); // the image
        EXPECT_EQ(render("BOX.3DS", {mode, "--pack", "x.pak"}).rgb, loose.rgb);
        EXPECT_EQ(render("./box.3ds", {mode, "--pack", "x.pak"}).rgb, loose.rgb);
    }
}

TEST_F(PackCommand, ImagesInAFolderOfThePack)
{
    writeScene();
    fs::create_directory(folder.path("data/maps"));
    fs::rename(folder.path("data/wall.tga"), folder.path("data/maps/wall.tga"));
    make({"data"});
    const Bitmap loose = render("data/box.3ds", {"--textures", "data/maps"});
    for (const char* textures : {"maps", ".\\maps", "MAPS/"})
        EXPECT_EQ(render("box.3ds", {"--pack", "x.pak", "--textures", textures, "--classic"}).rgb,
                  render("data/box.3ds", {"--textures", "data/maps", "--classic"}).rgb)
            << textures;
    EXPECT_EQ(render("box.3ds", {"--pack", "x.pak", "--textures", "maps"}).rgb, loose.rgb);
    expectRefused({"render", "box.3ds", "-o", "x.png", "--pack", "x.pak", "--textures", "none"},
                  "none: no such folder in x.pak");
}

TEST_F(PackCommand, LooseImagesAreNoSubstitute)
{
    writeScene();
    make({"data/box.3ds"});
    const RunResult result = run({"render", "box.3ds", "--pack", "x.pak", "-o", "x.png", "--size", "40x30"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "missing image: Wall.tga\n");
}

TEST_F(PackCommand, InfoTellsOfThePacksImages)
{
    writeScene();
    folder.write("data/bad.jpg", std::string("no picture"));
    Scene3ds scene = boxScene();
    scene.materials[0].maps = {{.file = "WALL.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "BAD.JPG"}};
    scene.materials.push_back(plainMaterial("other", 1, 1, 1));
    scene.materials[1].maps = {{.file = "GONE.JPG"}};
    write("data/box.3ds", scene);
    make({"data"});
    const RunResult packed = run({"info", "box.3ds", "--pack", "x.pak"});
    EXPECT_EQ(packed.status, 0) << packed.err;
    for (const std::string line : {"WALL.TGA  found", "BAD.JPG   unreadable", "GONE.JPG  missing"})
        EXPECT_NE(packed.out.find(line), std::string::npos) << packed.out;
}

TEST_F(PackCommand, PackedScenesThatCannotBeServed)
{
    const auto refused = [this](const std::string& scene, const std::string& pack, const std::string& reason)
    {
        expectRefused({"render", scene, "--pack", pack, "-o", "picture.png"}, reason);
        expectRefused({"info", scene, "--pack", pack}, reason);
    };
    writeScene();
    const std::string whole = folder.read("data/box.3ds");
    folder.write("data/cut.3ds", whole.substr(0, whole.size() - 1));
    folder.write("data/text.3ds", std::string("hello"));
    folder.write("data/empty.3ds", std::string());
    make({"data"});
    refused("box.3ds", "none.pak", "none.pak: can't be opened");
    refused("box.3ds", "data/wall.tga", "can't be opened");
    refused("none.3ds", "x.pak", "none.3ds: not in x.pak");
    refused("ox.3ds", "x.pak", "ox.3ds: not in x.pak"); // no part of a name
    refused("cut.3ds", "x.pak", "cut short");
    refused("text.3ds", "x.pak", "not a .3DS file");
    refused("empty.3ds", "x.pak", "empty");
    EXPECT_FALSE(exists("picture.png"));

    // A member that claims more than the pack has.
    writeRecords({record(0, 0xFFFFFFFE, "BOX.3DS")}, 0);
    folder.write("x.pak", folder.read("x.pak") + whole.substr(0, 50));
    refused("box.3ds", "x.pak", "cut short");
}

TEST_F(PackCommand, DamagedPacksNeverHarm)
{
    writeScene();
    make({"data"});
    const std::string whole = folder.read("x.pak");
    unsigned int state = 1;
    const auto random = [&state] { return (state = state * 1664525 + 1013904223) >> 8; };
    for (size_t round = 0; round < 30; ++round)
    {
        std::string bytes = whole;
        if (round < 15)
            bytes.resize(whole.size() * round / 15);
        else
            for (int change = 0; change < 12; ++change)
                bytes[random() % (3 * 264)] = static_cast<char>(random());
        folder.write("x.pak", bytes);
        for (const std::vector<std::string>& command :
             std::vector<std::vector<std::string>>{{"pack", "verify", "x.pak"},
                                                   {"pack", "extract", "x.pak", "--into", "out", "--force"},
                                                   {"info", "box.3ds", "--pack", "x.pak"}})
        {
            const int status = run(command).status;
            EXPECT_TRUE(status == 0 || status == 1) << status;
        }
    }
}

TEST_F(PackCommand, SampleLooksTheSame)
{
    ASSERT_EQ(runProcess({MAKE_SAMPLE, folder.path("sample")}), 0);
    EXPECT_EQ(make({"sample"}).status, 0);
    EXPECT_EQ(run({"pack", "verify", "x.pak"}).status, 0);
    const Bitmap loose = render("sample/harbour.3ds", {"--size", "320x180"});
    const Bitmap packed = render("HARBOUR.3DS", {"--size", "320x180", "--pack", "x.pak"});
    EXPECT_EQ(loose.width, 320);
    EXPECT_EQ(loose.rgb, packed.rgb);
}
