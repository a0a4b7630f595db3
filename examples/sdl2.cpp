// The smallest host with SDL2: a .3DS file in a window, played in a loop.
//
// Compiled and run in the repository's root, behind a build in build/release:
//
//   g++ examples/sdl2.cpp -o sdl2 -Iinclude -Lbuild/release/lib -lvornik -lGL $(sdl2-config --cflags --libs)
//   LD_LIBRARY_PATH=build/release/lib ./sdl2 scene.3ds [folder of its images [frames to show]]

#include <cstdio>
#include <cstdlib>

#include <GL/gl.h>
#include <SDL.h>
#include <SDL_syswm.h>

#include "vornik/vornik.h"

// No SDL_WINDOW_OPENGL: the engine makes the context itself, on the window that it is handed.
static bool openWindow(int width, int height, VRKNativeWindow* native)
{
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11");
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        return false;
    SDL_Window* window = SDL_CreateWindow("Vornik", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width,
                                          height, SDL_WINDOW_RESIZABLE);
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!window || !SDL_GetWindowWMInfo(window, &info))
        return false;
    *native = {info.info.x11.display, info.info.x11.window, 0, 0};
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
    SDL_Event event;
    while (SDL_PollEvent(&event))
    {
        if (event.type == SDL_QUIT || (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE))
            return false;
        if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED)
            setPixels(event.window.data1, event.window.data2, radius, fov);
    }
    return true;
}

int main(int argc, char** argv)
{
    VRKNativeWindow native;
    if (argc < 2 || !openWindow(800, 600, &native))
    {
        std::fprintf(stderr, "usage: sdl2 scene.3ds [images [frames]], on an X11 display\n");
        return 1;
    }
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
        SDL_Delay(16);
    }
    vrkUnInitTransparentPlaneStack();
    return 0; // window and context go with the process
}
