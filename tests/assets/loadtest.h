// Loads of small scenes into a group, with their images in a folder of the test's own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/engine.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/ogroup.h"

class LoadTest : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        group = std::make_unique<OGroup>();
        fractions.clear();
    }
    void TearDown() override
    {
        group.reset();
        EngineTest::TearDown();
    }

    int load(const std::vector<uint8_t>& bytes, int flags)
    {
        return load3ds(folder.write("scene.3ds", bytes).c_str(), group.get(), folder.root().c_str(), flags,
                       noteProgress, nullptr);
    }
    int load(const Scene3ds& scene, int flags) { return load(build3ds(scene), flags); }
    Material* material(int id) const { return group->tlists[0]->getMaterial(id); }

    static void noteProgress(float fraction) { fractions.push_back(fraction); }

    std::unique_ptr<OGroup> group;
    static inline std::vector<float> fractions;
};

/// A material that reads whole in the strict reading too, and loses nothing behind it: one colour pair.
inline Material3ds paired(const char* name, const std::vector<Map3ds>& maps = {})
{
    return {.name = name,
            .diffuse = {{0.2f, 0.4f, 0.1f}, {0.1f, 0.1f, 0.1f, COLOR_3DS_LINEAR_BYTE}},
            .maps = maps};
}
