// Where the scene is seen from, and how mouse and keys move that: orbiting, flying, walking, and the scene's
// own cameras.
#pragma once

#include "apps/vornik/view/bindings.h"
#include "apps/vornik/view/freecamera.h"
#include "apps/vornik/view/stage.h"
#include "apps/vornik/view/walking.h"

enum class Movement
{
    orbit,
    fly,
    walk
};

class Pilot
{
public:
    /// Takes its place before a scene: at its first camera, or so that all of it is seen.
    /// @param firstCamera  of the scene, from 1; 0 for none, -1 for the first if there is one
    void begin(const Stage& stage, char upAxis, int firstCamera, bool classic);
    /// Sees the scene again: its core, and the next time what lies far around it, too.
    void frameAll(const Stage& stage);

    /// @return what is in the way; empty if nothing is
    std::string setMovement(Movement wanted, const Stage& stage);
    Movement movement() const { return way; }

    /// Looks through a camera of the scene, from 1, or through the own eye (0), which then stands there.
    void setCamera(int number, const Stage& stage);
    int camera() const { return cameraNumber; }
    /// The field of view of the own eye and of the cameras until another is chosen. @param degrees  1 to 170
    void setFov(float degrees);

    /// The mouse was dragged. @param height  of the window, for the measure of a pixel
    void drag(const Stage& stage, float x, float y, bool shift, float height);
    void wheel(const Stage& stage, float notches);
    void move(const Stage& stage, const Held& held, double seconds);
    /// Makes the walker another size.
    void resizeWalker(float factor);

    /// Brings what a console may have set to anything back to what can be used.
    void limit();

    /// At the current frame of the stage.
    View view(const Stage& stage) const;
    /// What must not be cut by the near clip distance.
    float closest() const;
    /// Is z up? Gravity and the engine's frustum know no other axis.
    bool isUpright() const { return axes.up.z == 1.0f; }

    float flySpeed = 1.0f; ///< multiplies the speed that fits the scene
    Walk walk;

private:
    void takeOver(const Stage& stage);
    bool isAt(const View& view) const;
    View ownView() const;

    Movement way = Movement::orbit;
    Axes axes = axesOf('z');
    FreeCamera eye;
    float fov = 50.0f;
    float chosenFov = 0.0f; // of a camera, 0 for its own
    int cameraNumber = 0;
    bool classicCameras = false;
    float size = 1.0f; // of the scene's core
};
