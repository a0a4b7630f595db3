// The smallest host with plain X11: a .3DS file in a window, played in a loop.
//
// Compiled and run in the repository's root, behind a build in build/release:
//
//   g++ examples/x11.cpp -o x11 -Iinclude -Lbuild/release/lib -lvornik -lGL -lX11
//   LD_LIBRARY_PATH=build/release/lib ./x11 scene.3ds [folder of its images [frames to show]]

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

#include <GL/gl.h>

#include "vornik/vornik.h"

// Last: Xlib defines plain words as macros.
#include <X11/Xlib.h>
#include <X11/keysym.h>

static Display* display;
static Window window;
static Atom closeWish; // a window manager's, when the user closes the window

static bool openWindow(int width, int height)
{
    display = XOpenDisplay(nullptr);
    if (!display)
        return false;
    window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                                 static_cast<unsigned>(height), 0, 0, 0);
    XStoreName(display, window, "Vornik");
    XSelectInput(display, window, KeyPressMask | StructureNotifyMask);
    closeWish = XInternAtom(display, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(display, window, &closeWish, 1);
    XMapWindow(display, window);
    return true;
}

static OGroup* loadScene(Scene* scene, const char* file, const char* images)
{
    const int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_KEYFRAMES |
                      LOAD_SMOOTHING | LOAD_LIGHTING | LOAD_TEXTURE_32BIT | LOAD_TOLERANT;
    return scene->createOGroup(file, flags, images, 0, nullptr, nullptr);
}

// What a file may lack: a camera and a lamp. The group owns both from here on.
static void completeScene(OGroup* group, float radius)
{
    if (group->cameraCount == 0)
    {
        Camera* camera = new Camera;
        camera->moveTo(0.0f, -2.5f * radius, radius, 0.0f, 0.0f, 0.0f);
        camera->fov = 50.0f;
        group->addCamera(camera);
    }
    if (group->lightCount == 0)
    {
        Light* lamp = new Light;
        lamp->location = group->cameras[0]->eye;
        lamp->color = {1.0f, 1.0f, 1.0f, 1.0f};
        lamp->innerRange = lamp->outerRange = 100.0f * radius;
        group->addLight(lamp);
        group->calcDynamicLights(VRK_LIGHT_CLEAR);
    }
}

// How far the scene reaches from the origin.
static float radiusOf(const OGroup* group)
{
    float radius = 1e-3f;
    for (int i = 0; i < group->meshCount; ++i)
    {
        const float reach = float(group->meshes[i]->position) + group->meshes[i]->radius;
        radius = reach > radius ? reach : radius;
    }
    return radius;
}

static void setPixels(int width, int height, float radius, float fov)
{
    glViewport(0, 0, width, height); // the pixels are the host's affair
    Viewport viewport;
    viewport.width = static_cast<float>(width);
    viewport.height = static_cast<float>(height);
    viewport.aspect = viewport.width / viewport.height;
    viewport.nearClip = radius / 5000.0f;
    viewport.farClip = radius * 10.0f;
    viewport.fov = fov;
    vrkSetViewport(&viewport);
}

// @return false when the user wants to leave
static bool handleEvents(float radius, float fov)
{
    while (XPending(display) > 0)
    {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == KeyPress && XLookupKeysym(&event.xkey, 0) == XK_Escape)
            return false;
        if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == closeWish)
            return false;
        if (event.type == ConfigureNotify)
            setPixels(event.xconfigure.width, event.xconfigure.height, radius, fov);
    }
    return true;
}

int main(int argc, char** argv)
{
    if (argc < 2 || !openWindow(800, 600))
    {
        std::fprintf(stderr, "usage: x11 scene.3ds [images [frames]], on an X11 display\n");
        return 1;
    }
    const VRKNativeWindow native = {display, window, 0, 0};
    Scene scene;
    OGroup* group =
        initVornik(0, &native) == 0 ? loadScene(&scene, argv[1], argc > 2 ? argv[2] : ".") : nullptr;
    if (!group)
    {
        std::fprintf(stderr, "%s: see VRKERROR.LOG\n", argv[1]);
        return 1;
    }
    const float radius = radiusOf(group);
    completeScene(group, radius);
    scene.camera = group->cameras[0];
    setPixels(800, 600, radius, scene.camera->fov);
    vrkInitTransparentPlaneStack(10000); // grows where that isn't enough

    const int frames = argc > 3 ? std::atoi(argv[3]) : -1;
    for (int frame = 0; frame != frames && handleEvents(radius, scene.camera->fov); ++frame)
    {
        group->setCurrentFrame(frame);
        vrkClear();
        scene.render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_ANIMATE_CAMERA);
        vrkDepthMask(VRK_FALSE); // large faces may come in the wrong order and hide nothing all the same
        vrkDrawTransparentPlanes(scene.camera);
        vrkDepthMask(VRK_TRUE);
        vrkSwapBuffers();
        usleep(16000);
    }
    vrkUnInitTransparentPlaneStack();
    return 0; // window and context go with the process
}
