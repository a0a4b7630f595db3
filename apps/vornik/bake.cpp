#include "apps/vornik/bake.h"

#include <filesystem>

#include "apps/vornik/picture.h"
#include "apps/vornik/progressbar.h"
#include "apps/vornik/text.h"

int bake(const BakeOptions& options)
{
    if (options.quiet)
        silenceProgress();
    const SceneFile file = readSceneFile(options.scene, options.load.pack);
    if (file.fault() != SceneFault::none)
        return fail(file.faultText());
    std::string problem = problemOf(options.load, file);
    if (!problem.empty())
        return fail(problem);

    const std::string output = std::filesystem::absolute(options.output).string();
    vrkInitErrorLog(3);
    PictureOptions surface; // places are worked out by the rasterizer
    surface.width = surface.height = 16;
    surface.samples = 1;
    problem = startDrawing(surface);
    if (!problem.empty())
        return fail(problem);
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    if (!group)
        return fail(options.scene + ": the engine can't read the file");
    if (!hasVisibleFaces(group))
        return fail(options.scene + ": there is nothing in it to light");
    const View view =
        group->cameraCount > 0 ? cameraView(group, 0, options.load.classic) : framedView(group, 1.0f, {});
    lightScene(group, view, options.light);
    problem = saveBakedLight(group, output);
    return problem.empty() ? 0 : fail(options.output + ": " + problem);
}
