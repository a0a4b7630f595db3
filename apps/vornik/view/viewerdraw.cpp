// A frame of the viewer: the scene under its camera, and then what lies over it.

#include "apps/vornik/view/viewer.h"

#include <algorithm>

#include <GL/gl.h>

#include "apps/vornik/animate.h"
#include "apps/vornik/text.h"

void Viewer::resize()
{
    width = std::max(window.width(), 1);
    height = std::max(window.height(), 1);
    glViewport(0, 0, width, height); // the engine leaves the pixel rectangle to the host
    setProjection(View());
    consoleText.setSize(consoleColumns(width), consoleRows(height));
}

void Viewer::setProjection(const View& view)
{
    const ClipRange clip = clipRange(stage.bounds, view.camera.eye, pilot.closest());
    Viewport viewport = *vrkGetViewport();
    viewport.width = static_cast<float>(width);
    viewport.height = static_cast<float>(height);
    viewport.aspect = aspect();
    viewport.fov = view.camera.fov;
    viewport.nearClip = clip.nearest;
    viewport.farClip = clip.farthest;
    vrkSetViewport(&viewport);
}

void Viewer::drawScene()
{
    vrkSetClearColor(&options.background);
    vrkClear();
    if (!stage.group)
        return;
    showFrame(stage.group, playback.frame(), playback.textureFrame());
    View view = pilot.view(stage);
    setProjection(view);
    const int flags = pilot.isUpright() ? options.flags : options.flags & ~VRK_RENDER_CULL;
    drawGroup(stage.group, &view, flags, options.transparency);
    leaves.draw(&view, stage.group->activeTList);
}

static const char* movementName(const Pilot& pilot)
{
    switch (pilot.movement())
    {
    case Movement::orbit:
        return "orbit";
    case Movement::fly:
        return "fly";
    case Movement::walk:
        return "walk";
    }
    return "";
}

void Viewer::gatherFigures()
{
    const OGroup& group = *stage.group;
    figures.clear();
    figures.add("%s", stage.name.c_str());
    figures.add("%.0f frames a second", static_cast<double>(framesASecond));
    figures.add("%d faces, %d vertices in %d meshes", stage.faces, stage.vertices, group.meshCount);
    figures.add("%d lights, %d cameras", group.lightCount, group.cameraCount);
    if (pilot.camera() > 0)
        figures.add("camera %d: %s", pilot.camera(), group.cameras[pilot.camera() - 1]->name);
    else if (pilot.movement() == Movement::fly)
        figures.add("fly, speed %.2g", static_cast<double>(pilot.flySpeed));
    else
        figures.add("%s", movementName(pilot));
    if (playback.frames() > 0)
        figures.add("frame %d of %d, %s, pace %g", playback.frame(), playback.frames(),
                    playback.isPlaying() ? "playing" : "paused", playback.pace());
}

void Viewer::drawOverlay()
{
    Hud hud(width, height);
    if (showFigures && stage.group && !showConsole && !showHelp)
    {
        gatherFigures();
        hud.drawFigures(figures);
    }
    hud.drawMessages(messages.at(lastFrame));
    if (!stage.group)
        hud.drawHint("Drop a .3DS file on this window.  F1 help  ` console");
    else if (!helpWasSeen || showFigures)
        hud.drawHint("F1 help  ` console");
    if (showConsole)
        hud.drawConsole(consoleText);
    if (showHelp)
        hud.drawHelp();
}

void Viewer::draw()
{
    drawScene();
    drawOverlay();
    vrkSwapBuffers();
}

// A bar at most 30 times a second: loading is to be fast, not its bar.
void Viewer::showBusy(float fraction)
{
    if (!(fraction >= 0.0f)) // a load without materials reports what is no number
        return;
    Viewer& viewer = *only;
    const double now = Window::seconds();
    if (now - viewer.lastBar < 1.0 / 30.0 && fraction > 0.0f)
        return;
    viewer.lastBar = now;
    viewer.window.keepAlive();
    vrkSetClearColor(&viewer.options.background);
    vrkClear();
    Hud(viewer.width, viewer.height).drawProgress(viewer.busyWith, fraction);
    vrkSwapBuffers();
}

void Viewer::countFrame(double now)
{
    ++counted;
    if (now - countedSince < 0.5)
        return;
    framesASecond = static_cast<float>(counted / (now - countedSince));
    countedSince = now;
    counted = 0;
}
