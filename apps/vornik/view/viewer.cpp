#include "apps/vornik/view/viewer.h"

#include <algorithm>

#include "apps/vornik/progressbar.h"
#include "apps/vornik/text.h"

Viewer::Viewer(const ViewOptions& viewOptions) : options(viewOptions)
{
    setUpConsole();
}

std::string Viewer::startEngine()
{
    // The console is the sink of the engine's reports from here on.
    if (initVornik(0, window.handle(), &console, 32, 0, 24, window.refreshRate(), false, 0, true) != 0)
        return "can't start OpenGL on the window";
    vrkInitFont(); // takes its display lists before scenes do
    resize();
    return "";
}

std::string Viewer::start(const SceneFile& file)
{
    std::string problem = window.open("Vornik", options.width, options.height);
    if (problem.empty())
        problem = startEngine();
    if (problem.empty() && !options.scene.empty())
        problem = load(file, options);
    return problem;
}

std::string Viewer::run()
{
    SceneFile file;
    if (!options.scene.empty())
    {
        // What is wrong with the file is told at once, without a window that flashes by.
        file = readSceneFile(options.scene, options.load.pack);
        std::string problem = problemOf(options, file);
        if (!problem.empty())
            return problem;
    }
    std::string problem = start(file);
    if (!problem.empty())
        return problem;
    lastFrame = countedSince = Window::seconds();
    pace.begin(lastFrame);
    while (running)
        frame();
    return "";
}

std::string Viewer::load(const SceneFile& file, const StageOptions& how)
{
    busyWith = "Loading " + printable(file.path.substr(file.path.find_last_of("/\\") + 1));
    showBusy(0.0f);
    showProgressBy(showBusy);
    std::string problem = stage.load(file, how, aspect());
    showProgressBy(nullptr);
    lastFrame = Window::seconds(); // nothing moves meanwhile
    if (problem.empty())
        takePlaces();
    return problem;
}

// A file from elsewhere, loose: what the command line said of a pack, images and light was said of another.
void Viewer::loadDropped(const std::string& path)
{
    StageOptions loose = options;
    loose.load.pack.clear();
    loose.load.textures.clear();
    loose.lights.clear();
    options.camera = -1;
    const SceneFile file = readSceneFile(path, "");
    const std::string problem = load(file, loose);
    if (problem.empty())
        return;
    say(problem);
    sayReportOfEngine(file);
}

// What the engine itself finds wrong with a file, by its line and its number.
void Viewer::sayReportOfEngine(const SceneFile& file)
{
    drainConsole();
    const int number = reportOfEngine(file);
    console.getText(consoleOutput.data());
    std::string report = consoleOutput.data();
    consoleText.append(report);
    report.erase(report.find_last_not_of('\n') + 1);
    report.erase(0, report.find_last_of('\n') + 1);
    if (number != 0)
        say("engine: " + report + " (" + std::to_string(number) + ")");
}

// A scene that is new on the stage is seen from its first camera and played from its first frame.
void Viewer::takePlaces()
{
    leaves.clear();
    pilot.begin(stage, options.framing.upAxis, options.camera, options.load.classic);
    playback.begin(stage.group && stage.group->animated ? stage.group->frameCount : 0);
    window.setTitle(stage.name.empty() ? "Vornik" : printable(stage.name) + " - Vornik");
    if (stage.missingImages > 0)
        say(std::to_string(stage.missingImages) + (stage.missingImages == 1 ? " image" : " images") +
            " can't be read");
    if (options.flags & VRK_RENDER_CALL_LIST)
        compileLists();
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
    drainConsole();
    draw();
    countFrame(now);
    Window::sleep(pace.next(Window::seconds(), window.refreshRate()));
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
        if (showConsole)
            consoleText.scroll(static_cast<int>(3.0f * event.y));
        else
            pilot.wheel(stage, event.y);
        break;
    case Happening::dropped:
        loadDropped(event.text);
        break;
    case Happening::resized:
        resize();
        break;
    case Happening::edit:
        pressInConsole(event.key);
        break;
    case Happening::typed:
        if (showConsole)
            consoleText.type(event.text);
        break;
    case Happening::exposed:
        break;
    }
}

int view(const ViewOptions& options)
{
    const std::string problem = Viewer(options).run();
    return problem.empty() ? 0 : fail(problem);
}
