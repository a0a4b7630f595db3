// The harbour put together, with its lights and cameras.
//
// Meshes are drawn in the order of the file, and blended ones are not sorted by it: so what is seen through
// the water comes before the water, and the rest of what is blended last, far to near.

#include "samples/boats.h"
#include "samples/houses.h"
#include "samples/landscape.h"
#include "samples/mill.h"
#include "samples/motion.h"
#include "samples/props.h"
#include "samples/scene.h"

namespace sample
{

static const Vec3 heroEye = {4.1f, -25.2f, 4.2f}, heroTarget = {-4.6f, 20, 4.9f};

Mesh& Scene::addMesh(const std::string& name)
{
    meshes.push_back({});
    meshes.back().name = name;
    return meshes.back();
}

std::set<int> usedMaterials(const Scene& scene)
{
    std::set<int> used;
    for (const Mesh& mesh : scene.meshes)
    {
        for (const Face& face : mesh.faces)
            used.insert(face.material);
    }
    return used;
}

static void addLights(Scene& scene)
{
    const Vec3 sun = sunDirection();
    scene.lights.push_back({"Sun", sun * 6000, {1.0f, 0.71f, 0.38f}, 20000, 30000});
    scene.lights.push_back({"Sky", {-300, -700, 1700}, {0.21f, 0.21f, 0.27f}, 20000, 30000});
    scene.lights.push_back({"Sky east", {900, -500, 500}, {0.07f, 0.07f, 0.12f}, 20000, 30000});
    scene.lights.push_back({"Sky north", {-700, 1200, 500}, {0.16f, 0.12f, 0.10f}, 20000, 30000});
    scene.lights.push_back({"Sky south", {-200, -1200, 250}, {0.10f, 0.10f, 0.14f}, 20000, 30000});
    static const char* const names[] = {"Lamp 1", "Lamp 2", "Lamp 3", "Lamp 4",
                                        "Lamp 5", "Lamp 6", "Lamp 7", "Lamp 8"};
    size_t i = 0;
    for (const Vec3 flame : lampPlaces())
        scene.lights.push_back({names[i++], flame, {0.80f, 0.42f, 0.15f}, 1.2f, 9});
    scene.lights.push_back(
        {"Beacon", lighthousePlace + Vec3{0, 0, lighthouseHeight + 1.1f}, {0.6f, 0.5f, 0.3f}, 2, 9});
    scene.lights.push_back({"Shop", {8.6f, -12.2f, quayHeight + 1.6f}, {0.8f, 0.48f, 0.2f}, 0.8f, 6});
}

struct View
{
    Vec3 eye, target;
};

// A closed flight through some views, of equal duration each.
static std::vector<CameraKey> flight(const std::vector<View>& views)
{
    std::vector<Vec3> eyes, targets;
    for (const View& view : views)
    {
        eyes.push_back(view.eye);
        targets.push_back(view.target);
    }
    std::vector<CameraKey> keys;
    for (int frame = 0; frame <= lastFrame; frame += 5)
    {
        const float time = static_cast<float>(frame) / lastFrame;
        keys.push_back({frame, onClosedCurve(eyes, time), onClosedCurve(targets, time)});
    }
    return keys;
}

static void addCameras(Scene& scene)
{
    scene.cameras.push_back({"Quay", 38,
                             flight({{heroEye, heroTarget},
                                     {{2.2f, -10, 5.2f}, {-9, 27, 4.5f}},
                                     {{-8, 6, 7.5f}, {-20, 36, 6}},
                                     {{-16, -8, 9}, {2, 22, 5}}})});
    scene.cameras.push_back(
        {"Mole",
         38,
         {{0, {-22, 1.5f, 3.2f}, {8, 15.5f, 4.8f}}, {lastFrame, {-22, 1.5f, 3.2f}, {8, 15.5f, 4.8f}}}});
    // Along the quay and out over the boats, around the lighthouse, and back high over the water.
    scene.cameras.push_back({"Flight", 38,
                             flight({{{5.2f, -27, 3.0f}, {1.5f, 0, 3.8f}},
                                     {{1.2f, -16.5f, 3.4f}, {-6, 18, 5}},
                                     {{-7, -4, 4.6f}, {-17, 30, 7.5f}},
                                     {{-16, 10.5f, 8}, {-27, 32, 12}},
                                     {{-35, 9, 16}, {-20, 45, 13}},
                                     {{-33, -6, 18}, {-6, 28, 6}},
                                     {{-19, -21, 13}, {4, 14, 5}},
                                     {{-5, -33, 6.5f}, {2, 6, 4.5f}}})});
}

Scene buildHarbour()
{
    Scene scene;
    addSky(scene);
    addHills(scene);
    addMill(scene);
    addQuays(scene);
    addMole(scene);
    addLighthouse(scene);
    const std::vector<Frame> flowerBoxes = addHouses(scene);
    addBoats(scene);
    addProps(scene);
    addTrunks(scene);
    addGlowBelow(scene, heroEye);
    addWater(scene);
    addGlitter(scene, heroEye);
    addShades(scene);
    addMillSails(scene);
    addLeaves(scene, heroEye);
    addFlowers(scene, flowerBoxes, heroEye);
    addNets(scene);
    addRigging(scene, heroEye);
    addGulls(scene);
    addGlow(scene, heroEye);
    addLights(scene);
    addCameras(scene);
    return scene;
}

} // namespace sample
