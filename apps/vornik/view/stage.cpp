#include "apps/vornik/view/stage.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

#include "apps/vornik/drawing.h"
#include "apps/vornik/materials.h"

namespace fs = std::filesystem;

std::string problemOf(const StageOptions& options, const SceneFile& file)
{
    const SceneFault fault = file.fault();
    if (fault != SceneFault::none && !(fault == SceneFault::cut && options.partial))
        return file.faultText();
    return problemOf(options.load, file);
}

int reportOfEngine(const SceneFile& file)
{
    const SceneFault fault = file.fault();
    if (fault == SceneFault::none || fault == SceneFault::cut) // it reads what there is
        return 0;
    const auto none = std::make_unique<OGroup>();
    return load3ds(file.path.c_str(), none.get(), "", 0, nullptr, nullptr);
}

Stage::Stage() = default;

Stage::~Stage()
{
    vrkUnInitTransparentPlaneStack();
}

// Loading moves the process into the folder of the images; screen shots belong where the user started.
class KeptFolder
{
public:
    KeptFolder() : folder(fs::current_path(failed)) {}
    KeptFolder(const KeptFolder&) = delete;
    KeptFolder& operator=(const KeptFolder&) = delete;
    ~KeptFolder() { fs::current_path(folder, failed); }

private:
    std::error_code failed;
    fs::path folder;
};

// A scene without lamps is lit from where it is first seen.
static View viewToLight(OGroup* group, const View& framed, const StageOptions& options)
{
    const int camera = options.camera < 0 ? 1 : options.camera;
    if (camera == 0 || camera > group->cameraCount)
        return framed;
    if (group->animated)
        group->doCameraAnim(group->cameras[camera - 1]);
    return cameraView(group, camera - 1, options.load.classic);
}

std::string Stage::load(const SceneFile& file, const StageOptions& options, float aspect)
{
    std::string problem = problemOf(options, file);
    if (!problem.empty())
        return problem;
    const std::string lights = options.lights.empty() ? "" : fs::absolute(options.lights).string();
    const KeptFolder kept;
    OGroup* loaded = loadScene(&scene, file, options.load);
    if (!loaded)
        return file.path + ": the engine can't read the file";
    if (!hasVisibleFaces(loaded))
    {
        scene.deleteOGroup(loaded);
        return file.path + ": there is nothing in it to draw";
    }

    const std::vector<ImageUse> images = findImages(loaded, file.pack);
    completeMaterials(loaded, images, file.pack, options.load.classic);
    const View framed = framedView(loaded, aspect, options.framing);
    std::string trouble;
    if (!options.lights.empty())
        trouble = takeBakedLight(loaded, lights);
    else
        lightScene(loaded, viewToLight(loaded, framed, options), options.light);
    if (!trouble.empty())
    {
        scene.deleteOGroup(loaded);
        return options.lights + ": " + trouble;
    }

    if (group)
        scene.deleteOGroup(group);
    missingImages = static_cast<int>(std::count_if(
        images.begin(), images.end(), [](const ImageUse& image) { return image.state != ImageState::read; }));
    name = fs::path(file.path).filename().string();
    takeGroup();
    takeViews(framed, aspect);
    return "";
}

Stage::Identity Stage::identify() const
{
    Identity identity;
    const OGroup* first = scene.groups[0];
    if (scene.groupCount == 0 || !first)
        return identity;
    identity.group = first;
    identity.stamp = first->meshCount > 0 ? first->meshes[0]->specialType : 0;
    identity.meshes = first->meshCount;
    identity.tlists = first->tlistCount;
    identity.pathLists = first->pathListCount;
    return identity;
}

bool Stage::hasChanged() const
{
    return !(identify() == known);
}

// Around all that a group shows in the course of its animation, by a few of its frames.
static Bounds boundsInMotion(OGroup* group)
{
    const int samples = group->animated && group->frameCount > 1 ? 8 : 1;
    const int frame = group->currentFrame;
    Bounds all = emptyBounds();
    for (int i = 0; i < samples; ++i)
    {
        if (samples > 1)
            group->setCurrentFrame(group->frameCount * i / samples);
        all.add(boundsOf(group));
    }
    group->setCurrentFrame(frame);
    return all;
}

void Stage::takeGroup()
{
    group = scene.groupCount > 0 ? scene.groups[0] : nullptr;
    // The type of a glow means nothing on a mesh that doesn't glow, and is 0 on every fresh one.
    if (group && group->meshCount > 0 && !group->meshes[0]->special)
        group->meshes[0]->specialType = ++lastStamp;
    known = identify();
    bounds = group ? boundsInMotion(group) : emptyBounds();
    core = group ? coreOf(group) : emptyBounds();
    faces = vertices = 0;
    if (!group)
        return;
    for (int i = 0; i < group->meshCount; ++i)
        if (group->meshes[i]->visible)
        {
            faces += group->meshes[i]->faceCount;
            vertices += group->meshes[i]->vertexCount;
        }
    vrkUnInitTransparentPlaneStack();
    vrkInitTransparentPlaneStack(transparentRoom(*group));
}

void Stage::takeViews(const View& first, float aspect)
{
    firstView = coreView = first;
    Vertex3D back = first.camera.eye - first.camera.target;
    back.normalize();
    const float halfAngle = std::atan(std::tan(vrkRad(first.camera.fov) / 2.0f) * std::min(aspect, 1.0f));
    back *= 0.5f * core.diagonal() / std::sin(halfAngle);
    coreView.camera.target = core.middle();
    coreView.camera.eye = core.middle() + back;
}

void Stage::adopt(const Framing& framing, float aspect)
{
    takeGroup();
    missingImages = 0;
    if (group && hasVisibleFaces(group))
        takeViews(framedView(group, aspect, framing), aspect);
}
