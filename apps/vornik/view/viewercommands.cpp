// What the keys do.

#include "apps/vornik/view/viewer.h"

#include <cstdio>
#include <filesystem>

void Viewer::say(const std::string& line)
{
    messages.say(line, Window::seconds(), messageColumns(width));
    console.addText((line + "\n").c_str());
}

void Viewer::move(Movement movement)
{
    if (!stage.group)
        return say("there is no scene yet: drop a .3DS file on the window");
    const std::string problem = pilot.setMovement(movement, stage);
    if (!problem.empty())
        say(problem);
}

// From 1; one past the last comes around to the first, and so does the other end.
void Viewer::watch(int camera)
{
    const int cameras = stage.group ? stage.group->cameraCount : 0;
    if (cameras == 0)
        return say("the scene has no cameras");
    pilot.setCamera(camera < 1 ? cameras : camera, stage);
}

void Viewer::toggle(int flag, const char* name)
{
    options.flags ^= flag;
    say(std::string(name) + (options.flags & flag ? ": on" : ": off"));
    if (options.flags & VRK_RENDER_CALL_LIST)
        compileLists();
}

// A list holds what a pass draws now, so every change of style records it anew.
void Viewer::compileLists()
{
    if (!stage.group)
        return;
    View view = pilot.view(stage);
    const int style = options.flags & ~(VRK_RENDER_CALL_LIST | VRK_RENDER_CULL);
    for (const int pass : {VRK_RENDER_SOLID, VRK_RENDER_TRANSPARENT_NOW})
        stage.group->render(style | pass | VRK_RENDER_COMPILE_LIST, &view.camera);
}

void Viewer::toggleLists()
{
    toggle(VRK_RENDER_CALL_LIST, "display lists");
}

void Viewer::toggleLeaves()
{
    if (leaves.boxes() > 0 || !stage.group)
        return leaves.clear();
    if (!stage.group->octree)
        stage.group->constructOctree();
    leaves.build(stage.group->octree);
    say("octree: " + std::to_string(leaves.boxes()) + " leaves with faces");
}

void Viewer::nextTransparency()
{
    static const struct
    {
        Transparency next;
        const char* text;
    } order[] = {{Transparency::immediate, "transparent faces: mesh by mesh"},
                 {Transparency::none, "transparent faces: left out"},
                 {Transparency::sorted, "transparent faces: sorted"}};
    const auto& chosen = order[static_cast<int>(options.transparency)];
    options.transparency = chosen.next;
    say(chosen.text);
}

// The engine takes the first free name and doesn't tell which.
static std::string freeShotName()
{
    char name[32];
    for (int number = 0; number < 1000; ++number)
    {
        std::snprintf(name, sizeof name, "Shot%04d.jpg", number);
        std::error_code failed;
        if (!std::filesystem::exists(name, failed))
            return name;
    }
    return "";
}

// Of the last picture without what lies over it.
void Viewer::takeScreenShot()
{
    const std::string name = freeShotName();
    drawScene();
    vrkScreenShot();
    std::error_code failed;
    const bool made = !name.empty() && std::filesystem::exists(name, failed);
    say(made ? "saved " + name : "can't save a screen shot in this folder");
}

void Viewer::tellPlace()
{
    const View view = pilot.view(stage);
    const Vertex3D &eye = view.camera.eye, &target = view.camera.target;
    char line[200];
    std::snprintf(line, sizeof line, "eye %g %g %g  target %g %g %g  fov %g", static_cast<double>(eye.x),
                  static_cast<double>(eye.y), static_cast<double>(eye.z), static_cast<double>(target.x),
                  static_cast<double>(target.y), static_cast<double>(target.z),
                  static_cast<double>(view.camera.fov));
    say(line);
    std::printf("%s\n", line);
    std::fflush(stdout);
}

void Viewer::closeTopmost()
{
    if (showConsole)
        openConsole(false);
    else if (showHelp)
        showHelp = false;
    else
        running = false;
}

void Viewer::execute(Command command)
{
    switch (command)
    {
    case Command::none:
        break;
    case Command::console:
        openConsole(!showConsole);
        break;
    case Command::help:
        showHelp = !showHelp;
        helpWasSeen = true;
        break;
    case Command::close:
        closeTopmost();
        break;
    case Command::orbit:
        move(Movement::orbit);
        break;
    case Command::fly:
        move(Movement::fly);
        break;
    case Command::walk:
        move(Movement::walk);
        break;
    case Command::frameAll:
        pilot.frameAll(stage);
        break;
    case Command::nextCamera:
        watch(pilot.camera() + 1);
        break;
    case Command::previousCamera:
        watch(pilot.camera() - 1);
        break;
    case Command::freeCamera:
        pilot.setCamera(0, stage);
        break;
    case Command::play:
        playback.togglePlaying();
        break;
    case Command::stepForward:
        playback.step(1);
        break;
    case Command::stepBack:
        playback.step(-1);
        break;
    case Command::rewind:
        playback.rewind();
        break;
    case Command::faster:
        playback.faster();
        break;
    case Command::slower:
        playback.slower();
        break;
    case Command::taller:
        pilot.resizeWalker(1.25f);
        break;
    case Command::shorter:
        pilot.resizeWalker(0.8f);
        break;
    case Command::wire:
        toggle(VRK_RENDER_WIRE, "edges only");
        break;
    case Command::flat:
        toggle(VRK_RENDER_FLAT, "flat faces");
        break;
    case Command::untextured:
        toggle(VRK_RENDER_NOTEXTURE, "without images");
        break;
    case Command::twoSided:
        toggle(VRK_RENDER_TWOSIDED, "faces from behind");
        break;
    case Command::cull:
        toggle(VRK_RENDER_CULL, "meshes outside the view are skipped");
        break;
    case Command::transparency:
        nextTransparency();
        break;
    case Command::lists:
        toggleLists();
        break;
    case Command::leaves:
        toggleLeaves();
        break;
    case Command::figures:
        showFigures = !showFigures;
        break;
    case Command::fullScreen:
        window.toggleFullScreen();
        break;
    case Command::screenShot:
        takeScreenShot();
        break;
    case Command::tellPlace:
        tellPlace();
        break;
    }
}
