#include "apps/vornik/view/viewer.h"

#include <algorithm>
#include <cstdio>

#include <GL/gl.h>

#include "apps/vornik/animate.h"
#include "apps/vornik/text.h"

Viewer::Viewer(const ViewOptions& viewOptions) : options(viewOptions) {}

std::string Viewer::start(const SceneFile& file)
{
    const std::string problem = window.open("Vornik", options.width, options.height);
    if (!problem.empty())
        return problem;
    vrkInitErrorLog(3);
    if (vrkSelectRasterizer(0) != 0 || vrkInitViewport(window.handle(), 32, 0, 24, false, 0, true) != 0)
        return "can't start OpenGL on the window";
    resize();
    vrkSetFPS(window.refreshRate());
    nameWindow();
    if (options.scene.empty())
        return "";
    const std::string trouble =
        stage.load(file, options, static_cast<float>(width) / static_cast<float>(height));
    if (trouble.empty())
        show(stage);
    return trouble;
}

std::string Viewer::run()
{
    SceneFile file;
    if (!options.scene.empty())
    {
        file = readSceneFile(options.scene, options.load.pack);
        const std::string problem = problemOf(options, file);
        if (!problem.empty())
            return problem;
    }
    const std::string problem = start(file);
    if (!problem.empty())
        return problem;
    lastFrame = due = Window::seconds();
    while (running)
        frame();
    return "";
}

// A scene that is new on the stage is seen from its first camera and played from its first frame.
void Viewer::show(const Stage& loaded)
{
    pilot.begin(loaded, options.framing.upAxis, options.camera, options.load.classic);
    playback.begin(loaded.group && loaded.group->animated ? loaded.group->frameCount : 0);
    nameWindow();
}

// A file from elsewhere, loose: what the command line said about a pack and its light was about another.
void Viewer::load(const std::string& path)
{
    StageOptions loose = options;
    loose.load.pack.clear();
    loose.load.textures.clear();
    loose.lights.clear();
    const std::string trouble =
        stage.load(readSceneFile(path, ""), loose, static_cast<float>(width) / static_cast<float>(height));
    if (!trouble.empty())
        return tell(trouble);
    options.camera = -1;
    show(stage);
}

void Viewer::nameWindow()
{
    window.setTitle(stage.name.empty() ? "Vornik" : printable(stage.name) + " - Vornik");
}

void Viewer::tell(const std::string& line)
{
    std::fprintf(stderr, "vornik: %s\n", printable(line).c_str());
}

void Viewer::frame()
{
    Event event;
    while (window.next(&event))
        handle(event);
    const double now = Window::seconds();
    const double passed = now - lastFrame;
    lastFrame = now;
    playback.advance(passed);
    if (window.isHidden())
        return window.wait(100);
    pilot.move(stage, window.held(), passed);
    draw();
    pace();
}

void Viewer::handle(const Event& event)
{
    switch (event.kind)
    {
    case Happening::quit:
        running = false;
        break;
    case Happening::command:
        execute(event.command);
        break;
    case Happening::drag:
        pilot.drag(stage, event.x, event.y, event.secondButton, static_cast<float>(height));
        break;
    case Happening::wheel:
        pilot.wheel(stage, event.y);
        break;
    case Happening::dropped:
        load(event.text);
        break;
    case Happening::resized:
        resize();
        break;
    case Happening::edit:
    case Happening::typed:
    case Happening::exposed:
        break;
    }
}

void Viewer::toggle(int flag, const char* name)
{
    options.flags ^= flag;
    tell(std::string(name) + (options.flags & flag ? ": on" : ": off"));
}

void Viewer::execute(Command command)
{
    switch (command)
    {
    case Command::close:
        running = false;
        break;
    case Command::orbit:
        pilot.setMovement(Movement::orbit, stage);
        break;
    case Command::fly:
        pilot.setMovement(Movement::fly, stage);
        break;
    case Command::walk:
        pilot.setMovement(Movement::walk, stage);
        break;
    case Command::frameAll:
        pilot.frameAll(stage);
        break;
    case Command::nextCamera:
        pilot.setCamera(pilot.camera() + 1, stage);
        break;
    case Command::wire:
        toggle(VRK_RENDER_WIRE, "edges only");
        break;
    case Command::play:
        playback.togglePlaying();
        break;
    default:
        break;
    }
}

void Viewer::resize()
{
    width = std::max(window.width(), 1);
    height = std::max(window.height(), 1);
    glViewport(0, 0, width, height); // the engine leaves the pixel rectangle to the host
}

void Viewer::setProjection(const View& view)
{
    Viewport viewport = *vrkGetViewport();
    viewport.width = static_cast<float>(width);
    viewport.height = static_cast<float>(height);
    viewport.aspect = viewport.width / viewport.height;
    viewport.fov = view.camera.fov;
    const ClipRange clip = clipRange(stage.bounds, view.camera.eye, pilot.closest());
    viewport.nearClip = clip.nearest;
    viewport.farClip = clip.farthest;
    vrkSetViewport(&viewport);
}

void Viewer::draw()
{
    vrkSetClearColor(&options.background);
    vrkClear();
    if (stage.group)
    {
        showFrame(stage.group, playback.frame(), playback.textureFrame());
        View view = pilot.view(stage);
        setProjection(view);
        drawGroup(stage.group, &view, options.flags, options.transparency);
    }
    vrkSwapBuffers();
}

// Where the swap doesn't wait for the display, sleep. A little faster than the display, so that both never
// add up.
void Viewer::pace()
{
    const double interval = 1.0 / (1.1 * std::max(window.refreshRate(), 60));
    due = std::max(due + interval, Window::seconds() - interval);
    Window::sleep(due - Window::seconds());
}

int view(const ViewOptions& options)
{
    const std::string problem = Viewer(options).run();
    return problem.empty() ? 0 : fail(problem);
}
