// What the host itself looks at in a .3DS file, before and beside the engine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Why a file can't be taken as a scene.
enum class SceneFault
{
    none,
    unreadable,
    empty,
    notAScene,
    cut ///< it ends before its own length says
};

struct SceneFile
{
    std::string path; ///< from a pack the member's name
    std::string pack; ///< whole path of the pack; empty for a loose file
    bool readable = false;
    std::string openProblem; ///< why it isn't readable, for people
    std::vector<uint8_t> bytes;
    uint32_t claimedLength = 0; ///< of the main chunk

    SceneFault fault() const;
    /// One line for people; empty without a fault.
    std::string faultText() const;
};

/// @param pack  pack that has the scene, where the end of a member's name will do; empty for a loose file
SceneFile readSceneFile(const std::string& path, const std::string& pack);

/// What the animation section of a file holds.
struct KeyframeFigures
{
    int nodes = 0;
    int dummies = 0;
    int tracks = 0;         ///< of all kinds
    int animatedTracks = 0; ///< with more than one key
    int keys = 0;           ///< in all tracks
    int firstFrame = 0;
    int lastFrame = 0;
};

KeyframeFigures countKeyframes(const SceneFile& file);
