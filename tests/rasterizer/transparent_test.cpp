#include "vornik/rasterizer/transparent.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"

using Calls = std::vector<std::string>;

class TransparentStack : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        vrkInitTransparentPlaneStack(100);
    }
    void TearDown() override
    {
        vrkUnInitTransparentPlaneStack();
        EngineTest::TearDown();
    }
    // A mesh whose faces lie at these distances along x. The number of a face is its red.
    std::unique_ptr<Mesh> makeFaces(const std::vector<float>& distances)
    {
        std::vector<Vertex3D> vertices;
        std::vector<Facelist> faces;
        for (const float x : distances)
        {
            const uint16_t first = static_cast<uint16_t>(vertices.size());
            vertices.insert(vertices.end(), {{x, -1, -1}, {x, 1, -1}, {x, 0, 2}});
            faces.push_back({first, uint16_t(first + 1), uint16_t(first + 2)});
        }
        std::unique_ptr<Mesh> mesh(makeMesh("M", vertices, faces));
        for (size_t i = 0; i < vertices.size(); ++i)
            mesh->vertexColors[i] = {static_cast<float>(i / 3), 0.25f, 0.5f, 0.75f};
        return mesh;
    }
    void push(Mesh* mesh, int first, int last)
    {
        vrkAddTransparentFace(mesh->vertexColors, mesh->textureCoords, mesh->calculatedVertices,
                              mesh->calculatedNormals, mesh->faces, first, last, &material, &mesh->position);
    }
    // The numbers of the faces in the order of their drawing.
    std::vector<int> drawn()
    {
        GLRecorder gl;
        vrkDrawTransparentPlanes(&camera);
        std::vector<int> order;
        for (const std::string& call : gl.only({"glColor4f"}))
            order.push_back(std::atoi(call.c_str() + 10));
        std::vector<int> faces;
        for (size_t i = 0; i < order.size(); i += 3)
            faces.push_back(order[i]);
        return faces;
    }

    Material material;
    Camera camera;
};

TEST_F(TransparentStack, WithoutAStackNothingHappens)
{
    vrkUnInitTransparentPlaneStack();
    vrkUnInitTransparentPlaneStack();
    const auto mesh = makeFaces({5});
    push(mesh.get(), 0, 0);
    vrkDisable(VRK_CULL_FACE);
    GLRecorder gl;
    vrkDrawTransparentPlanes(&camera);
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_FALSE(vrkIsEnabled(VRK_CULL_FACE));
}

TEST_F(TransparentStack, EmptyStackStillSetsTheStates)
{
    vrkDisable(VRK_CULL_FACE);
    vrkDisable(VRK_BLEND);
    GLRecorder gl;
    vrkDrawTransparentPlanes(&camera);
    EXPECT_EQ(gl.calls(), (Calls{"glDisable(GL_CULL_FACE)", "glEnable(GL_BLEND)",
                                 "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
                                 "glMatrixMode(GL_MODELVIEW)", "glEnable(GL_CULL_FACE)"}));
    EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
}

TEST_F(TransparentStack, FaceIsSentWithMatrixTextureAndCorners)
{
    const auto mesh = makeFaces({5});
    mesh->textureCoords[1] = {0.5f, 0.25f};
    mesh->calculatedNormals[1] = {0, 1, 0};
    vrkInitMatrix();
    vrkTranslate(1, 2, 3);
    push(mesh.get(), 0, 0);
    vrkInitMatrix();
    GLRecorder gl;
    vrkDrawTransparentPlanes(&camera);
    const Calls calls = gl.calls();
    const auto begin = std::find(calls.begin(), calls.end(),
                                 "glLoadMatrixf({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, "
                                 "2, 3, 1})");
    ASSERT_NE(begin, calls.end()) << gl.text();
    EXPECT_EQ(*(begin + 1), "glBindTexture(GL_TEXTURE_2D, 0)");
    EXPECT_EQ(Calls(begin + 2, calls.end()),
              (Calls{"glBegin(GL_TRIANGLES)", "glColor4f(0, 0.25, 0.5, 0.75)", "glNormal3f(0, 0, 1)",
                     "glTexCoord2f(0, 0)", "glVertex3f(5, -1, -1)", "glColor4f(0, 0.25, 0.5, 0.75)",
                     "glNormal3f(0, 1, 0)", "glTexCoord2f(0.5, 0.25)", "glVertex3f(5, 1, -1)",
                     "glColor4f(0, 0.25, 0.5, 0.75)", "glNormal3f(0, 0, 1)", "glTexCoord2f(0, 0)",
                     "glVertex3f(5, 0, 2)", "glEnd()", "glEnable(GL_CULL_FACE)"}));
}

TEST_F(TransparentStack, FarthestComesFirst)
{
    const auto mesh = makeFaces({3, 9, 1, -20, 5});
    push(mesh.get(), 0, 4);
    EXPECT_EQ(drawn(), (std::vector<int>{3, 1, 4, 0, 2}));
    EXPECT_EQ(drawn(), std::vector<int>{}); // and the stack is empty
    camera.eye.x = -100;
    push(mesh.get(), 0, 4);
    EXPECT_EQ(drawn(), (std::vector<int>{1, 4, 0, 2, 3}));
}

TEST_F(TransparentStack, RangesIncludeBothEnds)
{
    const auto mesh = makeFaces({1, 2, 3, 4});
    push(mesh.get(), 1, 2);
    push(mesh.get(), 3, 2); // none
    EXPECT_EQ(drawn(), (std::vector<int>{2, 1}));
}

TEST_F(TransparentStack, OriginCountsAndTheMatrixDoesNot)
{
    const auto here = makeFaces({0}), away = makeFaces({0, 0});
    away->position = {50, 0, 0};
    vrkInitMatrix();
    vrkTranslate(1000, 0, 0);
    push(here.get(), 0, 0);
    vrkInitMatrix();
    push(away.get(), 1, 1);
    EXPECT_EQ(drawn(), (std::vector<int>{1, 0}));
}

TEST_F(TransparentStack, FacesOfOneDistanceKeepTheirOrder)
{
    const auto mesh = makeFaces({5, 5, 5, 5, 5, 5});
    push(mesh.get(), 0, 5);
    EXPECT_EQ(drawn(), (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

TEST_F(TransparentStack, OrderIsThatOfAPlainSort)
{
    std::mt19937 random(4);
    std::vector<float> distances;
    for (int i = 0; i < 3000; ++i)
        distances.push_back(static_cast<float>(random() % 1000) - 500);
    const auto mesh = makeFaces(distances);
    mesh->position = {3.3f, -7, 2};
    camera.eye = {10, 20, 30};
    vrkInitTransparentPlaneStack(10); // grows
    push(mesh.get(), 0, 2999);

    const auto key = [&](int face)
    {
        const Vertex3D* v = mesh->calculatedVertices + face * 3;
        const float third = 0.3333333432674408f;
        const Vertex3D& o = mesh->position;
        const Vertex3D p = {(v[2].x + v[1].x + v[0].x + o.x * 3.0f) * third,
                            (v[2].y + v[1].y + v[0].y + o.y * 3.0f) * third,
                            (v[2].z + v[1].z + v[0].z + o.z * 3.0f) * third};
        return vrkFakeDistance(&camera.eye, &p);
    };
    std::vector<int> expected(3000);
    for (int i = 0; i < 3000; ++i)
        expected[static_cast<size_t>(i)] = i;
    std::stable_sort(expected.begin(), expected.end(), [&](int a, int b) { return key(a) > key(b); });
    EXPECT_EQ(drawn(), expected);
}

TEST_F(TransparentStack, SecondStackDropsWhatWaited)
{
    const auto mesh = makeFaces({1, 2});
    push(mesh.get(), 0, 1);
    vrkInitTransparentPlaneStack(5);
    EXPECT_EQ(drawn(), std::vector<int>{});
}

TEST_F(TransparentStack, BadArgumentsPushNothing)
{
    const auto mesh = makeFaces({1, 2});
    push(mesh.get(), -1, 1);
    vrkAddTransparentFace(nullptr, mesh->textureCoords, mesh->calculatedVertices, mesh->calculatedNormals,
                          mesh->faces, 0, 1, &material, &mesh->position);
    vrkAddTransparentFace(mesh->vertexColors, mesh->textureCoords, mesh->calculatedVertices,
                          mesh->calculatedNormals, mesh->faces, 0, 1, nullptr, &mesh->position);
    vrkAddTransparentFace(mesh->vertexColors, mesh->textureCoords, mesh->calculatedVertices,
                          mesh->calculatedNormals, mesh->faces, 0, 1, &material, nullptr);
    EXPECT_EQ(drawn(), std::vector<int>{});
    vrkInitTransparentPlaneStack(-5);
    push(mesh.get(), 0, 1);
    vrkDrawTransparentPlanes(nullptr); // from the world's origin
    EXPECT_EQ(drawn(), std::vector<int>{});
}

TEST_F(TransparentStack, PlacesThatAreNoNumbersAreFarthest)
{
    const auto mesh = makeFaces({1, 2, std::nanf(""), 3});
    push(mesh.get(), 0, 3);
    EXPECT_EQ(drawn(), (std::vector<int>{2, 3, 1, 0}));
}

TEST_F(TransparentStack, PushReadsTheMatrixWhateverTheRasterizer)
{
    const auto mesh = makeFaces({1, 2});
    for (const int number : {0, 1, 7})
    {
        vrkSelectedRasterizer = number;
        GLRecorder gl;
        push(mesh.get(), 0, 1);
        EXPECT_EQ(gl.calls(), (Calls{"glGetFloatv(GL_MODELVIEW_MATRIX, ptr)"})) << number;
    }
    vrkSelectedRasterizer = 0;
    EXPECT_EQ(drawn(), (std::vector<int>{1, 1, 1, 0, 0, 0}));
}

TEST_F(TransparentStack, OtherRasterizersDropTheFaces)
{
    const auto mesh = makeFaces({1, 2});
    push(mesh.get(), 0, 1);
    vrkSelectedRasterizer = 7;
    GLRecorder gl;
    vrkDrawTransparentPlanes(&camera);
    EXPECT_EQ(gl.calls(), Calls{});
    vrkSelectedRasterizer = 0;
    EXPECT_EQ(drawn(), std::vector<int>{});
}

TEST_F(TransparentStack, NearFaceBlendsOverTheFarOne)
{
    Color colors[6] = {{1, 0, 0, 0.5f}, {1, 0, 0, 0.5f}, {1, 0, 0, 0.5f},
                       {0, 1, 0, 0.5f}, {0, 1, 0, 0.5f}, {0, 1, 0, 0.5f}};
    Vertex3D vertices[6] = {{-9, -9, -5}, {9, -9, -5}, {0, 9, -5}, {-9, -9, -10}, {9, -9, -10}, {0, 9, -10}};
    Vertex3D normals[6] = {};
    Vertex2D coords[6] = {};
    Facelist faces[2] = {{0, 1, 2}, {3, 4, 5}};
    Vertex3D origin = {0, 0, 0};
    vrkInitMatrix();
    vrkDisable(VRK_TEXTURE_2D);
    vrkDisable(VRK_DEPTH_TEST);
    camera.eye = {0, 0, 0};
    vrkAddTransparentFace(colors, coords, vertices, normals, faces, 0, 1, &material, &origin);
    vrkDrawTransparentPlanes(&camera);
    EXPECT_TRUE(pixelIs(32, 28, {128, 64, 0, 0}, 2)); // red over green
}
