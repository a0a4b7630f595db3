// The scene on show: loading one in the place of another, and its figures.
#pragma once

#include <string>

#include "apps/vornik/camera.h"
#include "apps/vornik/lights.h"
#include "apps/vornik/loadscene.h"

struct StageOptions
{
    std::string lights; ///< file of baked light; empty to light the scene
    LoadOptions load;
    LightOptions light;
    Framing framing;
    int camera = -1;      ///< from 1 as the file has them; 0 frames the scene, -1 takes the first or frames
    bool partial = false; ///< takes what there is of a file that is cut short
};

/// What stands in the way of a file before the engine sees it; empty if nothing does.
std::string problemOf(const StageOptions& options, const SceneFile& file);

/// Has the engine look at a loose file that it is kept from, so that its own report reaches the log.
/// @return the number of the report; 0 if it finds no fault
int reportOfEngine(const SceneFile& file);

class Stage
{
public:
    Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage();

    /// Puts a file in the place of the scene on show, which stays when that fails. The engine must run.
    /// @param aspect  of the picture that it will be seen in
    /// @return what went wrong; empty if nothing did
    std::string load(const SceneFile& file, const StageOptions& options, float aspect);

    /// Looks whether something else has changed the scene's first group: the console does. @return did it?
    bool hasChanged() const;
    /// Is there a sky, or something else far out, beside which the core is small?
    bool hasSurroundings() const { return bounds.diagonal() > 4.0f * core.diagonal(); }
    /// Takes the scene's first group as it is now.
    void adopt(const Framing& framing, float aspect);

    Scene scene;
    OGroup* group = nullptr;       ///< the one on show; null for an empty stage
    std::string name;              ///< of the file, for people
    View firstView;                ///< shows all of it
    View coreView;                 ///< from the same side, shows its core
    Bounds bounds = emptyBounds(); ///< in the course of the animation
    Bounds core = emptyBounds();   ///< what a visitor takes the measure from
    int faces = 0, vertices = 0;   ///< of visible meshes
    int missingImages = 0;

private:
    // What tells the group on show from another that took its place in memory.
    struct Identity
    {
        const void* group = nullptr;
        int stamp = 0; // of the first mesh
        int meshes = 0, tlists = 0, pathLists = 0;
        bool operator==(const Identity&) const = default;
    };
    Identity identify() const;
    void takeGroup();
    void takeViews(const View& first, float aspect);

    Identity known;
    int lastStamp = 0;
};
