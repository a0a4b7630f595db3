#include <algorithm>
#include <cstdlib>

#include "tests/apps/program.h"
#include "tests/apps/scenes.h"
#include "tests/support/imagewriter.h"

class Direct3DPictureTest : public ProgramTest
{
protected:
    // The pixels of OpenGL's picture that lie further than tolerance from Direct3D's in the mirror.
    static int countDifferent(const Bitmap& openGL, const Bitmap& direct3D, int tolerance)
    {
        int different = 0;
        for (int y = 0; y < openGL.height; ++y)
            for (int x = 0; x < openGL.width; ++x)
            {
                const Rgb a = openGL.at(x, y), b = direct3D.at(direct3D.width - 1 - x, y);
                different +=
                    std::max({std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)}) > tolerance;
            }
        return different;
    }

    void expectSamePicture(const std::string& file, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> all = options;
        all.insert(all.end(), {"--samples", "3"});
        std::vector<std::string> other = all;
        other.insert(other.end(), {"--rasterizer", "1"});
        const Bitmap openGL = render(file, all);
        const Bitmap direct3D = render(file, other);
        ASSERT_EQ(direct3D.width, openGL.width);
        ASSERT_EQ(direct3D.height, openGL.height);
        EXPECT_GT(openGL.countUnlike({0, 0, 0}), 1000);
        // Textures of 16 bits are cut to 16 steps a channel; edges fall to one side or the other.
        EXPECT_LT(countDifferent(openGL, direct3D, 24), openGL.width * openGL.height / 50);
    }
};

TEST_F(Direct3DPictureTest, ShowsOpenGLsPictureInTheMirror)
{
    Scene3ds scene;
    scene.materials = {plainMaterial("red", 0.8f, 0.1f, 0.1f), plainMaterial("blue", 0.1f, 0.2f, 0.9f),
                       plainMaterial("green", 0.2f, 0.7f, 0.1f)};
    scene.meshes = {box("left", {-3, -1, -1}, {-1, 1, 1}, "red"),
                    box("right", {0, -2, -1}, {2, 0, 3}, "blue"),
                    box("front", {-1, -4, -1}, {0, -3, 0}, "green")};
    write("boxes.3ds", scene);
    expectSamePicture("boxes.3ds");
    expectSamePicture("boxes.3ds", {"--camera", "0", "--turn", "120", "--background", "sky"});
}

TEST_F(Direct3DPictureTest, ShowsTheSameImages)
{
    Picture image(64, 64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
        {
            // Without edges, which fall to one pixel or the next.
            image.at(x, y)[0] = static_cast<uint8_t>(40 + 3 * x);
            image.at(x, y)[1] = static_cast<uint8_t>(230 - 3 * y);
            image.at(x, y)[2] = static_cast<uint8_t>(x + y);
        }
    folder.write("IMAGE.TGA", writeTga(image));
    Map3ds map;
    map.file = "IMAGE.TGA";
    Material3ds material = plainMaterial("image", 1, 1, 1);
    material.maps = {map};
    Scene3ds scene;
    scene.materials = {material};
    scene.meshes = {box("box", {-1, -1, -1}, {1, 1, 1}, "image")};
    write("image.3ds", scene);
    expectSamePicture("image.3ds");
}

TEST_F(Direct3DPictureTest, PictureLargerThanTheScreenIsRefused)
{
    write("box.3ds", boxScene());
    const RunResult result =
        run({"render", "box.3ds", "-o", "box.png", "--rasterizer", "1", "--size", "16000x16000"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("smaller than the picture"), std::string::npos) << result.err;
}
