#include "apps/vornik/render.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "apps/vornik/animate.h"
#include "apps/vornik/animatedpng.h"
#include "apps/vornik/materials.h"
#include "apps/vornik/progressbar.h"
#include "apps/vornik/text.h"

// From 1 as the file has them; 0 frames the scene.
static int chosenCamera(const OGroup& group, const RenderOptions& options)
{
    return options.camera >= 0 ? options.camera : std::min(group.cameraCount, 1);
}

static View chooseView(OGroup* group, const RenderOptions& options)
{
    const int camera = chosenCamera(*group, options);
    if (camera > 0)
    {
        if (group->animated)
            group->doCameraAnim(group->cameras[camera - 1]);
        return cameraView(group, camera - 1, options.load.classic);
    }
    const float aspect =
        static_cast<float>(options.picture.width) / static_cast<float>(options.picture.height);
    return framedView(group, aspect, options.framing);
}

static void reportEmptyPicture(const Image& picture, int camera)
{
    const size_t pixel = 3;
    const bool plain = std::equal(picture.rgb.begin() + pixel, picture.rgb.end(), picture.rgb.begin(),
                                  picture.rgb.end() - pixel);
    if (plain && camera > 0)
        std::fprintf(stderr, "camera %d sees nothing of the scene; --camera 0 shows all of it\n", camera);
}

// What stands in the way of a picture before the engine starts; empty if nothing does.
static std::string problemBefore(const RenderOptions& options, const SceneFile& file)
{
    const SceneFault fault = file.fault();
    if (fault != SceneFault::none && !(fault == SceneFault::cut && options.partial))
        return file.faultText();
    return problemOf(options.load, file);
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

// "a/b.png" and 7 give "a/b-0007.png".
static std::string numberedName(const std::string& path, int frame)
{
    const std::filesystem::path whole(path);
    char number[16];
    std::snprintf(number, sizeof number, "-%04d", frame);
    return (whole.parent_path() / (whole.stem().string() + number + whole.extension().string())).string();
}

// Draws the frames one by one. @return what went wrong; empty if nothing did
static std::string drawFrames(OGroup* group, const RenderOptions& options, const std::string& output)
{
    const FrameRange& frames = options.frames;
    AnimatedPng film;
    const bool oneFile = frames.isFilm && isAnimationName(output);
    std::string problem;
    for (int i = 0; i < frames.count() && problem.empty(); ++i)
    {
        const int frame = frames.first + i * frames.step;
        showFrame(group, frame, frame);
        View view = chooseView(group, options);
        if (i == 0 && options.lights.empty())
            lightScene(group, view, options.light);
        if (options.moved)
            options.moved(group, frame);
        const Image picture = drawPicture(group, &view, options.picture);
        if (i == 0 && !options.quiet)
            reportEmptyPicture(picture, chosenCamera(*group, options));

        if (!oneFile)
            problem = saveImage(frames.isFilm ? numberedName(output, frame) : output, picture);
        else if (i == 0)
            problem =
                film.begin(output, picture.width, picture.height, frames.count(), frames.picturesASecond);
        if (oneFile && problem.empty())
            problem = film.add(picture);
        if (frames.isFilm)
            showProgress(static_cast<float>(i + 1) / static_cast<float>(frames.count()));
    }
    clearProgress();
    if (oneFile && problem.empty())
        problem = film.end();
    return problem;
}

int render(const RenderOptions& options)
{
    if (options.quiet)
        silenceProgress();
    const SceneFile file = readSceneFile(options.scene, options.load.pack);
    std::string problem = problemBefore(options, file);
    if (!problem.empty())
        return fail(problem);

    const std::string output = std::filesystem::absolute(options.output).string();
    const std::string lights =
        options.lights.empty() ? "" : std::filesystem::absolute(options.lights).string();
    vrkInitErrorLog(3); // this host tells itself what matters
    problem = startDrawing(options.picture);
    if (!problem.empty())
        return fail(problem);
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    problem = problemAfter(options, group);
    if (!problem.empty())
        return fail(problem);

    const std::vector<ImageUse> images = findImages(group, file.pack);
    if (!options.quiet)
        reportMissingImages(images);
    completeMaterials(group, images, file.pack, options.load.classic);

    if (!options.lights.empty())
        problem = takeBakedLight(group, lights);
    if (!problem.empty())
        return fail(options.lights + ": " + problem);
    if (options.loaded)
        options.loaded(group);
    problem = drawFrames(group, options, output);
    return problem.empty() ? 0 : fail(options.output + ": " + problem);
}
