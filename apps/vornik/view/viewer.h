// The viewer: its window, its loop, and what each command does.
#pragma once

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
    void load(const std::string& path);
    void show(const Stage& loaded);
    void frame();
    void handle(const Event& event);
    void execute(Command command);
    void toggle(int flag, const char* name);
    void tell(const std::string& line);
    void nameWindow();

    void resize();
    void setProjection(const View& view);
    void draw();
    void pace();

    ViewOptions options;
    Window window;
    Stage stage;
    Pilot pilot;
    Playback playback;
    bool running = true;
    int width = 1, height = 1;
    double lastFrame = 0.0;
    double due = 0.0; // when the next picture is wanted
};
