// Frames of an animation on the command line.

#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

#include <cmath>

#include <zlib.h>

static bool isDrawn(const Rgb& p)
{
    return p.r + p.g + p.b > 12;
}

// The middle column of what is drawn; -1 if nothing is.
static int middleColumn(const Bitmap& picture)
{
    int low = picture.width, high = -1;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (isDrawn(picture.at(x, y)))
            {
                low = std::min(low, x);
                high = std::max(high, x);
            }
    return high < 0 ? -1 : (low + high) / 2;
}

class Frames : public ProgramTest
{
protected:
    // A box that goes to the right from frame 0 to 20, in front of a camera that stays.
    std::string movingBox()
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("grey", 0.8f, 0.8f, 0.8f)};
        scene.meshes = {box("Box", {-1, -1, -1}, {1, 1, 1}, "grey")};
        scene.cameras = {frontCamera("Eye", 0, 20)};
        scene.nodes = {{.name = "Box", .positions = {{0, {-4, 0, 0}}, {20, {4, 0, 0}}}}};
        scene.segment = {{0, 100}};
        return write("box.3ds", scene);
    }
    int columnAt(int frame) { return middleColumn(render("box.3ds", {"--frame", std::to_string(frame)})); }
};

TEST_F(Frames, ObjectsMoveWithThem)
{
    movingBox();
    const int first = columnAt(0), middle = columnAt(10), last = columnAt(20);
    EXPECT_NEAR(middle, 60, 1);
    EXPECT_NEAR(first + last, 120, 2);
    EXPECT_LT(first, middle - 10);
    EXPECT_EQ(columnAt(90), last);
    EXPECT_EQ(middleColumn(render("box.3ds")), first);
}

TEST_F(Frames, StrictReadingPlaysOnlyWhenAsked)
{
    movingBox();
    const int still = middleColumn(render("box.3ds", {"--classic"}));
    EXPECT_NEAR(still, 60, 1);
    // At frame 0 the strict reading has the object at its last key.
    EXPECT_GT(middleColumn(render("box.3ds", {"--classic", "--frame", "0"})), 70);
    EXPECT_NEAR(middleColumn(render("box.3ds", {"--classic", "--frame", "10"})), 60, 1);
}

TEST_F(Frames, CameraFlies)
{
    Scene3ds scene = boxScene();
    scene.cameras = {frontCamera("Eye", 0, 20)};
    scene.nodes = {
        {.kind = NODE_3DS_CAMERA, .name = "Eye", .positions = {{0, {0, -20, 0}}, {10, {6, -20, 0}}}},
        {.kind = NODE_3DS_CAMERA_TARGET, .name = "Eye", .positions = {{0, {0, 0, 0}}, {10, {6, 0, 0}}}}};
    scene.segment = {{0, 100}};
    write("box.3ds", scene);
    EXPECT_NEAR(columnAt(0), 60, 1);
    EXPECT_LT(columnAt(10), 45);
}

TEST_F(Frames, NumberedPictures)
{
    movingBox();
    const RunResult result = run({"render", "box.3ds", "-o", "film.png", "--size", "120x90", "--samples", "1",
                                  "--background", "black", "--frames", "0..20", "--every", "10"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    const int first = middleColumn(readPng("film-0000.png"));
    EXPECT_EQ(first, columnAt(0));
    EXPECT_EQ(middleColumn(readPng("film-0010.png")), columnAt(10));
    EXPECT_EQ(middleColumn(readPng("film-0020.png")), columnAt(20));
    for (const char* name : {"film.png", "film-0001.png", "film-0030.png"})
        EXPECT_FALSE(exists(name)) << name;
}

// A chunk of a PNG file.
struct Chunk
{
    std::string type, data;
};

static uint32_t number(const std::string& text, size_t at)
{
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(text.at(at + i));
    return value;
}

static std::vector<Chunk> chunksOf(const std::string& png)
{
    std::vector<Chunk> chunks;
    for (size_t at = 8; at < png.size();)
    {
        const uint32_t length = number(png, at);
        chunks.push_back({png.substr(at + 4, 4), png.substr(at + 8, length)});
        const std::string body = png.substr(at + 4, 4 + length);
        EXPECT_EQ(number(png, at + 8 + length),
                  crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size())));
        at += 12 + length;
    }
    return chunks;
}

TEST_F(Frames, AnimatedPicture)
{
    movingBox();
    const RunResult result = run({"render", "box.3ds", "-o", "film.apng", "--size", "120x90", "--samples",
                                  "1", "--frames", "0..20", "--every", "10", "--fps", "5"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::vector<Chunk> chunks = chunksOf(folder.read("film.apng"));
    std::string types;
    for (const Chunk& chunk : chunks)
        types += chunk.type + " ";
    EXPECT_EQ(types, "IHDR acTL fcTL IDAT fcTL fdAT fcTL fdAT IEND ");
    EXPECT_EQ(number(chunks[1].data, 0), 3u);
    EXPECT_EQ(number(chunks[1].data, 4), 0u); // for ever
    uint32_t sequence = 0;
    for (const Chunk& chunk : chunks)
    {
        if (chunk.type != "fcTL" && chunk.type != "fdAT")
            continue;
        EXPECT_EQ(number(chunk.data, 0), sequence++);
        if (chunk.type == "fcTL")
        {
            EXPECT_EQ(number(chunk.data, 4), 120u);
            EXPECT_EQ(number(chunk.data, 20), 1u << 16 | 5); // a fifth of a second
        }
    }
    // Readers that know no animation see the first frame.
    EXPECT_GT(readPng("film.apng").width, 0);
}

TEST_F(Frames, ValuesAreChecked)
{
    movingBox();
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--frame", "-1"},
                                                  {"--frame", "x"},
                                                  {"--frames", "5"},
                                                  {"--frames", "5..2"},
                                                  {"--frames", "a..b"},
                                                  {"--frames", "0..9x"},
                                                  {"--frames", "0..99999999"},
                                                  {"--every", "0"},
                                                  {"--fps", "0"},
                                                  {"--transparent", "perhaps"}})
    {
        std::vector<std::string> arguments = {"render", "box.3ds", "-o", "a.png"};
        arguments.insert(arguments.end(), wrong.begin(), wrong.end());
        const RunResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << wrong[0];
        EXPECT_NE(result.err.find(wrong[0]), std::string::npos) << result.err;
    }
    EXPECT_EQ(run({"render", "box.3ds", "-o", "a.png", "--frame", "1", "--frames", "1..2"}).status, 2);
}

TEST_F(Frames, UnwritableFilmFails)
{
    movingBox();
    for (const char* name : {"none/film.png", "none/film.apng"})
    {
        const RunResult result = run({"render", "box.3ds", "-o", name, "--frames", "0..1"});
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.find("film"), std::string::npos) << result.err;
    }
}

class Transparency : public ProgramTest
{
protected:
    // A clear green wall in front of a clear red one, or the other way round, in one mesh.
    Scene3ds walls(bool redInFront)
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("red", 1, 0, 0), plainMaterial("green", 0, 1, 0)};
        for (Material3ds& material : scene.materials)
            material.transparency = Percent3ds{50};
        Mesh3ds near = wall("walls", -1, -2, 2), far = wall("far", 1, -2, 2);
        const uint16_t first = static_cast<uint16_t>(near.vertices.size());
        const uint16_t faces = static_cast<uint16_t>(near.faces.size());
        near.vertices.insert(near.vertices.end(), far.vertices.begin(), far.vertices.end());
        MaterialGroup3ds nearGroup = {redInFront ? "red" : "green"},
                         farGroup = {redInFront ? "green" : "red"};
        for (uint16_t i = 0; i < faces; ++i)
        {
            const Face3ds& face = far.faces[i];
            near.faces.push_back(
                {uint16_t(face.a + first), uint16_t(face.b + first), uint16_t(face.c + first)});
            nearGroup.faces.push_back(i);
            farGroup.faces.push_back(uint16_t(faces + i));
        }
        near.groups = {nearGroup, farGroup};
        near.textureCoords.clear();
        near.smoothing.clear();
        scene.meshes = {near};
        scene.cameras = {frontCamera("Eye", 0, 10)};
        return scene;
    }
    Rgb middle(bool redInFront, const std::string& order)
    {
        write("walls.3ds", walls(redInFront));
        return render("walls.3ds", {"--transparent", order, "--ambient", "1"}).at(60, 45);
    }
};

TEST_F(Transparency, SortedFacesBlendFromFarToNear)
{
    const Rgb red = middle(true, "sorted"), green = middle(false, "sorted");
    EXPECT_GT(red.r, red.g + 30);
    EXPECT_GT(red.g, 20); // the far one shines through
    EXPECT_GT(green.g, green.r + 30);
    EXPECT_GT(green.r, 20);
}

TEST_F(Transparency, ImmediateFacesKeepTheOrderOfTheMesh)
{
    // The far wall comes last and lies over the near one.
    const Rgb red = middle(true, "immediate");
    EXPECT_GT(red.g, red.r + 30);
}

TEST_F(Transparency, CullingChangesNoPicture)
{
    write("walls.3ds", walls(true));
    const Bitmap whole = render("walls.3ds"), culled = render("walls.3ds", {"--cull"});
    EXPECT_EQ(whole.rgb, culled.rgb);
    EXPECT_GT(whole.count(isDrawn), 100);
}
