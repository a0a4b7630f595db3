#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/transparent.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/renderflags.h"

using Calls = std::vector<std::string>;

// One mesh of two faces, material 1 on the first and material 2 on the second, in front of the camera.
class MeshRender : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        list.addMaterial(first = new Material);
        list.addMaterial(second = new Material);
        for (Material* material : {first, second})
        {
            material->addDiffuseColor(&color);
            material->makeTextureFromColor();
        }
        mesh.reset(
            makeMesh("mesh", {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1}}, {{0, 1, 2}, {0, 2, 3}}));
        mesh->faceMaterials[0].materialIndex = 1;
        mesh->faceMaterials[1].materialIndex = 2;
        for (int i = 0; i < 4; ++i)
            mesh->vertexColors[i] = {1, 1, 1, 1};
        mesh->faceFlags[0] = mesh->faceFlags[1] = 7;
        mesh->sortFacesByMaterial();
        vrkInitMatrix();
    }

    void releaseRanges()
    {
        std::free(mesh->materialFaces->ranges);
        std::free(mesh->materialFaces);
        mesh->materialFaces = nullptr;
    }

    void addReflection(Material* material)
    {
        Texture* texture = new Texture;
        texture->textureIDs[0] = 77;
        material->addReflectionTexture(texture);
    }

    // The calls that the fixture's questions are about: state and drawing.
    Calls stateAnd(const GLRecorder& gl, const std::string& drawing) const
    {
        return gl.only({"glEnable", "glDisable", "glBlendFunc", "glDepthFunc", "glDepthMask", "glShadeModel",
                        "glNewList", "glEndList", "glCallList", drawing});
    }

    bool atRest() const
    {
        return vrkIsEnabled(VRK_CULL_FACE) && vrkIsEnabled(VRK_TEXTURE_2D) && vrkIsEnabled(VRK_DEPTH_TEST);
    }

    Color color = {0, 1, 0, 1};
    TList list;
    Material* first = nullptr;
    Material* second = nullptr;
    std::unique_ptr<Mesh> mesh;
};

TEST_F(MeshRender, WithoutRangesNoPassDoesAnything)
{
    const std::unique_ptr<Mesh> bare(makeMesh("bare", {{0, 0, 0}}, {{0, 0, 0}}));
    GLRecorder gl;
    EXPECT_EQ(bare->renderNonTransparent(VRK_RENDER_SOLID, &list), 0);
    EXPECT_EQ(bare->renderTransparentImmediately(0, &list), 0);
    EXPECT_EQ(bare->renderEffect(0, &list), 0);
    EXPECT_TRUE(gl.calls().empty());
}

TEST_F(MeshRender, SolidPassDrawsEachRangeThroughItsTexture)
{
    GLRecorder gl;
    EXPECT_EQ(mesh->render(VRK_RENDER_SOLID, &list), 0);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glDisable(GL_BLEND)", "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)",
                     "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)"}));
    EXPECT_EQ(gl.count("glBindTexture"), 2);
    EXPECT_TRUE(pixelIs(40, 20, {0, 255, 0, 255}, 2));
    EXPECT_TRUE(pixelIs(20, 40, {0, 255, 0, 255}, 2));
}

TEST_F(MeshRender, StyleFlagsAreSetAndTakenBack)
{
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_FLAT | VRK_RENDER_NOTEXTURE | VRK_RENDER_TWOSIDED, &list);
    const std::string draw = "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)";
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glDisable(GL_BLEND)", "glShadeModel(GL_FLAT)", "glDisable(GL_TEXTURE_2D)",
                     "glDisable(GL_CULL_FACE)", draw, "glEnable(GL_CULL_FACE)", "glDisable(GL_CULL_FACE)",
                     draw, "glEnable(GL_CULL_FACE)", "glShadeModel(GL_SMOOTH)", "glEnable(GL_TEXTURE_2D)"}));
    EXPECT_TRUE(atRest());
}

TEST_F(MeshRender, BasicSubmitsCornerByCorner)
{
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_BASIC, &list);
    EXPECT_EQ(gl.count("glBegin"), 2);
    EXPECT_EQ(gl.count("glVertex3f"), 6);
    EXPECT_EQ(gl.count("glDrawElements"), 0);
}

TEST_F(MeshRender, WireComesByFlagOrByMaterialWithoutReflection)
{
    addReflection(first);
    addReflection(second);
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_WIRE, &list);
    EXPECT_EQ(gl.countExact("glBegin(GL_LINES)"), 2);
    EXPECT_EQ(gl.count("glBegin"), 2);
    gl.clear();
    first->wire = 1;
    second->reflectionTexture->textureIDs[0] = 0;
    mesh->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(gl.countExact("glBegin(GL_LINES)"), 1);
    EXPECT_EQ(gl.countExact("glBegin(GL_TRIANGLES)"), 1); // the second material's reflection
    EXPECT_EQ(gl.count("glDrawElements"), 1);
}

TEST_F(MeshRender, TwoSidedMaterialsSwitchCullingOff)
{
    second->twoSided = 1;
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID, &list);
    const std::string draw = "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)";
    EXPECT_EQ(stateAnd(gl, "glDrawElements"), (Calls{"glDisable(GL_BLEND)", draw, "glDisable(GL_CULL_FACE)",
                                                     draw, "glEnable(GL_CULL_FACE)"}));
}

TEST_F(MeshRender, AMaterialWithoutTextureDrawsUntextured)
{
    delete first->firstTexture;
    first->firstTexture = nullptr;
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID, &list);
    const std::string draw = "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)";
    EXPECT_EQ(stateAnd(gl, "glDrawElements"), (Calls{"glDisable(GL_BLEND)", "glDisable(GL_TEXTURE_2D)", draw,
                                                     "glEnable(GL_TEXTURE_2D)", draw}));
    EXPECT_TRUE(pixelIs(40, 20, {255, 255, 255, 255}, 2));
}

static const Calls reflectionStates = {"glEnable(GL_BLEND)",     "glBlendFunc(GL_SRC_ALPHA, GL_DST_ALPHA)",
                                       "glDepthFunc(GL_EQUAL)",  "glDepthMask(GL_FALSE)",
                                       "glBegin(GL_TRIANGLES)",  "glDisable(GL_BLEND)",
                                       "glDepthFunc(GL_LEQUAL)", "glDepthMask(GL_TRUE)"};

TEST_F(MeshRender, AReflectionFollowsItsRange)
{
    addReflection(first);
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID, &list);
    Calls expected = {"glDisable(GL_BLEND)"};
    expected.insert(expected.end(), reflectionStates.begin(), reflectionStates.end());
    EXPECT_EQ(stateAnd(gl, "glBegin"), expected);
    EXPECT_EQ(gl.countExact("glBindTexture(GL_TEXTURE_2D, 77)"), 1);
    EXPECT_EQ(gl.countExact("glColor4f(1, 1, 1, 0.5)"), 3);
    EXPECT_EQ(gl.countExact("glTexCoord2f(0.5, 0.5)"), 3);
}

TEST_F(MeshRender, TransparentMaterialsAreLeftToTheTransparentPass)
{
    first->transparency = 0.5f;
    addReflection(first);
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
    EXPECT_EQ(gl.count("glBegin"), 0);
}

TEST_F(MeshRender, AnAlphaTextureGetsOnlyItsReflectionInTheSolidPass)
{
    first->firstTexture->environment = VRK_DECAL;
    addReflection(first);
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
    EXPECT_EQ(gl.countExact("glBegin(GL_TRIANGLES)"), 1);
}

TEST_F(MeshRender, TransparentPassBlendsAndWritesAlpha)
{
    first->transparency = 0.5f;
    GLRecorder gl;
    EXPECT_EQ(mesh->render(VRK_RENDER_TRANSPARENT_NOW, &list), 0);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
                     "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)", "glDepthFunc(GL_LEQUAL)",
                     "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)", "glDepthFunc(GL_LEQUAL)"}));
    for (const int corner : {0, 1, 2})
        EXPECT_EQ(mesh->vertexColors[corner].a, 0.5f);
    EXPECT_EQ(mesh->vertexColors[3].a, 1.0f);
    EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
    EXPECT_TRUE(pixelIs(40, 20, {0, 128, 0, 255}, 3));
    EXPECT_TRUE(pixelIs(20, 40, {0, 0, 0, 255}));
}

TEST_F(MeshRender, AnAlphaTextureCountsAsTransparent)
{
    first->firstTexture->environment = VRK_DECAL;
    first->transparency = 1.0f;
    GLRecorder gl;
    mesh->render(VRK_RENDER_TRANSPARENT_NOW, &list);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
    EXPECT_EQ(mesh->vertexColors[0].a, 1.0f);
}

TEST_F(MeshRender, BehindAReflectionTransparentRangesAreDrawnWithoutBlending)
{
    first->transparency = second->transparency = 0.5f;
    addReflection(first);
    GLRecorder gl;
    mesh->render(VRK_RENDER_TRANSPARENT_NOW, &list);
    EXPECT_EQ(gl.countExact("glEnable(GL_BLEND)"), 2); // the pass and the reflection; not the second range
    EXPECT_FALSE(vrkIsEnabled(VRK_BLEND));
    EXPECT_TRUE(pixelIs(20, 40, {0, 255, 0, 255}, 2));
}

TEST_F(MeshRender, TransparentPassTakesANullTexture)
{
    delete first->firstTexture;
    first->firstTexture = nullptr;
    first->transparency = 0.5f;
    GLRecorder gl;
    mesh->render(VRK_RENDER_TRANSPARENT_NOW, &list);
    EXPECT_EQ(gl.countExact("glBindTexture(GL_TEXTURE_2D, 0)"), 1);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
}

TEST_F(MeshRender, EffectRepeatsOpaqueRangesOnTheirOwnSurface)
{
    first->transparency = 0.5f; // not skipped here
    second->firstTexture->environment = VRK_DECAL;
    GLRecorder gl;
    EXPECT_EQ(mesh->render(VRK_RENDER_EFFECT, &list), 0);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glEnable(GL_BLEND)", "glDepthFunc(GL_EQUAL)", "glDepthMask(GL_FALSE)",
                     "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)", "glDisable(GL_BLEND)",
                     "glDepthFunc(GL_LEQUAL)", "glDepthMask(GL_TRUE)"}));
}

TEST_F(MeshRender, EffectAddsToWhatIsDrawn)
{
    for (int i = 0; i < 4; ++i)
        mesh->vertexColors[i] = {0.4f, 0.4f, 0.4f, 1};
    mesh->render(VRK_RENDER_SOLID, &list);
    vrkBlendFunc(VRK_ONE, VRK_ONE);
    mesh->render(VRK_RENDER_EFFECT, &list);
    EXPECT_TRUE(pixelIs(40, 20, {0, 204, 0, 255}, 6));
}

static const std::string drawOne = "glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, ptr)";

TEST_F(MeshRender, StyleFlagsActOnTheTransparentPassToo)
{
    first->transparency = 0.5f;
    GLRecorder gl;
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_FLAT | VRK_RENDER_NOTEXTURE | VRK_RENDER_TWOSIDED,
                 &list);
    const std::string blend = "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)";
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glEnable(GL_BLEND)", blend, "glShadeModel(GL_FLAT)", "glDisable(GL_TEXTURE_2D)",
                     "glDisable(GL_CULL_FACE)", blend, "glDepthFunc(GL_LEQUAL)", drawOne,
                     "glDepthFunc(GL_LEQUAL)", "glEnable(GL_CULL_FACE)",
                     // The opaque range is passed over with its culling switched.
                     "glDisable(GL_CULL_FACE)", "glEnable(GL_CULL_FACE)", "glShadeModel(GL_SMOOTH)",
                     "glEnable(GL_TEXTURE_2D)"}));
}

TEST_F(MeshRender, StyleFlagsActOnTheEffectPassToo)
{
    second->firstTexture->environment = VRK_DECAL;
    GLRecorder gl;
    mesh->render(VRK_RENDER_EFFECT | VRK_RENDER_FLAT | VRK_RENDER_NOTEXTURE | VRK_RENDER_TWOSIDED, &list);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glEnable(GL_BLEND)", "glDepthFunc(GL_EQUAL)", "glDepthMask(GL_FALSE)",
                     "glShadeModel(GL_FLAT)", "glDisable(GL_TEXTURE_2D)", "glDisable(GL_CULL_FACE)", drawOne,
                     "glEnable(GL_CULL_FACE)", "glDisable(GL_CULL_FACE)", "glEnable(GL_CULL_FACE)",
                     "glShadeModel(GL_SMOOTH)", "glEnable(GL_TEXTURE_2D)", "glDisable(GL_BLEND)",
                     "glDepthFunc(GL_LEQUAL)", "glDepthMask(GL_TRUE)"}));
}

TEST_F(MeshRender, TransparentRangesComeAsWireOrCornerByCorner)
{
    first->transparency = second->transparency = 0.5f;
    addReflection(first);
    addReflection(second);
    second->wire = 1;
    GLRecorder gl;
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_WIRE, &list);
    EXPECT_EQ(gl.only({"glBegin", "glDrawElements"}), (Calls{"glBegin(GL_LINES)", "glBegin(GL_LINES)"}));
    gl.clear();
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_BASIC, &list);
    // Faces and reflection of the first; lines alone of the second.
    EXPECT_EQ(gl.only({"glBegin", "glDrawElements"}),
              (Calls{"glBegin(GL_TRIANGLES)", "glBegin(GL_TRIANGLES)", "glBegin(GL_LINES)"}));
}

TEST_F(MeshRender, EffectComesAsWireOrCornerByCornerWithoutReflection)
{
    addReflection(first);
    second->wire = 1;
    GLRecorder gl;
    mesh->render(VRK_RENDER_EFFECT | VRK_RENDER_BASIC, &list);
    EXPECT_EQ(gl.only({"glBegin", "glDrawElements"}), (Calls{"glBegin(GL_TRIANGLES)", "glBegin(GL_LINES)"}));
    EXPECT_EQ(gl.count("glBindTexture"), 2);
    gl.clear();
    mesh->render(VRK_RENDER_EFFECT | VRK_RENDER_WIRE, &list);
    EXPECT_EQ(gl.only({"glBegin", "glDrawElements"}), (Calls{"glBegin(GL_LINES)", "glBegin(GL_LINES)"}));
}

TEST_F(MeshRender, EffectWithoutTextureTakesTheOneThatIsBound)
{
    for (Material* material : {first, second})
    {
        delete material->firstTexture;
        material->firstTexture = nullptr;
    }
    GLRecorder gl;
    mesh->render(VRK_RENDER_EFFECT, &list);
    EXPECT_EQ(gl.count("glBindTexture"), 0);
    EXPECT_EQ(gl.count("glDrawElements"), 2);
    EXPECT_EQ(gl.only({"glEnable", "glDisable"}), (Calls{"glEnable(GL_BLEND)", "glDisable(GL_BLEND)"}));
}

// Behind a range without texture the others of the pass are textured, even when the flags say no.
TEST_F(MeshRender, ARangeWithoutTextureSwitchesTexturingOnBehindIt)
{
    delete first->firstTexture;
    first->firstTexture = nullptr;
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_NOTEXTURE, &list);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glDisable(GL_BLEND)", "glDisable(GL_TEXTURE_2D)", "glDisable(GL_TEXTURE_2D)", drawOne,
                     "glEnable(GL_TEXTURE_2D)", drawOne, "glEnable(GL_TEXTURE_2D)"}));
}

TEST_F(MeshRender, ListsHoldTheRangesAndNotTheStyle)
{
    second->transparency = 0.5f;
    mesh->createDisplayList();
    const int style = VRK_RENDER_COMPILE_LIST | VRK_RENDER_FLAT | VRK_RENDER_NOTEXTURE;
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | style, &list);
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glDisable(GL_BLEND)", "glShadeModel(GL_FLAT)", "glDisable(GL_TEXTURE_2D)",
                     "glNewList(" + std::to_string(mesh->displayList) + ", GL_COMPILE)", drawOne,
                     "glEndList()", "glShadeModel(GL_SMOOTH)", "glEnable(GL_TEXTURE_2D)"}));
    gl.clear();
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | style, &list);
    const std::string blend = "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)";
    EXPECT_EQ(stateAnd(gl, "glDrawElements"),
              (Calls{"glEnable(GL_BLEND)", blend, "glShadeModel(GL_FLAT)", "glDisable(GL_TEXTURE_2D)",
                     "glNewList(" + std::to_string(mesh->transparentDisplayList) + ", GL_COMPILE)", blend,
                     "glDepthFunc(GL_LEQUAL)", drawOne, "glDepthFunc(GL_LEQUAL)", "glEndList()",
                     "glShadeModel(GL_SMOOTH)", "glEnable(GL_TEXTURE_2D)"}));
    gl.clear();
    mesh->render(VRK_RENDER_EFFECT | VRK_RENDER_COMPILE_LIST, &list); // compiles none
    EXPECT_EQ(gl.count("glNewList"), 0);
}

TEST_F(MeshRender, ListsAreCompiledAndCalled)
{
    ASSERT_EQ(mesh->createDisplayList(), 0);
    ASSERT_NE(mesh->displayList, 0u);
    ASSERT_NE(mesh->transparentDisplayList, 0u);
    first->transparency = 0.5f;

    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_COMPILE_LIST, &list);
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_COMPILE_LIST, &list);
    EXPECT_EQ(gl.countExact("glNewList(" + std::to_string(mesh->displayList) + ", GL_COMPILE)"), 1);
    EXPECT_EQ(gl.countExact("glNewList(" + std::to_string(mesh->transparentDisplayList) + ", GL_COMPILE)"),
              1);
    EXPECT_EQ(gl.count("glEndList"), 2);
    EXPECT_EQ(drawnPixels(), 0);

    gl.clear();
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_CALL_LIST, &list);
    EXPECT_EQ(gl.count("glCallList"), 1);
    EXPECT_EQ(gl.count("glDrawElements"), 0);
    EXPECT_TRUE(pixelIs(20, 40, {0, 255, 0, 255}, 2));
    EXPECT_TRUE(pixelIs(40, 20, {0, 0, 0, 255}));
    mesh->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_CALL_LIST, &list);
    EXPECT_TRUE(pixelIs(40, 20, {0, 128, 0, 255}, 3));

    gl.clear();
    mesh->render(VRK_RENDER_EFFECT | VRK_RENDER_CALL_LIST, &list);
    EXPECT_EQ(gl.countExact("glCallList(" + std::to_string(mesh->displayList) + ")"), 1);
}

TEST_F(MeshRender, DestroyingListsDeletesBoth)
{
    mesh->createDisplayList();
    const uint32_t solid = mesh->displayList;
    const uint32_t transparent = mesh->transparentDisplayList;
    GLRecorder gl;
    mesh->destroyDisplayList();
    EXPECT_EQ(gl.calls(), (Calls{"glDeleteLists(" + std::to_string(solid) + ", 1)",
                                 "glDeleteLists(" + std::to_string(transparent) + ", 1)"}));
    EXPECT_EQ(mesh->displayList, 0u);
    EXPECT_EQ(mesh->transparentDisplayList, 0u);
    gl.clear();
    mesh->destroyDisplayList();
    EXPECT_TRUE(gl.calls().empty());
}

TEST_F(MeshRender, WithoutListNamesTheFailureIsReportedAtOnce)
{
    GLRecorder gl(GLRecorder::swallow);
    EXPECT_EQ(mesh->createDisplayList(), 43);
    EXPECT_EQ(gl.count("glGenLists"), 1);
    EXPECT_TRUE(logged("Cannot create displaylists, displaylists are all used (possible OpenGL error)!"));
}

TEST_F(MeshRender, PassesRunInOrderUnderTheirBits)
{
    first->transparency = 0.5f;
    GLRecorder gl;
    EXPECT_EQ(mesh->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT, &list), 0);
    EXPECT_EQ(gl.only({"glEnable", "glDisable"}), (Calls{"glDisable(GL_BLEND)", "glEnable(GL_BLEND)",
                                                         "glEnable(GL_BLEND)", "glDisable(GL_BLEND)"}));
    gl.clear();
    EXPECT_EQ(mesh->render(0, &list), 0);
    EXPECT_TRUE(gl.calls().empty());
}

TEST_F(MeshRender, HiddenMeshesAndSilentRasterizersDrawNothing)
{
    GLRecorder gl;
    mesh->visible = 0;
    EXPECT_EQ(mesh->render(VRK_RENDER_SOLID, &list), 0);
    mesh->visible = 1;
    vrkSelectRasterizer(7);
    EXPECT_EQ(mesh->render(VRK_RENDER_SOLID, &list), 0);
    EXPECT_EQ(mesh->createDisplayList(), 0);
    vrkSelectRasterizer(0);
    EXPECT_TRUE(gl.calls().empty());
    EXPECT_EQ(mesh->displayList, 0u);
}

TEST_F(MeshRender, UnknownMaterialsAndANullListAreSkipped)
{
    mesh->faceMaterials[0].materialIndex = 99;
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT, &list);
    EXPECT_EQ(gl.count("glDrawElements"), 2); // the second range, solid and effect
    gl.clear();
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT, nullptr);
    EXPECT_EQ(gl.count("glDrawElements"), 0);
}

TEST_F(MeshRender, QueuedPassKeepsTransparentRangesForLater)
{
    second->transparency = 0.5f;
    vrkInitTransparentPlaneStack(10);
    vrkTranslate(0, 0, -3);
    {
        GLRecorder gl;
        EXPECT_EQ(mesh->render(VRK_RENDER_TRANSPARENT | VRK_RENDER_WIRE | VRK_RENDER_NOTEXTURE, &list), 0);
        EXPECT_EQ(gl.calls(), Calls{"glGetFloatv(GL_MODELVIEW_MATRIX, ptr)"}); // no state, no drawing
    }
    EXPECT_EQ(mesh->vertexColors[3].a, 0.5f);
    EXPECT_EQ(mesh->vertexColors[1].a, 1.0f); // of the opaque range only
    vrkInitMatrix();
    Camera camera;
    GLRecorder gl;
    vrkDrawTransparentPlanes(&camera);
    EXPECT_EQ(gl.count("glBegin"), 1);
    EXPECT_EQ(gl.countExact("glLoadMatrixf({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -3, 1})"), 1);
    EXPECT_EQ(gl.countExact("glBindTexture(GL_TEXTURE_2D, " +
                            std::to_string(second->firstTexture->textureIDs[0]) + ")"),
              1);
    vrkUnInitTransparentPlaneStack();
}

TEST_F(MeshRender, QueuedPassTakesAlphaTexturesWhole)
{
    first->firstTexture->environment = VRK_DECAL;
    first->transparency = 1.0f;
    mesh->vertexColors[1].a = 0.25f;
    vrkInitTransparentPlaneStack(10);
    EXPECT_EQ(mesh->renderTransparent(0, &list), 0);
    EXPECT_EQ(mesh->vertexColors[1].a, 1.0f);
    vrkUnInitTransparentPlaneStack();
    releaseRanges();
    GLRecorder gl;
    EXPECT_EQ(mesh->renderTransparent(0, &list), 0);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(MeshRender, QueuedPassRunsBetweenTheOthers)
{
    second->transparency = 0.5f;
    GLRecorder gl(GLRecorder::swallow);
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_TRANSPARENT_NOW, &list);
    const Calls calls = gl.only({"glDrawElements", "glGetFloatv"});
    ASSERT_EQ(calls.size(), 3u) << gl.text();
    EXPECT_EQ(calls[1], "glGetFloatv(GL_MODELVIEW_MATRIX, ptr)");
}
