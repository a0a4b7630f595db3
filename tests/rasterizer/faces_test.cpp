#include "vornik/rasterizer/faces.h"

#include <GL/gl.h>

#include <climits>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;

// Three faces over five vertices; the second and third share the edge from 2 to 3.
class FacesTest : public EngineTest
{
protected:
    Color colors[5] = {
        {1, 0, 0, 0.5f}, {0, 1, 0, 0.25f}, {0, 0, 1, 0.75f}, {1, 1, 0, 0.125f}, {0, 1, 1, 0.0625f}};
    Vertex2D coords[5] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 2}};
    Vertex3D vertices[5] = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {0, 2, 0}};
    Vertex3D normals[5] = {{0.5f, -0.5f, 0}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {0, 0, -1}};
    Facelist faces[3] = {{0, 1, 2}, {1, 3, 2}, {2, 3, 4}};

    // Looks straight at the square from -1 to 1.
    void lookFlat()
    {
        vrkSetMatrixType(VRK_PROJECTION);
        vrkInitMatrix();
        vrkSetMatrixType(VRK_MODELVIEW);
        vrkInitMatrix();
        vrkDisable(VRK_TEXTURE_2D);
    }
};

static Calls operator+(Calls a, const Calls& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST_F(FacesTest, ListIsOneCallOverTheWholeRange)
{
    GLRecorder gl;
    vrkRenderList(colors, coords, vertices, normals, faces, 1, 2);
    EXPECT_EQ(gl.calls(),
              (Calls{"glColorPointer(4, GL_FLOAT, 0, ptr)", "glTexCoordPointer(2, GL_FLOAT, 0, ptr)",
                     "glVertexPointer(3, GL_FLOAT, 0, ptr)", "glNormalPointer(GL_FLOAT, 0, ptr)",
                     "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, ptr)"}));
    EXPECT_EQ(gl.pointer(0), colors);
    EXPECT_EQ(gl.pointer(1), coords);
    EXPECT_EQ(gl.pointer(2), vertices);
    EXPECT_EQ(gl.pointer(3), normals);
    EXPECT_EQ(gl.pointer(4), &faces[1]);
}

TEST_F(FacesTest, ListOfOneFaceHasThreeIndices)
{
    GLRecorder gl;
    vrkRenderList(colors, coords, vertices, normals, faces, 2, 2);
    EXPECT_EQ(gl.calls().back(), "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)");
    EXPECT_EQ(gl.pointer(4), &faces[2]);
}

TEST_F(FacesTest, ListDrawsWithTheAlphaOfTheColours)
{
    lookFlat();
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    for (Color& c : colors)
        c = {1, 1, 1, 0.5f};
    vrkRenderList(colors, coords, vertices, normals, faces, 0, 1);
    EXPECT_TRUE(pixelIs(20, 20, {128, 128, 128, 255}, 2));
    EXPECT_TRUE(pixelIs(50, 50, {128, 128, 128, 255}, 2));

    vrkClear();
    vrkRenderBasic(colors, coords, vertices, normals, faces, 0, 1);
    EXPECT_TRUE(pixelIs(20, 20, {255, 255, 255, 255}));
}

TEST_F(FacesTest, ListTouchesOnlyItsRange)
{
    lookFlat();
    vrkRenderList(colors, coords, vertices, normals, faces, 1, 1);
    EXPECT_TRUE(pixelIs(5, 5, {0, 0, 0, 0}));
    EXPECT_FALSE(pixelIs(60, 60, {0, 0, 0, 0}));
}

TEST_F(FacesTest, BasicSendsEachCornerWithFullAlpha)
{
    GLRecorder gl;
    vrkRenderBasic(colors, coords, vertices, normals, faces, 0, 0);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_TRIANGLES)", "glColor4f(1, 0, 0, 1)", "glNormal3f(0.5, -0.5, 0)",
                                 "glTexCoord2f(0, 0)", "glVertex3f(-1, -1, 0)", "glColor4f(0, 1, 0, 1)",
                                 "glNormal3f(0, 0, 1)", "glTexCoord2f(1, 0)", "glVertex3f(1, -1, 0)",
                                 "glColor4f(0, 0, 1, 1)", "glNormal3f(0, 1, 0)", "glTexCoord2f(0, 1)",
                                 "glVertex3f(-1, 1, 0)", "glEnd()"}));
}

TEST_F(FacesTest, BasicRangeIsInclusive)
{
    GLRecorder gl;
    vrkRenderBasic(colors, coords, vertices, normals, faces, 1, 2);
    EXPECT_EQ(gl.only({"glVertex3f"}),
              (Calls{"glVertex3f(1, -1, 0)", "glVertex3f(1, 1, 0)", "glVertex3f(-1, 1, 0)",
                     "glVertex3f(-1, 1, 0)", "glVertex3f(1, 1, 0)", "glVertex3f(0, 2, 0)"}));
}

TEST_F(FacesTest, WireSendsTheMarkedEdgesInOrder)
{
    const char flags[3] = {7, 0, 0};
    const Calls a = {"glColor4f(1, 0, 0, 0.5)", "glNormal3f(0.5, -0.5, 0)", "glTexCoord2f(0, 0)",
                     "glVertex3f(-1, -1, 0)"};
    const Calls b = {"glColor4f(0, 1, 0, 0.5)", "glNormal3f(0, 0, 1)", "glTexCoord2f(1, 0)",
                     "glVertex3f(1, -1, 0)"};
    const Calls c = {"glColor4f(0, 0, 1, 0.5)", "glNormal3f(0, 1, 0)", "glTexCoord2f(0, 1)",
                     "glVertex3f(-1, 1, 0)"};
    GLRecorder gl;
    vrkRenderWire(colors, coords, vertices, normals, faces, flags, 0, 1);
    EXPECT_EQ(gl.calls(), Calls{"glBegin(GL_LINES)"} + c + a + a + b + b + c + Calls{"glEnd()"});
}

TEST_F(FacesTest, WireDrawsOneEdgeForEachBit)
{
    const std::pair<char, Calls> cases[] = {{1, {"glVertex3f(-1, 1, 0)", "glVertex3f(-1, -1, 0)"}},
                                            {2, {"glVertex3f(-1, -1, 0)", "glVertex3f(1, -1, 0)"}},
                                            {4, {"glVertex3f(1, -1, 0)", "glVertex3f(-1, 1, 0)"}},
                                            {8, {}},
                                            {0, {}}};
    for (const auto& [bits, expected] : cases)
    {
        const char flags[3] = {bits, 7, 7};
        GLRecorder gl;
        vrkRenderWire(colors, coords, vertices, normals, faces, flags, 0, 1);
        EXPECT_EQ(gl.only({"glVertex3f"}), expected) << static_cast<int>(bits);
    }
}

TEST_F(FacesTest, WireLeavesTheLastFaceOut)
{
    const char flags[3] = {7, 7, 7};
    GLRecorder gl;
    vrkRenderWire(colors, coords, vertices, normals, faces, flags, 0, 2);
    EXPECT_EQ(gl.count("glVertex3f"), 12);
    gl.clear();
    vrkRenderWire(colors, coords, vertices, normals, faces, flags, 1, 1);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_LINES)", "glEnd()"}));
}

TEST_F(FacesTest, WireTakesTheAlphaOfTheFirstVertexOfTheMesh)
{
    const char flags[3] = {0, 0, 2};
    const Facelist last[4] = {{0, 1, 2}, {1, 3, 2}, {2, 3, 4}, {0, 0, 0}};
    GLRecorder gl;
    vrkRenderWire(colors, coords, vertices, normals, const_cast<Facelist*>(last), flags, 2, 3);
    EXPECT_EQ(gl.only({"glColor4f"}), (Calls{"glColor4f(0, 0, 1, 0.5)", "glColor4f(1, 1, 0, 0.5)"}));
}

TEST_F(FacesTest, SharedEdgeIsDrawnTwice)
{
    const char flags[4] = {0, 4, 2, 0}; // edge 3 2 of the second face, 2 3 of the third
    Facelist four[4] = {faces[0], faces[1], faces[2], faces[0]};
    GLRecorder gl;
    vrkRenderWire(colors, coords, vertices, normals, four, flags, 0, 3);
    EXPECT_EQ(gl.only({"glVertex3f"}), (Calls{"glVertex3f(1, 1, 0)", "glVertex3f(-1, 1, 0)",
                                              "glVertex3f(-1, 1, 0)", "glVertex3f(1, 1, 0)"}));
}

TEST_F(FacesTest, ReflectionMakesItsCoordinatesOfTheNormals)
{
    GLRecorder gl;
    vrkRenderReflection(colors, vertices, normals, faces, 0, 0, 0.375f);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_TRIANGLES)", "glColor4f(1, 0, 0, 0.375)",
                                 "glNormal3f(0.5, -0.5, 0)", "glTexCoord2f(1, 0)", "glVertex3f(-1, -1, 0)",
                                 "glColor4f(0, 1, 0, 0.375)", "glNormal3f(0, 0, 1)", "glTexCoord2f(0.5, 0.5)",
                                 "glVertex3f(1, -1, 0)", "glColor4f(0, 0, 1, 0.375)", "glNormal3f(0, 1, 0)",
                                 "glTexCoord2f(0.5, 1.5)", "glVertex3f(-1, 1, 0)", "glEnd()"}));
    gl.clear();
    vrkRenderReflection(colors, vertices, normals, faces, 0, 2, 1.0f);
    EXPECT_EQ(gl.count("glVertex3f"), 9);
}

TEST_F(FacesTest, EmptyRangeReadsNothing)
{
    GLRecorder gl;
    vrkRenderBasic(nullptr, nullptr, nullptr, nullptr, nullptr, 1, 0);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_TRIANGLES)", "glEnd()"}));
    gl.clear();
    vrkRenderReflection(nullptr, nullptr, nullptr, nullptr, 1, 0, 1.0f);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_TRIANGLES)", "glEnd()"}));
    gl.clear();
    vrkRenderWire(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 1, 0);
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_LINES)", "glEnd()"}));
    gl.clear();
    vrkRenderList(nullptr, nullptr, nullptr, nullptr, nullptr, 0, -1);
    EXPECT_EQ(gl.calls().back(), "glDrawElements(GL_TRIANGLES, 0, GL_UNSIGNED_SHORT, null)");
}

TEST_F(FacesTest, MissingArrayDrawsNothing)
{
    const char flags[3] = {7, 7, 7};
    GLRecorder gl;
    for (int missing = 0; missing < 6; ++missing)
    {
        Color* c = missing == 0 ? nullptr : colors;
        Vertex2D* t = missing == 1 ? nullptr : coords;
        Vertex3D* v = missing == 2 ? nullptr : vertices;
        Vertex3D* n = missing == 3 ? nullptr : normals;
        Facelist* f = missing == 4 ? nullptr : faces;
        const char* marks = missing == 5 ? nullptr : flags;
        if (missing != 5)
        {
            vrkRenderList(c, t, v, n, f, 0, 2);
            vrkRenderBasic(c, t, v, n, f, 0, 2);
            if (missing != 1)
                vrkRenderReflection(c, v, n, f, 0, 2, 1.0f);
        }
        vrkRenderWire(c, t, v, n, f, marks, 0, 2);
    }
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(FacesTest, RangeOutsideAnyMeshDrawsNothing)
{
    const char flags[3] = {7, 7, 7};
    GLRecorder gl;
    vrkRenderList(colors, coords, vertices, normals, faces, -1, 2);
    vrkRenderBasic(colors, coords, vertices, normals, faces, -5, 2);
    vrkRenderReflection(colors, vertices, normals, faces, INT_MIN, 0, 1.0f);
    vrkRenderWire(colors, coords, vertices, normals, faces, flags, -1, 2);
    vrkRenderList(colors, coords, vertices, normals, faces, 0, INT_MAX);
    vrkRenderList(colors, coords, vertices, normals, faces, INT_MAX, INT_MIN);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(FacesTest, DisplayListsReplayWhatTheyHeard)
{
    lookFlat();
    const int list = vrkGenLists(2);
    ASSERT_GT(list, 0);
    EXPECT_EQ(vrkIsList(list), 1);
    GLRecorder gl;
    vrkNewList(list, VRK_COMPILE);
    vrkRenderList(colors, coords, vertices, normals, faces, 0, 1);
    vrkEndList();
    EXPECT_EQ(gl.calls().front(), "glNewList(" + std::to_string(list) + ", GL_COMPILE)");
    EXPECT_EQ(gl.calls().back(), "glEndList()");
    EXPECT_EQ(drawnPixels(), 0);

    gl.clear();
    vrkCallList(list);
    EXPECT_EQ(gl.calls(), (Calls{"glCallList(" + std::to_string(list) + ")"}));
    EXPECT_GT(drawnPixels(), 64 * 64 - 200);

    gl.clear();
    vrkClear();
    vrkNewList(list + 1, VRK_COMPILE_AND_EXECUTE);
    vrkRenderList(colors, coords, vertices, normals, faces, 0, 1);
    vrkEndList();
    EXPECT_GT(drawnPixels(), 64 * 64 - 200);
    EXPECT_EQ(gl.countExact("glNewList(" + std::to_string(list + 1) + ", GL_COMPILE_AND_EXECUTE)"), 1);

    gl.clear();
    vrkDeleteLists(list, 2);
    EXPECT_EQ(gl.calls(), (Calls{"glDeleteLists(" + std::to_string(list) + ", 2)"}));
    EXPECT_EQ(vrkIsList(list), 0);
}

TEST_F(FacesTest, ImmediateModeIsPassedOn)
{
    GLRecorder gl(GLRecorder::swallow);
    vrkConvertCapTableOGL[15] = GL_QUADS; // the table has no primitive modes: a host may put one in
    vrkBegin(15);
    vrkColor4f(1, 0.5f, 0.25f, 0.125f);
    vrkNormal3f(1, 2, 3);
    vrkTexCoord2f(4, 5);
    vrkVertex3f(6, 7, 8);
    vrkEnd();
    EXPECT_EQ(gl.calls(), (Calls{"glBegin(GL_QUADS)", "glColor4f(1, 0.5, 0.25, 0.125)", "glNormal3f(1, 2, 3)",
                                 "glTexCoord2f(4, 5)", "glVertex3f(6, 7, 8)", "glEnd()"}));
}

TEST_F(FacesTest, ConstantsOutsideTheTableAreIgnored)
{
    GLRecorder gl;
    vrkBegin(-1);
    vrkBegin(34);
    vrkNewList(1, 34);
    vrkNewList(1, -1);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(FacesTest, OtherRasterizerNumbersAreSilent)
{
    const char flags[3] = {7, 7, 7};
    for (const int number : {1, 7})
    {
        vrkSelectRasterizer(number);
        GLRecorder gl;
        vrkRenderList(colors, coords, vertices, normals, faces, 0, 2);
        vrkRenderBasic(colors, coords, vertices, normals, faces, 0, 2);
        vrkRenderWire(colors, coords, vertices, normals, faces, flags, 0, 2);
        vrkRenderReflection(colors, vertices, normals, faces, 0, 2, 1.0f);
        EXPECT_EQ(vrkGenLists(3), 0);
        EXPECT_EQ(vrkIsList(1), 0);
        vrkDeleteLists(1, 1);
        vrkNewList(1, VRK_COMPILE);
        vrkEndList();
        vrkCallList(1);
        vrkBegin(VRK_TEXTURE);
        vrkEnd();
        vrkColor4f(1, 1, 1, 1);
        vrkNormal3f(1, 1, 1);
        vrkVertex3f(1, 1, 1);
        vrkTexCoord2f(1, 1);
        EXPECT_EQ(gl.calls(), Calls{}) << number;
    }
}
