// The viewer: its window, its loop, and what each command does.
#pragma once

#include "apps/vornik/view/hud.h"
#include "apps/vornik/view/pilot.h"
#include "apps/vornik/view/playback.h"
#include "apps/vornik/view/view.h"
#include "apps/vornik/view/window.h"

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
    void takePlaces();
    void frame();
    void handle(const Event& event);

    // viewercommands.cpp
    void execute(Command command);
    void move(Movement movement);
    void watch(int camera);
    void toggle(int flag, const char* name);
    void toggleLists();
    void compileLists();
    void nextTransparency();
    void takeScreenShot();
    void tellPlace();
    /// Shows a line for some seconds.
    void say(const std::string& line);

    // viewerdraw.cpp
    void resize();
    float aspect() const { return static_cast<float>(width) / static_cast<float>(height); }
    void setProjection(const View& view);
    void draw();
    void drawScene();
    void drawOverlay();
    void gatherFigures();
    void countFrame(double now);
    void pace();
    /// Draws a bar while the engine is busy.
    static void showBusy(float fraction);

    ViewOptions options;
    Window window;
    Stage stage;
    Pilot pilot;
    Playback playback;
    Messages messages;
    FigureLines figures;

    bool running = true;
    bool showHelp = false;
    bool showFigures = true;
    bool helpWasSeen = false;
    int width = 1, height = 1;
    double lastFrame = 0.0;
    double due = 0.0; // when the next picture is wanted

    double countedSince = 0.0;
    int counted = 0;
    float framesASecond = 0.0f;

    static Viewer* busy;  // the engine reports progress to a plain function
    std::string busyWith; // text over the bar
    double lastBar = 0.0;
};
