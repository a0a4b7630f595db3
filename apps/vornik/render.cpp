#include "apps/vornik/render.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "apps/vornik/materials.h"
#include "apps/vornik/progressbar.h"
#include "apps/vornik/text.h"

static float aspectOf(const PictureOptions& picture)
{
    return static_cast<float>(picture.width) / static_cast<float>(picture.height);
}

static View chooseView(OGroup* group, const RenderOptions& options)
{
    const float aspect = aspectOf(options.picture);
    const int wanted = options.camera >= 0 ? options.camera : std::min(group->cameraCount, 1);
    if (wanted == 0)
        return framedView(group, aspect, options.framing);

    const View view = cameraView(group, wanted - 1, options.load.classic);
    if (!options.quiet && !seesAnything(group, view, aspect))
        std::fprintf(stderr, "camera %d sees nothing of the scene; --camera 0 shows all of it\n", wanted);
    return view;
}

// What stands in the way of a picture before the engine starts; empty if nothing does.
static std::string problemBefore(const RenderOptions& options, const SceneFile& file)
{
    const SceneFault fault = file.fault();
    if (fault != SceneFault::none && !(fault == SceneFault::cut && options.partial))
        return file.faultText();
    return problemOf(options.load);
}

// And what stands in its way once the scene is loaded.
static std::string problemAfter(const RenderOptions& options, OGroup* group)
{
    if (!group)
        return options.scene + ": the engine can't read the file";
    if (!hasVisibleFaces(group))
        return options.scene + ": there is nothing in it to draw";
    if (options.camera > group->cameraCount)
        return options.scene + ": there is no camera " + std::to_string(options.camera) + ", the file has " +
               std::to_string(group->cameraCount);
    return "";
}

int render(const RenderOptions& options)
{
    if (options.quiet)
        silenceProgress();
    const SceneFile file = readSceneFile(options.scene);
    std::string problem = problemBefore(options, file);
    if (!problem.empty())
        return fail(problem);

    const std::string output = std::filesystem::absolute(options.output).string();
    vrkInitErrorLog(3); // this host tells itself what matters
    if (!startDrawing(options.picture))
        return fail("can't start OpenGL off-screen");
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    problem = problemAfter(options, group);
    if (!problem.empty())
        return fail(problem);

    const std::vector<ImageUse> images = findImages(group);
    if (!options.quiet)
        reportMissingImages(images);
    completeMaterials(group, images, options.load.classic);

    View view = chooseView(group, options);
    lightScene(group, view, readLamps(file), options.light);
    problem = saveImage(output, drawPicture(group, &view, options.picture));
    return problem.empty() ? 0 : fail(options.output + ": " + problem);
}
