// The harbour put together, with its lights and cameras.
//
// Meshes are drawn in the order of the file, and blended ones are not sorted by it: so what is seen through
// the water comes before the water, and the rest of what is blended last, far to near.

#include "samples/boats.h"
#include "samples/houses.h"
#include "samples/landscape.h"
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

// A closed flight through some places, of equal duration each, with a key every few frames: players go
// straight from key to key. The curve is that of E. Catmull and R. Rom (1974).
static std::vector<CameraKey> flight(const std::vector<CameraKey>& places, int lastFrame, int step)
{
    const auto curve = [](Vec3 a, Vec3 b, Vec3 c, Vec3 d, float t)
    {
        return (b * 2 + (c - a) * t + (a * 2 - b * 5 + c * 4 - d) * (t * t) +
                (b * 3 - a - c * 3 + d) * (t * t * t)) *
               0.5f;
    };
    const int count = static_cast<int>(places.size());
    std::vector<CameraKey> keys;
    for (int frame = 0; frame <= lastFrame; frame += step)
    {
        const float along =
            static_cast<float>(frame % lastFrame) * static_cast<float>(count) / static_cast<float>(lastFrame);
        const int i = static_cast<int>(along);
        const auto at = [&](int k) { return places[static_cast<size_t>((i + k + count) % count)]; };
        const float t = along - static_cast<float>(i);
        keys.push_back({frame, curve(at(-1).eye, at(0).eye, at(1).eye, at(2).eye, t),
                        curve(at(-1).target, at(0).target, at(1).target, at(2).target, t)});
    }
    return keys;
}

static void addCameras(Scene& scene)
{
    const std::vector<CameraKey> places = {{0, heroEye, heroTarget},
                                           {0, {2.2f, -10, 5.2f}, {-9, 27, 4.5f}},
                                           {0, {-8, 6, 7.5f}, {-20, 36, 6}},
                                           {0, {-16, -8, 9}, {2, 22, 5}}};
    scene.cameras.push_back({"Quay", 38, flight(places, scene.lastFrame, 6)});
    scene.cameras.push_back(
        {"Mole", 38, {{0, {-22, 1.5f, 3.2f}, {8, 15.5f, 4.8f}}, {360, {-22, 1.5f, 3.2f}, {8, 15.5f, 4.8f}}}});
}

Scene buildHarbour()
{
    Scene scene;
    scene.lastFrame = 360;
    addSky(scene);
    addHills(scene);
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
