// The viewer: its window, its loop, and what each command does.
#pragma once

#include <vector>

#include "apps/vornik/view/hud.h"
#include "apps/vornik/view/pace.h"
#include "apps/vornik/view/pilot.h"
#include "apps/vornik/view/playback.h"
#include "apps/vornik/view/treeview.h"
#include "apps/vornik/view/view.h"
#include "apps/vornik/view/window.h"
#include "vornik/console.h"

class Viewer
{
public:
    explicit Viewer(const ViewOptions& viewOptions);

    /// @return what went wrong before there was a picture; empty after the window was closed
    std::string run();

private:
    std::string start(const SceneFile& file);
    std::string startEngine();
    std::string load(const SceneFile& file, const StageOptions& how);
    void loadDropped(const std::string& path);
    void sayReportOfEngine(const SceneFile& file);
    void takePlaces();
    void frame();
    void handle(const Event& event);

    // viewercommands.cpp
    void execute(Command command);
    void move(Movement movement);
    void watch(int camera);
    void toggle(int flag, const char* name);
    void toggleLists();
    void toggleLeaves();
    void compileLists();
    void nextTransparency();
    void takeScreenShot();
    void tellPlace();
    void closeTopmost();
    /// Shows a line for some seconds, and in the console.
    void say(const std::string& line);

    // viewerconsole.cpp
    void setUpConsole();
    void openConsole(bool open);
    void drainConsole();
    void pressInConsole(EditKey key);
    void runLine(const std::string& line);
    void followActiveCamera();
    void takeSceneOfConsole();

    // viewerdraw.cpp
    void resize();
    float aspect() const { return static_cast<float>(width) / static_cast<float>(height); }
    void setProjection(const View& view);
    void draw();
    void drawScene();
    void drawOverlay();
    void gatherFigures();
    void countFrame(double now);
    /// Draws a bar while the engine is busy.
    static void showBusy(float fraction);

    ViewOptions options;
    Window window;
    Stage stage;
    Pilot pilot;
    Playback playback;
    TreeView leaves;
    Messages messages;
    FigureLines figures;

    bool running = true;
    bool showHelp = false;
    bool showFigures = true;
    bool helpWasSeen = false;
    int width = 1, height = 1;
    double lastFrame = 0.0;
    Pace pace;

    double countedSince = 0.0;
    int counted = 0;
    float framesASecond = 0.0f;

    std::string busyWith; // text over the bar
    double lastBar = 0.0;

    Console console;
    ConsoleText consoleText;
    std::vector<char> consoleOutput;
    bool showConsole = false;
    float frameVariable = 0.0f; // of the console

    // The engine takes plain functions, for progress and for its console. There is one viewer in a process.
    static Viewer* only;
    friend struct ViewerFunctions;
};
