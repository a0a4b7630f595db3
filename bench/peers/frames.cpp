// Frames beside other libraries and beside a bare program, which makes only the OpenGL calls that the same
// arrays need.
//
// usage: peer_frames [CASE]
//
// Everybody draws the same arrays with the same textures and matrices into a window of 640 by 480 pixels on
// the X display, and shows each frame. Only the opaque faces are drawn, and all is in view, so nobody culls.
// Times are processor time, medians of rounds in which all took turns; what was drawn is told by the pixels
// that differ from the background and by their mean colour.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>

#include <GL/gl.h>

#include "bench/framestage.h"
#include "bench/peers/contest.h"
#include "bench/peers/frames.h"
#include "bench/peers/timing.h"
#include "tests/support/tempfolder.h"
#include "vornik/assets/load3ds.h"
#include "vornik/rasterizer/faces.h"
#include "vornik/scene/renderflags.h"

// Last: Xlib defines plain words as macros.
#include <X11/Xlib.h>

// A window with the engine's context on it.
static bool openWindow()
{
    Display* const display = XOpenDisplay(nullptr);
    if (!display)
        return false;
    const Window window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, frameWidth, frameHeight, 0, 0, 0);
    XMapWindow(display, window);
    XSync(display, False);
    const VRKNativeWindow native = {display, window, 0, 0};
    vrkSelectRasterizer(0);
    vrkInitErrorLog(3);
    return vrkInitViewport(&native, 24, 0, 24, false, 0, true) == 0;
}

namespace
{
/// A group in front of its camera.
struct Shown
{
    std::unique_ptr<OGroup> group;
    Camera* camera = nullptr;
};
} // namespace

// The file of the sample is the one argument that a case may need.
using MakeShown = Shown (*)(const char* sample);

// A group of meshes without images, which get textures of one colour as loaded ones do.
static Shown onStage(int materials, float height, float distance)
{
    static Stage stage(0);
    TList* const list = stage.group->activeTList;
    for (int i = 0; i < materials; ++i)
    {
        Material* const material = new Material;
        material->addDiffuseColor(new Color{0.3f + 0.5f * float(i) / float(materials), 0.6f, 0.4f, 1.0f});
        material->makeTextureFromColor();
        list->addMaterial(material);
    }
    stage.camera.moveTo(0.0f, -distance, height, 0.0f, 0.0f, 0.0f);
    vrkSetFOV(60.0f);
    return {std::move(stage.group), &stage.camera};
}

static void colorVertices(OGroup& group)
{
    for (int i = 0; i < group.meshCount; ++i)
        for (int v = 0; v < group.meshes[i]->vertexCount; ++v)
            group.meshes[i]->vertexColors[v] = {0.5f + 0.5f * float(v % 2), 1.0f, 1.0f, 1.0f};
}

static Shown makeGroundCase(const char*)
{
    Shown shown = onStage(1, 150.0f, 180.0f);
    shown.group->addMesh(makeGround(250, 200, {0.0f, 0.0f, 0.0f}));
    finish(*shown.group->meshes[0], 1);
    colorVertices(*shown.group);
    return shown;
}

static Shown makeBoxCase(const char*)
{
    Shown shown = onStage(20, 350.0f, 450.0f);
    addBoxes(*shown.group, 20);
    colorVertices(*shown.group);
    return shown;
}

static Shown makeSampleCase(const char* sample)
{
    Shown shown = {std::make_unique<OGroup>(), nullptr};
    const std::string folder = std::filesystem::path(sample).parent_path().string() + "/";
    const int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_SMOOTHING |
                      LOAD_TEXTURE_32BIT | LOAD_TOLERANT;
    if (load3ds(sample, shown.group.get(), folder.c_str(), flags, nullptr, nullptr) != 0 ||
        shown.group->cameraCount == 0)
        return {};
    shown.group->calcDynamicLights(0);
    shown.group->applyLights();
    shown.camera = shown.group->cameras[0];
    vrkSetFOV(shown.camera);
    return shown;
}

namespace
{
struct Case
{
    const char* name;
    MakeShown make;
};
const Case cases[] = {{"100,000 triangles in one mesh", makeGroundCase},
                      {"4,000 small meshes of 12 triangles", makeBoxCase},
                      {"the sample", makeSampleCase}};
} // namespace

static void look(const Shown& shown)
{
    vrkInitMatrix();
    vrkLookWithCamera(shown.camera);
}

static DrawFrame drawWithVornik(Shown shown, bool kept)
{
    int flags = VRK_RENDER_SOLID;
    if (kept)
    {
        for (int i = 0; i < shown.group->meshCount; ++i)
            shown.group->meshes[i]->createDisplayList();
        look(shown);
        shown.group->render(flags | VRK_RENDER_COMPILE_LIST, shown.camera);
        flags |= VRK_RENDER_CALL_LIST;
    }
    const auto group = std::shared_ptr<OGroup>(std::move(shown.group));
    Camera* const camera = shown.camera;
    return [=](const std::function<void()>& beforeSwap)
    {
        vrkClear();
        vrkInitMatrix();
        vrkLookWithCamera(camera);
        group->render(flags, camera);
        if (beforeSwap)
            beforeSwap();
        vrkSwapBuffers();
    };
}

// Only the bare program's own calls from here on.

static std::vector<GLuint> uploadImages(const FlatScene& scene)
{
    std::vector<GLuint> names(scene.images.size());
    glGenTextures(GLsizei(names.size()), names.data());
    for (size_t i = 0; i < names.size(); ++i)
    {
        const FlatImage& image = scene.images[i];
        glBindTexture(GL_TEXTURE_2D, names[i]);
        glTexParameteri(GL_TEXTURE_2D, 0x8191, image.mipmap); // GL_GENERATE_MIPMAP
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width, image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     image.rgba.data());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        image.mipmap ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
    }
    return names;
}

static void drawBareMesh(const FlatMesh& mesh, const std::vector<GLuint>& textures, GLuint* bound)
{
    glColorPointer(4, GL_FLOAT, 0, mesh.colors.data());
    glTexCoordPointer(2, GL_FLOAT, 0, mesh.coords.data());
    glVertexPointer(3, GL_FLOAT, 0, mesh.vertices.data());
    for (const FlatRange& range : mesh.ranges)
    {
        const GLuint texture = textures[size_t(range.image)];
        if (texture != *bound)
            glBindTexture(GL_TEXTURE_2D, texture);
        *bound = texture;
        if (range.twoSided)
            glDisable(GL_CULL_FACE);
        glDrawElements(GL_TRIANGLES, (range.last - range.first + 1) * 3, GL_UNSIGNED_SHORT,
                       &mesh.faces[size_t(range.first)]);
        if (range.twoSided)
            glEnable(GL_CULL_FACE);
    }
}

static GLuint compileBare(const FlatScene& scene, const std::vector<GLuint>& textures)
{
    const GLuint lists = glGenLists(GLsizei(scene.meshes.size()));
    for (size_t i = 0; i < scene.meshes.size(); ++i)
    {
        GLuint bound = 0;
        glNewList(lists + GLuint(i), GL_COMPILE);
        drawBareMesh(scene.meshes[i], textures, &bound);
        glEndList();
    }
    return lists;
}

static DrawFrame drawBare(const FlatScene& scene, bool kept)
{
    const std::vector<GLuint> textures = uploadImages(scene);
    glDisableClientState(GL_NORMAL_ARRAY);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(scene.projection);
    glMatrixMode(GL_MODELVIEW);
    const GLuint lists = kept ? compileBare(scene, textures) : 0;
    return [&scene, textures, lists](const std::function<void()>& beforeSwap)
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glLoadMatrixf(scene.view);
        GLuint bound = 0;
        for (size_t i = 0; i < scene.meshes.size(); ++i)
        {
            const FlatMesh& mesh = scene.meshes[i];
            glPushMatrix();
            glTranslatef(mesh.position.x, mesh.position.y, mesh.position.z);
            if (lists)
                glCallList(lists + GLuint(i));
            else
                drawBareMesh(mesh, textures, &bound);
            glPopMatrix();
        }
        if (beforeSwap)
            beforeSwap();
        vrkSwapBuffers(); // the window system's call
    };
}

// What stands in the back buffer.
static std::string pictureNote()
{
    std::vector<uint8_t> pixels(size_t(frameWidth) * frameHeight * 4);
    glReadPixels(0, 0, frameWidth, frameHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    long covered = 0, sums[3] = {};
    for (size_t i = 0; i < pixels.size(); i += 4)
    {
        covered += pixels[i] || pixels[i + 1] || pixels[i + 2];
        for (size_t c = 0; c < 3; ++c)
            sums[c] += pixels[i + c];
    }
    char text[128];
    const double count = covered > 0 ? double(covered) : 1.0;
    std::snprintf(text, sizeof text, "%ld pixels of %.0f %.0f %.0f", covered, double(sums[0]) / count,
                  double(sums[1]) / count, double(sums[2]) / count);
    return text;
}

static int play(const DrawFrame& draw, double leastSeconds)
{
    if (!draw)
        return 1;
    std::string note;
    for (int i = 0; i < 5; ++i)
        draw({});
    draw([&] { note = pictureNote(); });
    return answerRounds(
        [&]
        {
            int frames = 0;
            const double begin = processorSeconds();
            double seconds = 0;
            for (; frames == 0 || seconds < leastSeconds; ++frames)
            {
                draw({});
                seconds = processorSeconds() - begin;
            }
            return Round{seconds / frames, note};
        });
}

namespace
{
enum Who
{
    whoVornik,
    whoBare,
    whoIrrlicht,
    whoOpenSceneGraph
};

struct Entry
{
    const char* name;
    Who who;
    bool kept;
};

const Entry entries[] = {
    {"Vornik", whoVornik, false},
    {"bare program", whoBare, false},
#ifdef HAS_IRRLICHT
    {"Irrlicht, arrays", whoIrrlicht, false},
#endif
#ifdef HAS_OPENSCENEGRAPH
    {"OpenSceneGraph, arrays", whoOpenSceneGraph, false},
#endif
    {"Vornik, display lists", whoVornik, true},
    {"bare program, display lists", whoBare, true},
#ifdef HAS_IRRLICHT
    {"Irrlicht, static buffers", whoIrrlicht, true},
#endif
#ifdef HAS_OPENSCENEGRAPH
    {"OpenSceneGraph, display lists", whoOpenSceneGraph, true},
#endif
};
} // namespace

// The contestant's process. @param flat  file of the case's flat scene
static int contend(const Entry& entry, const Case& chosen, const char* flat, const char* sample)
{
    const double leastSeconds = 0.1;
    if (entry.who == whoVornik)
    {
        if (!openWindow())
            return 1;
        return play(drawWithVornik(chosen.make(sample), entry.kept), leastSeconds);
    }
    static const FlatScene scene = readFlatScene(flat);
    if (entry.who == whoBare)
        return openWindow() ? play(drawBare(scene, entry.kept), leastSeconds) : 1;
#ifdef HAS_IRRLICHT
    if (entry.who == whoIrrlicht)
        return play(drawWithIrrlicht(scene, entry.kept), leastSeconds);
#endif
#ifdef HAS_OPENSCENEGRAPH
    if (entry.who == whoOpenSceneGraph)
        return play(drawWithOpenSceneGraph(scene, entry.kept), leastSeconds);
#endif
    return 1;
}

static int prepare(const Case& chosen, const char* flat, const char* sample)
{
    if (!openWindow())
        return 1;
    const Shown shown = chosen.make(sample);
    if (!shown.group)
        return 1;
    look(shown);
    return writeFlatScene(flatten(*shown.group), flat) ? 0 : 1;
}

static std::string ownPath()
{
    return std::filesystem::read_symlink("/proc/self/exe").string();
}

static void compare(size_t number, const std::string& sample)
{
    const TempFolder folder;
    const std::string flat = folder.path("scene");
    const std::string which = std::to_string(number);
    std::printf("\n%s\n", cases[number].name);
    if (std::system((ownPath() + " prepare " + which + " " + flat + " " + sample).c_str()) != 0)
    {
        std::puts("  can't be made here");
        return;
    }
    std::vector<Contestant> contestants;
    for (size_t i = 0; i < std::size(entries); ++i)
        contestants.push_back({entries[i].name, {"contend", std::to_string(i), which, flat, sample}});
    std::vector<Score> scores = runContest(contestants, 3, 5);
    const auto half = ptrdiff_t(scores.size() / 2);
    printScores({scores.begin(), scores.begin() + half});
    printScores({scores.begin() + half, scores.end()});
}

// One heap policy and one thread for all: with the defaults the driver's large blocks come and go with the
// heap's end in some programs and not in others, which chance decides.
static void settleEnvironment()
{
    setenv("MALLOC_TRIM_THRESHOLD_", "2000000000", 1);
    setenv("MALLOC_MMAP_THRESHOLD_", "1000000000", 1);
    setenv("MALLOC_TOP_PAD_", "67108864", 1);
    setenv("LP_NUM_THREADS", "0", 1);
    setenv("vblank_mode", "0", 1);
}

static bool hasDisplay()
{
    Display* const display = XOpenDisplay(nullptr);
    if (display)
        XCloseDisplay(display);
    return display != nullptr;
}

int main(int argc, char** argv)
{
    if (argc == 6 && std::strcmp(argv[1], "contend") == 0)
        return contend(entries[std::atoi(argv[2])], cases[std::atoi(argv[3])], argv[4], argv[5]);
    if (argc == 5 && std::strcmp(argv[1], "prepare") == 0)
        return prepare(cases[std::atoi(argv[2])], argv[3], argv[4]);
    if (argc > 2)
    {
        std::fprintf(stderr,
                     "usage: peer_frames [CASE]   part of a case's name: triangles in, meshes, sample\n");
        return 2;
    }
#ifndef HAS_IRRLICHT
    std::puts("Irrlicht was not there to build with (libirrlicht-dev)");
#endif
#ifndef HAS_OPENSCENEGRAPH
    std::puts("OpenSceneGraph was not there to build with (libopenscenegraph-dev)");
#endif
    settleEnvironment();
    if (!hasDisplay())
    {
        std::puts("Frames need an X display: xvfb-run -a build/release/bin/peer_frames");
        return 0;
    }
    const TempFolder folder;
    const std::string maker = std::filesystem::path(ownPath()).replace_filename("make_sample").string();
    for (size_t i = 0; i < std::size(cases); ++i)
        if (argc < 2 || std::strstr(cases[i].name, argv[1]))
        {
            if (cases[i].make == makeSampleCase)
                (void)!std::system((maker + " " + folder.root() + " > /dev/null").c_str());
            compare(i, folder.path("harbour.3ds"));
        }
    return 0;
}
