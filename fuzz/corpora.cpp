// Writes the files that each target starts from: make_corpora FOLDER makes FOLDER/<target>/<name>.

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "apps/vornik/packformat.h"
#include "tests/support/completescene.h"
#include "tests/support/imagewriter.h"
#include "tests/support/writer3ds.h"

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

static fs::path root;

static void save(const std::string& target, const std::string& name, const Bytes& bytes)
{
    fs::create_directories(root / target);
    if (!saveFile((root / target / name).string(), bytes))
        std::fprintf(stderr, "%s can't be written\n", name.c_str());
}

static Bytes bytesOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

static std::string textOf(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

// Load flags stand in the last three bytes, the lowest last.
static Bytes withFlags(Bytes bytes, uint32_t flags)
{
    for (const int shift : {16, 8, 0})
        bytes.push_back(static_cast<uint8_t>(flags >> shift));
    return bytes;
}

static Scene3ds sceneWithImages()
{
    Scene3ds scene = completeScene();
    scene.materials[0].maps = {{.slot = MAP_3DS_TEXTURE1, .file = "WALL.JPG"},
                               {.slot = MAP_3DS_OPACITY, .file = "HOLES.TGA"}};
    scene.materials[1].maps = {{.slot = MAP_3DS_TEXTURE1, .file = "FIRE.IFL"},
                               {.slot = MAP_3DS_REFLECTION, .file = "WALL.JPG"}};
    return scene;
}

// What only the keyframes of a tolerant load reach: a moving camera that carries meshes, targets, rolls,
// splines, pivots, dummies, instances, a mirrored mesh, a light in the hierarchy and parents that go round in
// a circle.
static Scene3ds carriedScene()
{
    Scene3ds scene = sceneWithImages();
    scene.materials[0].maps.push_back({.slot = MAP_3DS_TEXTURE2, .file = "WALL.PNG"});
    scene.materials.push_back({.name = "G", .maps = {{.file = "GREY.TGA"}}});
    scene.materials.push_back({.name = "T", .maps = {{.file = "FOLDER\\TOP.TGA"}}});
    scene.meshes[1].axes = std::array<float, 12>{-1, 0, 0, 0, 1, 0, 0, 0, 1, 2, 0, 0};
    const std::vector<PositionKey3ds> way = {
        {.position = {0, -9, 0}},
        {.frame = 5, .position = {3, -9, 1}, .spline = {3, {0.5f, 0.5f}}},
        {.frame = 9, .position = {4, -8, 2}}};
    const std::vector<RotationKey3ds> turns = {{.angle = 1},
                                               {.frame = 9, .angle = 3.14159265f, .axis = {1, 0, 0}}};
    const auto id = [](int number) { return static_cast<int16_t>(number); };
    scene.nodes = {
        {.kind = NODE_3DS_CAMERA,
         .id = id(0),
         .name = "C",
         .positions = way,
         .rolls = {{.angle = 10}, {.frame = 9}}},
        {.kind = NODE_3DS_CAMERA_TARGET, .id = id(1), .name = "C", .positions = way},
        {.id = id(2),
         .name = "M",
         .parent = 0,
         .pivot = Vertex3D{1, 0, 0},
         .positions = way,
         .rotations = turns},
        {.id = id(3), .name = "$$$DUMMY", .parent = 2, .instance = "D", .rotations = turns},
        {.id = id(4), .name = "M", .parent = 3, .positions = way, .scales = {{.position = {2, 1, 1}}}},
        {.kind = NODE_3DS_LIGHT, .id = id(5), .name = "L", .parent = 3, .positions = way},
        {.id = id(6), .name = "N", .scales = {{.position = {-1, 1, 1}}}},
        {.id = id(7), .name = "NONE", .parent = 8},
        {.id = id(8), .name = "NONE", .parent = 7}};
    return scene;
}

static Scene3ds plainScene()
{
    return {.meshes = {{.name = "M", .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, .faces = {{0, 1, 2}}}},
            .cameras = {{.name = "C", .target = {0, 1, 0}}}};
}

static void saveScenes()
{
    const Bytes complete = build3ds(completeScene()), images = build3ds(sceneWithImages()),
                plain = build3ds(plainScene());
    for (const uint32_t flags : {0x173FCu, 0x1E1FFCu})
        save("scene", "carried-" + std::to_string(flags), withFlags(build3ds(carriedScene()), flags));
    for (const uint32_t flags : {0x10FDu, 0x11FDu, 0x1FFFu, 0x11FFDu, 0x211FFDu, 0x20u})
    {
        const std::string suffix = "-" + std::to_string(flags);
        save("scene", "complete" + suffix, withFlags(complete, flags));
        save("scene", "images" + suffix, withFlags(images, flags));
        save("scene", "plain" + suffix, withFlags(plain, flags));
    }
}

static void savePacks()
{
    const std::string full = buildPack({{"SCENE.3DS", textOf(build3ds(carriedScene()))},
                                        {"\\WALL.JPG", textOf(writeJpeg(Picture(8, 8)))},
                                        {"\\HOLES.TGA", textOf(writeTga(Picture(8, 8, 0x40404040)))},
                                        {"\\FIRE.IFL", "F1.TGA\nF2.TGA\n"},
                                        {"\\F1.TGA", textOf(writeTga(Picture(4, 4)))},
                                        {"FIRE.IFL", "F1.TGA\nF2.TGA\n"}});
    for (const uint32_t flags : {0x90FDu, 0x199FDu, 0x9FFFu, 0x1F3FDu})
        save("packedscene", "full-" + std::to_string(flags), withFlags(bytesOf(full), flags));
    save("pack", "full", bytesOf(full));
    save("pack", "small", bytesOf(buildPack({{"A.TXT", "one\ntwo\n"}, {"FIRE.IFL", "F1.TGA\nF2.TGA"}})));
    save("pack", "empty", bytesOf(buildPack({})));
}

static Picture gradient(int width, int height)
{
    Picture picture(width, height);
    for (size_t i = 0; i < picture.rgba.size(); ++i)
        picture.rgba[i] = static_cast<uint8_t>(i * 7);
    return picture;
}

static void saveImages()
{
    for (const auto& [width, height] : std::vector<std::pair<int, int>>{{1, 1}, {8, 8}, {16, 4}, {7, 5}})
    {
        const Picture picture = gradient(width, height);
        const std::string size = std::to_string(width) + "x" + std::to_string(height);
        for (const int bits : {8, 24, 32})
            for (const bool packed : {false, true})
                save("tga", size + "-" + std::to_string(bits) + (packed ? "-packed" : ""),
                     writeTga(picture,
                              {.packed = packed, .bits = bits, .topOrigin = packed, .identification = "id"}));
        save("jpeg", size, writeJpeg(picture));
        save("jpeg", size + "-coarse", writeJpeg(picture, 10));
    }
    save("imagelist", "two", bytesOf("F1.TGA\r\nF2.TGA\r\n"));
    save("imagelist", "mixed", bytesOf("WALL.JPG\nHOLES.TGA\nNONE.TGA\nx\nF1.TGA"));
}

static void saveCommands()
{
    const std::string commands[] = {"HELP",          "HELP SET",       "INFO",
                                    "MEM",           "EXIT",           "CLS",
                                    "SCENEINFO",     "EVARLIST",       "EFUNCLIST",
                                    "SET speed 2.5", "GET speed",      "EVAL sqr 3",
                                    "EVAL next 7",   "EVAL none",      "DIR *.TGA",
                                    "GAMMA 0.75",    "FOV 90",         "ACTIVETLIST 0",
                                    "ACTIVEPLIST 0", "ACTIVECAMERA 0", "LOAD3DS SCENE.3DS . /r /s /x /c /o",
                                    "RELOAD3DS /x",  "CLEAR3DS",       "EXECSCRIPT S"};
    std::string lines, script;
    for (const std::string& command : commands)
    {
        lines += command + "\n";
        script += "#" + command + "\r\n";
        save("console", "one-" + std::to_string(lines.size()), bytesOf(command));
    }
    save("console", "all", bytesOf(lines));
    save("script", "all", bytesOf(script));
    save("script", "comments", bytesOf("a comment\n# EXIT \n<EOF>\n#INFO"));
}

// Targets whose input is a choice of calls and numbers: any bytes are a valid start.
static void saveCalls()
{
    for (const char* target : {"chunks", "texture", "string", "keyframes", "octree"})
        for (int seed = 0; seed < 8; ++seed)
        {
            Bytes bytes;
            uint32_t state = static_cast<uint32_t>(seed) * 2654435761u + 1;
            for (int i = 0; i < 64 << (seed % 4); ++i)
            {
                state = state * 1664525u + 1013904223u;
                bytes.push_back(static_cast<uint8_t>(state >> 24));
            }
            save(target, "any-" + std::to_string(seed), bytes);
        }
    save("chunks", "scene", build3ds(completeScene()));
    save("string", "number", bytesOf("  the value is -12.5 of 100"));
    save("lights", "whole", Bytes(6 * 16, 0x3F));
    save("lights", "short", Bytes(40, 0x3E));
}

static void saveLines()
{
    save("console", "scene",
         bytesOf("load3ds @scene.3ds @ /s /r /o\nsceneinfo\nreload3ds /x /c\nload3ds @scene.3ds @ "
                 "/a\nactivetlist 0\n"
                 "activeplist 0\nactivecamera 1\ngamma 0.75\nfov 60\nclear3ds\n"));
    save("console", "names",
         bytesOf(
             "set speed 1e9\nget speed\nset null 5\nget none\neval set -2.5\neval int 99999999999\neval get\n"
             "eval none\nevarlist\nefunclist\n"));
    save("console", "script",
         bytesOf("execscript @script.txt\n#execscript @script.txt\n#info\n<EOF>\n#exit"));
    save("console", "rest", bytesOf("help\nhelp set\ninfo\nmem\nexit\ncls\ndir @*.?pg\ndir @*\n"));
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs("usage: make_corpora FOLDER\n", stderr);
        return 2;
    }
    root = argv[1];
    saveScenes();
    savePacks();
    saveImages();
    saveCommands();
    saveCalls();
    saveLines();
    return 0;
}
