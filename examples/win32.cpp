// The smallest Win32 host: a .3DS file in a window, played in a loop.
//
// Cross-compiled in the repository's root, behind make windows, and run beside vornik.dll:
//
//   x86_64-w64-mingw32-g++ examples/win32.cpp -static -Iinclude build/windows/libvornik.dll.a -o win32.exe
//   win32.exe scene.3ds [folder of its images [frames to show [rasterizer]]]
//
// Rasterizer 0 is OpenGL, 1 is Direct3D.

#include <cstdio>
#include <cstdlib>

#include <windows.h>

#include "vornik/vornik.h"

static bool leaving = false; // the user wants to

static LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM word, LPARAM more)
{
    if (message == WM_CLOSE || (message == WM_KEYDOWN && word == VK_ESCAPE))
    {
        leaving = true; // the window stays until the engine has let go of it
        return 0;
    }
    return DefWindowProcA(window, message, word, more);
}

static HWND openWindow(int width, int height)
{
    WNDCLASSA kind = {};
    kind.style = CS_OWNDC; // OpenGL wants a device context that stays
    kind.lpfnWndProc = handleMessage;
    kind.hInstance = GetModuleHandleA(nullptr);
    kind.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    kind.lpszClassName = "VornikHost";
    RegisterClassA(&kind);
    RECT frame = {0, 0, width, height};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
    return CreateWindowA(kind.lpszClassName, "Vornik", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                         frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr, kind.hInstance,
                         nullptr);
}

static OGroup* loadScene(Scene* scene, const char* file, const char* images)
{
    const int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_KEYFRAMES |
                      LOAD_SMOOTHING | LOAD_LIGHTING | LOAD_TEXTURE_32BIT | LOAD_TOLERANT;
    return scene->createOGroup(file, flags, images, 0, nullptr, nullptr);
}

// What a file may lack: a camera and a lamp. The group owns both from here on.
static void completeScene(OGroup* group)
{
    float radius = 1.0f;
    for (int i = 0; i < group->meshCount; ++i)
    {
        const float reach = float(group->meshes[i]->position) + group->meshes[i]->radius;
        radius = reach > radius ? reach : radius;
    }
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

// @return false when the user wants to leave
static bool handleMessages()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
    {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return !leaving;
}

int main(int argc, char** argv)
{
    const int rasterizer = argc > 4 ? std::atoi(argv[4]) : 0;
    const HWND window = argc > 1 ? openWindow(800, 600) : nullptr;
    if (!window)
    {
        std::fprintf(stderr, "usage: win32 scene.3ds [images [frames [rasterizer]]]\n");
        return 1;
    }
    Scene scene;
    OGroup* group =
        initVornik(rasterizer, window) == 0 ? loadScene(&scene, argv[1], argc > 2 ? argv[2] : ".") : nullptr;
    if (!group)
    {
        std::fprintf(stderr, "%s: see VRKERROR.LOG\n", argv[1]);
        return 1;
    }
    completeScene(group);
    scene.setCamera(group, 0);

    const int frames = argc > 3 ? std::atoi(argv[3]) : -1;
    for (int frame = 0; frame != frames && handleMessages(); ++frame)
    {
        group->setCurrentFrame(frame);
        vrkClear();
        vrkDXBeginScene(); // these two do nothing on OpenGL
        scene.render(VRK_RENDER_SOLID | VRK_RENDER_ANIMATE_CAMERA);
        scene.render(VRK_RENDER_TRANSPARENT_NOW);
        vrkDXEndScene();
        vrkSwapBuffers();
        Sleep(16);
    }
    vrkUnInit3D();
    return 0;
}
