// The sample scene before it is written: meshes, materials, lights and cameras.
#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "samples/geometry.h"
#include "samples/painting.h"

namespace sample
{

enum MaterialNumber
{
    skyFront,
    skyBack,
    water,
    glitter,
    hills,
    farHills,
    grass,
    paving,
    quayWall,
    rock,
    bricks,
    timberFrame,
    plasterOchre,
    plasterRose,
    plasterCream,
    plasterBlue,
    planksGrey,
    planksWarm,
    deck,
    roofTiles,
    slates,
    windows,
    windowsLit,
    doors,
    shopWindow,
    lighthouseWall,
    lampGlass,
    beacon,
    mastWood,
    hulls,
    barrel,
    crateWood,
    iron,
    brass,
    canvas,
    awning,
    leaves,
    ivy,
    ropes,
    netting,
    ratlines,
    flowers,
    gulls,
    sail,
    shade,
    glow,
    materialCount
};

struct Material
{
    const char* name;
    std::string image;    ///< empty: the plain colour is used
    Rgba colour;          ///< diffuse; about the mean of the image
    int selfIllumination; ///< percent
    bool seeThrough;      ///< the image's alpha is its opacity
    bool twoSided;
    bool clamped = false; ///< the image doesn't repeat
    const char* reflection = nullptr;
};

/// Number of the material that a surface shows mirrored in the water: the same image, glowing by itself.
constexpr int reflected(int material)
{
    return material + materialCount;
}
Material materialOf(int number);

struct Picture
{
    const char* name;
    Image (*paint)();
};
/// All images of the scene, by file name, but for those of reflections and of animations.
const std::vector<Picture>& pictures();

/// An image that changes: an .ifl file of this name lists its frames.
struct Animation
{
    std::string name;
    std::vector<std::string> frames;
    Image (*paint)(int frame);
};
const std::vector<Animation>& animations();
/// Name of an image as the water shows it.
std::string reflectedName(const std::string& image);
/// A quarter as wide and high, and in the colour of the light that falls on what is reflected.
Image reflectedImage(const Image& image);

struct Light
{
    const char* name;
    Vec3 place;
    Rgba colour;
    float innerRange, outerRange;
};

struct CameraKey
{
    int frame;
    Vec3 eye, target;
};

struct Camera
{
    const char* name;
    float lens;                  ///< millimetres
    std::vector<CameraKey> keys; ///< the first is the camera's place at rest
};

struct Scene
{
    std::deque<Mesh> meshes; ///< blended ones last, far to near from the first camera; references stay good
    std::vector<Light> lights;
    std::vector<Camera> cameras;

    Mesh& addMesh(const std::string& name);
};

/// Numbers of the materials that faces have, in ascending order.
std::set<int> usedMaterials(const Scene& scene);

/// Azimuth at which the two halves of the sky begin and end, in radians; behind both cameras.
constexpr float skySeam = -30 * pi / 180;

/// Direction to the sun, a unit vector.
Vec3 sunDirection();

/// Puts the harbour together.
Scene buildHarbour();

} // namespace sample
