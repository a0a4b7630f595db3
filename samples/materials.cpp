// The table of materials and the pictures they show.

#include <algorithm>

#include "samples/scene.h"
#include "samples/textures.h"

namespace sample
{

// Order of MaterialNumber. Names are short, since old tools keep sixteen characters of them.
static const Material materials[materialCount] = {
    {"Sky front", "skyfront.jpg", rgb(0xe8c8a8), 100, false, false, true},
    {"Sky back", "skyback.jpg", rgb(0xa8b8d0), 100, false, false, true},
    {"Water", "water.tga", rgb(0x406878), 62, true, false},
    {"Glitter", "glitter.ifl", rgb(0xffd090), 100, true, false},
    {"Hills", "hills.jpg", rgb(0x8c9060), 12, false, false},
    {"Far hills", "farhills.jpg", rgb(0xa09088), 50, false, false},
    {"Grass", "grass.jpg", rgb(0x74783a), 0, false, false},
    {"Paving", "paving.jpg", rgb(0x8a8276), 0, false, false},
    {"Quay wall", "quaywall.jpg", rgb(0x80745c), 0, false, false},
    {"Rock", "rock.jpg", rgb(0x80745c), 0, false, false},
    {"Bricks", "bricks.jpg", rgb(0x98543c), 0, false, false},
    {"Timber frame", "timber.jpg", rgb(0xc0ac88), 0, false, false},
    {"Plaster ochre", "ochre.jpg", rgb(0xd8a850), 0, false, false},
    {"Plaster rose", "rose.jpg", rgb(0xc87c68), 0, false, false},
    {"Plaster cream", "cream.jpg", rgb(0xe4d4b0), 0, false, false},
    {"Plaster blue", "blue.jpg", rgb(0x8ca4b4), 0, false, false},
    {"Planks grey", "planksgrey.jpg", rgb(0x847868), 0, false, false},
    {"Planks warm", "plankswarm.jpg", rgb(0x805430), 0, false, false},
    {"Deck", "deck.jpg", rgb(0xb08c58), 0, false, true},
    {"Roof tiles", "rooftiles.jpg", rgb(0x984c34), 0, false, false},
    {"Slates", "slates.jpg", rgb(0x646870), 0, false, false},
    {"Windows", "windows.jpg", rgb(0x909090), 18, false, false},
    {"Windows lit", "windows.jpg", rgb(0xf0b050), 95, false, false},
    {"Doors", "doors.jpg", rgb(0x6c5040), 20, false, false},
    {"Shop window", "doors.jpg", rgb(0xd09050), 85, false, false},
    {"Lighthouse", "lighthouse.jpg", rgb(0xd8b0a0), 0, false, false},
    {"Lamp glass", "lampglass.ifl", rgb(0xffd080), 100, false, false},
    {"Beacon", "", rgb(0xfff4d0), 100, false, true},
    {"Mast", "mast.jpg", rgb(0xb07c44), 0, false, false},
    {"Hulls", "hulls.jpg", rgb(0x506878), 0, false, true},
    {"Barrel", "barrel.jpg", rgb(0x805430), 0, false, false},
    {"Crate", "crate.jpg", rgb(0xa07848), 0, false, false},
    {"Iron", "iron.jpg", rgb(0x444648), 0, false, false},
    {"Brass", "brass.jpg", rgb(0xc09440), 10, false, false, false, "reflect.tga"},
    {"Canvas", "canvas.jpg", rgb(0xd8c8a4), 0, false, true},
    {"Awning", "awning.jpg", rgb(0xd08c78), 8, false, true},
    {"Leaves", "leaves.tga", rgb(0x687030), 12, true, true, true},
    {"Ivy", "ivy.tga", rgb(0x506030), 5, true, true, true},
    {"Rope", "rope.tga", rgb(0x907450), 10, true, true},
    {"Net", "net.tga", rgb(0x60786c), 10, true, true},
    {"Ratlines", "ratlines.tga", rgb(0x4a3826), 10, true, true, true},
    {"Flowers", "flowers.tga", rgb(0xc05048), 15, true, true, true},
    {"Gulls", "gull.tga", rgb(0xe0dcd4), 40, true, true, true},
    {"Sail", "sail.tga", rgb(0xd8c8a4), 10, true, true, true},
    {"Shade", "shade.tga", rgb(0x14110e), 100, true, false, true},
    {"Glow", "glow.tga", rgb(0xffc070), 100, true, true, true},
};

Material materialOf(int number)
{
    if (number < materialCount)
        return materials[number];
    Material material = materials[number - materialCount];
    if (material.selfIllumination < 90)
    {
        material.selfIllumination = 90;
        material.image = reflectedName(material.image);
    }
    return material;
}

std::string reflectedName(const std::string& image)
{
    return "r-" + image;
}

Image reflectedImage(const Image& image)
{
    const int width = image.width / 4, height = image.height / 4;
    return paint(width, height,
                 [&](float u, float v)
                 {
                     const Rgba c = smoothAt(image, u, v);
                     return Rgba{clamp01(c.r * 0.98f), clamp01(c.g * 0.84f), clamp01(c.b * 0.72f), c.a};
                 });
}

Vec3 sunDirection()
{
    const float azimuth = 222 * pi / 180, elevation = 20 * pi / 180;
    return {std::cos(elevation) * std::cos(azimuth), std::cos(elevation) * std::sin(azimuth),
            std::sin(elevation)};
}

// Where the sky glows: the light comes from further behind the first camera than the picture's brightest
// part.
static Vec3 glowDirection()
{
    const float azimuth = 143 * pi / 180, elevation = 5 * pi / 180;
    return {std::cos(elevation) * std::cos(azimuth), std::cos(elevation) * std::sin(azimuth),
            std::sin(elevation)};
}

const std::vector<Picture>& pictures()
{
    static const std::vector<Picture> all = {
        {"skyfront.jpg", [] { return paintSky(skySeam, glowDirection()); }},
        {"skyback.jpg", [] { return paintSky(skySeam + pi, glowDirection()); }},
        {"water.tga", paintWater},
        {"hills.jpg", paintHills},
        {"farhills.jpg", paintFarHills},
        {"grass.jpg", paintGrass},
        {"paving.jpg", paintPaving},
        {"quaywall.jpg", paintQuayWall},
        {"rock.jpg", paintRock},
        {"bricks.jpg", paintBricks},
        {"timber.jpg", paintTimberFrame},
        {"ochre.jpg", [] { return paintPlaster(rgb(0xe0a94a), 501); }},
        {"rose.jpg", [] { return paintPlaster(rgb(0xd07a66), 511); }},
        {"cream.jpg", [] { return paintPlaster(rgb(0xeedfb8), 521); }},
        {"blue.jpg", [] { return paintPlaster(rgb(0x8fb0c4), 531); }},
        {"planksgrey.jpg", [] { return paintPlanks(rgb(0xb0a48e), rgb(0x5c5448), 8, 541); }},
        {"plankswarm.jpg", [] { return paintPlanks(rgb(0xa8713c), rgb(0x55341c), 8, 551); }},
        {"deck.jpg", [] { return paintPlanks(rgb(0xd8b478), rgb(0x94703f), 10, 561); }},
        {"rooftiles.jpg", paintRoofTiles},
        {"slates.jpg", paintSlates},
        {"windows.jpg", paintWindows},
        {"doors.jpg", paintDoors},
        {"lighthouse.jpg", paintLighthouse},
        {"mast.jpg", paintMast},
        {"hulls.jpg", paintHulls},
        {"barrel.jpg", paintBarrel},
        {"crate.jpg", paintCrate},
        {"iron.jpg", paintIron},
        {"brass.jpg", paintBrass},
        {"canvas.jpg", paintCanvas},
        {"awning.jpg", paintAwning},
        {"leaves.tga", paintLeaves},
        {"ivy.tga", paintIvy},
        {"rope.tga", paintRope},
        {"net.tga", paintNet},
        {"ratlines.tga", paintRatlines},
        {"flowers.tga", paintFlowers},
        {"gull.tga", paintGull},
        {"sail.tga", paintSail},
        {"shade.tga", paintShade},
        {"glow.tga", paintGlow},
        {"reflect.tga", [] { return paintReflection(glowDirection()); }},
    };
    return all;
}

// The first image of each is the one that stills show.
const std::vector<Animation>& animations()
{
    static const std::vector<Animation> all = []
    {
        const auto animation = [](const std::string& name, const char* ending, Image (*paint)(int))
        {
            Animation made = {name + ".ifl", {}, paint};
            for (int frame = 0; frame < animationFrames; ++frame)
                made.frames.push_back(name + std::to_string(100 + frame) + ending);
            return made;
        };
        return std::vector<Animation>{animation("lampglass", ".jpg", paintLampGlass),
                                      animation("glitter", ".tga", paintGlitter)};
    }();
    return all;
}

} // namespace sample
