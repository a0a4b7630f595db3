// Small places to walk in, loaded as the viewer loads a scene.
#pragma once

#include <gtest/gtest.h>

#include "apps/vornik/view/stage.h"
#include "tests/apps/scenes.h"
#include "tests/support/tempfolder.h"

/// A rectangle that faces the given way: "+z" is a floor, "-x" a wall seen from where x is smaller. low and
/// high are opposite corners.
Mesh3ds rectangle(const std::string& name, const Vertex3D& low, const Vertex3D& high, const char* facing);

/// A room of 10 by 10 by 3 that is seen from inside: a floor at z = 0, four walls at x and y of -5 and 5.
Scene3ds room();

/// With the engine off-screen and an empty stage.
class StageTest : public ::testing::Test
{
protected:
    StageTest();

    SceneFile write(const std::string& name, const Scene3ds& scene) const;
    /// Loads a scene and fails the test if it can't be.
    void show(const Scene3ds& scene);

    TempFolder folder;
    StageOptions options;
    Stage stage;
};
