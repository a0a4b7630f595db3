// The console of the viewer: what is typed into it, what it may reach, and what its commands change.

#include "apps/vornik/view/viewer.h"

#include <algorithm>
#include <cmath>

#include "apps/vornik/consolewords.h"

Viewer* Viewer::only = nullptr;

// The console calls plain functions; they act on the one viewer of the process.
struct ViewerFunctions
{
    static void orbit() { Viewer::only->move(Movement::orbit); }
    static void fly() { Viewer::only->move(Movement::fly); }
    static void walk() { Viewer::only->move(Movement::walk); }
    static void all() { Viewer::only->execute(Command::frameAll); }
    static void play() { Viewer::only->execute(Command::play); }
    static void shot() { Viewer::only->execute(Command::screenShot); }
    static void where() { Viewer::only->execute(Command::tellPlace); }

    static int frames() { return Viewer::only->playback.frames(); }

    static int camera(int number)
    {
        Viewer::only->pilot.setCamera(number, Viewer::only->stage);
        return Viewer::only->pilot.camera();
    }

    static int style(int flag, int wanted)
    {
        int& flags = Viewer::only->options.flags;
        flags = wanted ? flags | flag : flags & ~flag;
        return wanted != 0;
    }
    static int wire(int on) { return style(VRK_RENDER_WIRE, on); }
    static int flat(int on) { return style(VRK_RENDER_FLAT, on); }
    static int images(int on) { return 1 - style(VRK_RENDER_NOTEXTURE, !on); }
    static int backs(int on) { return style(VRK_RENDER_TWOSIDED, on); }
    static int cull(int on) { return style(VRK_RENDER_CULL, on); }
};

void Viewer::setUpConsole()
{
    only = this;
    consoleOutput.resize(VRK_CONSOLE_TEXT);
    console.setScene(&stage.scene);
    console.addProgressFunc(showBusy);

    console.addVar(&frameVariable, "FRAME");
    console.addVar(&pilot.flySpeed, "FLYSPEED");
    console.addVar(&pilot.walk.body.speed, "WALKSPEED");
    console.addVar(&pilot.walk.body.gravity, "GRAVITY");
    console.addVar(&pilot.walk.body.eyeHeight, "EYEHEIGHT");
    console.addVar(&framesASecond, "FPS");
    console.addVar(&options.background.r, "RED");
    console.addVar(&options.background.g, "GREEN");
    console.addVar(&options.background.b, "BLUE");

    console.addFunc(ViewerFunctions::orbit, "ORBIT");
    console.addFunc(ViewerFunctions::fly, "FLY");
    console.addFunc(ViewerFunctions::walk, "WALK");
    console.addFunc(ViewerFunctions::all, "ALL");
    console.addFunc(ViewerFunctions::play, "PLAY");
    console.addFunc(ViewerFunctions::shot, "SHOT");
    console.addFunc(ViewerFunctions::where, "WHERE");
    console.addFunc(ViewerFunctions::frames, "FRAMES");
    console.addFunc(ViewerFunctions::camera, "CAMERA");
    console.addFunc(ViewerFunctions::wire, "WIRE");
    console.addFunc(ViewerFunctions::flat, "FLAT");
    console.addFunc(ViewerFunctions::images, "IMAGES");
    console.addFunc(ViewerFunctions::backs, "BACKS");
    console.addFunc(ViewerFunctions::cull, "CULL");
}

void Viewer::openConsole(bool open)
{
    showConsole = open;
    helpWasSeen = true;
    window.setTyping(open);
}

void Viewer::drainConsole()
{
    if (console.clearRequest())
    {
        console.getText(consoleOutput.data());
        consoleText.clear();
    }
    if (console.text && console.text[0] && console.getText(consoleOutput.data()) > 0)
        consoleText.append(consoleOutput.data());
    if (console.exitRequest())
        running = false;
}

void Viewer::pressInConsole(EditKey key)
{
    if (key == EditKey::complete)
        consoleText.setWords(
            wordsFor(console, consoleText.line().substr(0, static_cast<size_t>(consoleText.cursor()))));
    if (consoleText.press(key))
        runLine(consoleText.takeLine());
}

static int toFrame(float number)
{
    return std::isfinite(number) ? static_cast<int>(std::clamp(number, -1e6f, 1e6f)) : 0;
}

void Viewer::runLine(const std::string& line)
{
    // Nobody but ACTIVECAMERA sets it, so that choosing the same again is noticed, too.
    Camera* active = stage.group ? stage.group->activeCamera : nullptr;
    if (stage.group)
        stage.group->activeCamera = nullptr;
    const float fov = vrkGetFOV();
    frameVariable = static_cast<float>(playback.frame());
    const float frameBefore = frameVariable;
    busyWith = "Loading";
    drainConsole();
    consoleText.endLine(); // some commands leave theirs open
    console.command(line.c_str());
    lastFrame = Window::seconds(); // nothing moves meanwhile
    pilot.limit();

    if (stage.hasChanged())
        return takeSceneOfConsole();
    if (frameVariable != frameBefore)
        playback.goTo(toFrame(frameVariable));
    if (vrkGetFOV() != fov)
        pilot.setFov(vrkGetFOV());
    if (stage.group)
    {
        followActiveCamera();
        if (!stage.group->activeCamera)
            stage.group->activeCamera = active;
    }
    if (options.flags & VRK_RENDER_CALL_LIST)
        compileLists();
}

void Viewer::followActiveCamera()
{
    const OGroup& group = *stage.group;
    for (int i = 0; i < group.cameraCount; ++i)
        if (group.activeCamera == group.cameras[i])
            pilot.setCamera(i + 1, stage);
}

// The console's loads give what old hosts got; only a scene without any lamp would be black.
void Viewer::takeSceneOfConsole()
{
    stage.adopt(options.framing, aspect());
    stage.name = console.lastLoad;
    const size_t begin = stage.name.find(' ');
    stage.name = begin == std::string::npos ? "" : stage.name.substr(begin + 1);
    stage.name = stage.name.substr(0, stage.name.find(' '));
    stage.name = stage.name.substr(stage.name.find_last_of("/\\") + 1);
    if (stage.group && stage.group->lightCount == 0)
        lightScene(stage.group, stage.firstView, options.light);
    options.camera = -1;
    takePlaces();
}
