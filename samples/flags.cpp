// A host that draws the sample once for each way of drawing: the pictures of docs/render-flags.md.
//
// usage: make_flags SCENE.3DS FOLDER_OF_IMAGES FOLDER_OF_PICTURES

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include <GL/gl.h>

#include "apps/vornik/imagefile.h"
#include "apps/vornik/surface.h"
#include "vornik/vornik.h"

enum
{
    width = 384,
    height = 216,
    samples = 3, // along each side of a pixel
    glowSide = 64,
    glowColor = 0xFFF0D0
};

static OGroup* load(Scene* scene, const char* file, const char* images)
{
    const int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_SMOOTHING |
                      LOAD_TEXTURE_32BIT | LOAD_TOLERANT;
    OGroup* group = scene->createOGroup(file, flags, images, 0, nullptr, nullptr);
    for (int i = 0; group && i < group->lightCount; ++i)
        group->calcDynamicLight(group->lights[i], VRK_LIGHT_SHADOWS | (i == 0 ? VRK_LIGHT_CLEAR : 0));
    if (group)
        group->applyLights();
    return group;
}

static Image readPicture()
{
    Image image = {width * samples, height * samples, {}};
    image.rgb.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int y = 0; y < image.height; ++y) // rows come bottom-up
        glReadPixels(0, image.height - 1 - y, image.width, 1, GL_RGB, GL_UNSIGNED_BYTE,
                     &image.rgb[static_cast<size_t>(y) * static_cast<size_t>(image.width) * 3]);
    return shrink(image, samples);
}

static bool draw(const std::string& path, const std::function<void()>& passes)
{
    vrkClear();
    passes();
    const std::string problem = saveImage(path, readPicture());
    if (!problem.empty())
        std::fprintf(stderr, "make_flags: %s: %s\n", path.c_str(), problem.c_str());
    return problem.empty();
}

// A round light that fades to its edge, as the image of a glow sprite.
static Material* makeGlow()
{
    Texture* texture = new Texture;
    texture->setFilename("Glow", 0);
    texture->width = texture->height = glowSide;
    texture->wrap = false;
    texture->bitsPerTexel = 32;
    texture->pixels = static_cast<uint8_t*>(std::malloc(glowSide * glowSide * 4));
    for (int i = 0; i < glowSide * glowSide; ++i)
    {
        const int column = i % glowSide, row = i / glowSide;
        const float x = (static_cast<float>(column) + 0.5f) / (static_cast<float>(glowSide) * 0.5f) - 1;
        const float y = (static_cast<float>(row) + 0.5f) / (static_cast<float>(glowSide) * 0.5f) - 1;
        const float light = 1 - (x * x + y * y);
        for (int channel = 0; channel < 3; ++channel)
            texture->pixels[i * 4 + channel] = static_cast<uint8_t>(glowColor >> (16 - 8 * channel));
        texture->pixels[i * 4 + 3] = static_cast<uint8_t>(light > 0 ? 255 * light * light : 0);
    }
    texture->uploadTexture(0);
    Material* material = new Material;
    material->addFirstTexture(texture);
    return material;
}

// One vertex, one face: see "Glow sprites" in docs/rendering.md.
static void addGlow(OGroup* group, const Vertex3D& place)
{
    Mesh* glow = new Mesh;
    glow->createVertices(1);
    glow->createFaces(1);
    glow->originalVertices[0] = glow->calculatedVertices[0] = {0, 0, 0};
    glow->position = place;
    Material* material = makeGlow();
    group->activeTList->addMaterial(material);
    glow->faceMaterials[0].materialIndex = material->id;
    glow->setSpecial(1);
    glow->specialFade = 1.0f; // as after a second of being seen
    group->addMesh(glow);
}

int main(int argc, char** argv)
{
    if (argc != 4)
    {
        std::fprintf(stderr, "usage: make_flags SCENE.3DS FOLDER_OF_IMAGES FOLDER_OF_PICTURES\n");
        return 2;
    }
    const Surface surface(width * samples, height * samples);
    if (initVornik(0, surface.window()) != 0)
        return 1;
    Scene scene;
    OGroup* group = load(&scene, argv[1], argv[2]);
    if (!group || !scene.camera)
        return 1;
    vrkInitTransparentPlaneStack(50000);
    Camera* camera = scene.camera;
    vrkSetFOV(35.0f);

    const std::string folder = std::string(argv[3]) + "/flags-";
    const auto style = [&](int flags)
    { return [&scene, flags] { scene.render(flags | VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW); }; };
    const auto sorted = [&]
    {
        scene.render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT);
        vrkDepthMask(VRK_FALSE);
        vrkDrawTransparentPlanes(camera);
        vrkDepthMask(VRK_TRUE);
    };
    const auto effect = [&]
    {
        scene.render(VRK_RENDER_SOLID);
        vrkBlendFunc(VRK_DST_COLOR, VRK_ONE); // light on what is light already
        scene.render(VRK_RENDER_EFFECT | VRK_RENDER_NOTEXTURE);
    };
    const auto special = [&]
    {
        sorted();
        scene.render(VRK_RENDER_SPECIAL);
    };

    bool good = draw(folder + "solid.jpg", [&] { scene.render(VRK_RENDER_SOLID); });
    good = draw(folder + "transparent.jpg", sorted) && good;
    good = draw(folder + "transparent-now.jpg", style(0)) && good;
    good = draw(folder + "wire.jpg", style(VRK_RENDER_WIRE)) && good;
    good = draw(folder + "flat.jpg", style(VRK_RENDER_FLAT)) && good;
    good = draw(folder + "notexture.jpg", style(VRK_RENDER_NOTEXTURE)) && good;
    good = draw(folder + "effect.jpg", effect) && good;

    for (int i = 0; i < group->lightCount; ++i)
        if (std::string(group->lights[i]->name).rfind("Lamp", 0) == 0)
            addGlow(group, group->lights[i]->location);
    good = draw(folder + "special.jpg", special) && good;

    // From inside a house, whose walls look outward.
    const Object* house = group->findObject("House E4");
    if (!house)
        return 1;
    const Vertex3D& room = house->position;
    camera->moveTo(room.x + 0.3f, room.y, room.z, room.x - 1, room.y - 0.3f, room.z);
    vrkSetFOV(48.0f);
    good = draw(folder + "inside.jpg", style(0)) && good;
    good = draw(folder + "twosided.jpg", style(VRK_RENDER_TWOSIDED)) && good;
    return good ? 0 : 1;
}
