#include "apps/vornik/render.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <GL/gl.h>

#include "apps/vornik/camera.h"
#include "apps/vornik/imagefile.h"
#include "apps/vornik/progressbar.h"

enum
{
    mostPixelsOfSide = 8192,
    mostSurfaceSide = 16384
};

bool parseSize(const std::string& text, int* width, int* height)
{
    char rest;
    return std::sscanf(text.c_str(), "%dx%d%c", width, height, &rest) == 2 && *width >= 1 && *height >= 1 &&
           *width <= mostPixelsOfSide && *height <= mostPixelsOfSide;
}

bool parseColor(const std::string& text, Color* color)
{
    static const struct
    {
        const char* name;
        const char* digits;
    } names[] = {{"black", "000000"}, {"white", "ffffff"}, {"grey", "808080"}, {"gray", "808080"},
                 {"red", "c03030"},   {"green", "30a050"}, {"blue", "3050c0"}, {"sky", "9fc4e8"}};
    std::string digits = text;
    for (const auto& entry : names)
        if (text == entry.name)
            digits = entry.digits;
    if (!digits.empty() && digits[0] == '#')
        digits.erase(0, 1);
    if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return false;
    const long value = std::strtol(digits.c_str(), nullptr, 16);
    *color = {static_cast<float>(value >> 16) / 255.0f, static_cast<float>(value >> 8 & 255) / 255.0f,
              static_cast<float>(value & 255) / 255.0f, 1.0f};
    return true;
}

static int fail(const std::string& line)
{
    std::fprintf(stderr, "vornik: %s\n", line.c_str());
    return 1;
}

static bool startEngine(int width, int height)
{
    vrkInitErrorLog(3); // the host tells what matters itself
    const VRKNativeWindow surface = {nullptr, 0, width, height};
    return vrkSelectRasterizer(0) == 0 && vrkInitViewport(&surface, 32, 8, 24, false, 0, true) == 0;
}

static void reportMissingImages(const std::vector<ImageUse>& images)
{
    std::vector<std::string> told;
    for (const ImageUse& image : images)
    {
        const std::string name = image.texture->names[0];
        if (image.found || std::find(told.begin(), told.end(), name) != told.end())
            continue;
        told.push_back(name);
        std::fprintf(stderr, "missing image: %s\n", name.c_str());
    }
}

// What the engine leaves to a host that wants files to look as they were meant: a plain colour in the place
// of an image that is missing, reflection images, and opacity where the file tells transparency.
static void completeMaterials(OGroup* group, const std::vector<ImageUse>& images)
{
    for (const ImageUse& image : images)
    {
        Material* material = image.material;
        if (!image.found && image.texture == material->firstTexture)
        {
            delete material->firstTexture;
            material->firstTexture = nullptr;
            material->makeTextureFromColor();
        }
        else if (image.texture == material->reflectionTexture)
        {
            if (image.found && image.texture->loadTexture(image.texture->frameCount > 1 ? 1 : 0, 1.0f) == 0)
                image.texture->uploadTexture(0);
            else
            {
                delete material->reflectionTexture;
                material->reflectionTexture = nullptr;
            }
        }
    }
    for (int i = 0; i < group->tlistCount; ++i)
        for (Material* material = group->tlists[i]->first; material; material = material->next)
        {
            const bool ownAlpha = material->firstTexture && material->firstTexture->environment == VRK_DECAL;
            if (material->transparency != 0.0f && !ownAlpha)
                material->transparency = std::max(1.0f - material->transparency, 0.02f);
        }
}

static void draw(OGroup* group, View* view, int flags)
{
    lookThrough(view);
    group->render(flags | VRK_RENDER_SOLID, &view->camera);

    // Texels that are nearly opaque go first and write depth; the clear ones follow without, so that they
    // hide nothing.
    const float border = 0.5f;
    vrkEnable(VRK_ALPHA_TEST);
    vrkAlphaFunc(VRK_GREATER, border);
    group->render(flags | VRK_RENDER_TRANSPARENT_NOW, &view->camera);
    vrkAlphaFunc(VRK_LEQUAL, border);
    vrkDepthMask(VRK_FALSE);
    group->render(flags | VRK_RENDER_TRANSPARENT_NOW, &view->camera);
    vrkDepthMask(VRK_TRUE);
    vrkDisable(VRK_ALPHA_TEST);
}

static Image readSurface(int width, int height)
{
    Image image = {width, height,
                   std::vector<uint8_t>(static_cast<size_t>(width) * static_cast<size_t>(height) * 3)};
    const size_t stride = static_cast<size_t>(width) * 3;
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int y = 0; y < height; ++y)
        glReadPixels(0, height - 1 - y, width, 1, GL_RGB, GL_UNSIGNED_BYTE,
                     &image.rgb[static_cast<size_t>(y) * stride]);
    return image;
}

static bool hasFaces(const OGroup& group)
{
    for (int i = 0; i < group.meshCount; ++i)
        if (group.meshes[i]->faceCount > 0)
            return true;
    return false;
}

static View chooseView(OGroup* group, const RenderOptions& options)
{
    const int wanted = options.camera >= 0 ? options.camera : std::min(group->cameraCount, 1);
    if (wanted > 0)
        return cameraView(group, wanted - 1, options.load.classic);
    const float aspect = static_cast<float>(options.width) / static_cast<float>(options.height);
    return framedView(group, aspect, options.upAxis);
}

int render(const RenderOptions& options)
{
    if (options.quiet)
        silenceProgress();
    if (!isImageName(options.output))
        return fail(options.output + ": the picture's name must end in .png, .jpg or .jpeg");
    const SceneFile file = readSceneFile(options.scene);
    const bool drawable =
        file.fault() == SceneFault::none || (file.fault() == SceneFault::cut && options.partial);
    if (!drawable)
        return fail(file.faultText());
    if (!options.load.textures.empty() && !std::filesystem::is_directory(options.load.textures))
        return fail(options.load.textures + ": no such folder");

    const int samples =
        std::max(1, std::min(options.samples, mostSurfaceSide / std::max(options.width, options.height)));
    const int width = options.width * samples;
    const int height = options.height * samples;
    if (!startEngine(width, height))
        return fail("can't start OpenGL off-screen");

    const std::string output = std::filesystem::absolute(options.output).string();
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    if (!group)
        return fail(options.scene + ": the engine can't read the file");
    if (!hasFaces(*group))
        return fail(options.scene + ": there is nothing in it to draw");
    if (options.camera > group->cameraCount)
        return fail(options.scene + ": there is no camera " + std::to_string(options.camera) +
                    ", the file has " + std::to_string(group->cameraCount));

    const std::vector<ImageUse> images = findImages(group);
    if (!options.quiet)
        reportMissingImages(images);
    if (!options.load.classic)
        completeMaterials(group, images);

    View view = chooseView(group, options);
    lightScene(group, view.camera.eye, view.up, options.light);
    setProjection(group, view);
    Color background;
    parseColor(options.background, &background);
    vrkSetClearColor(&background);
    vrkClear();
    draw(group, &view, options.flags);

    const std::string problem = saveImage(output, shrink(readSurface(width, height), samples));
    return problem.empty() ? 0 : fail(options.output + ": " + problem);
}
