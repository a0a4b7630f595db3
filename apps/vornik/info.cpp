#include "apps/vornik/info.h"

#include <cstdio>
#include <filesystem>

#include "apps/vornik/json.h"
#include "apps/vornik/progressbar.h"

static std::string objectName(const Object& object)
{
    return object.name ? object.name : "";
}

struct Totals
{
    int vertices = 0;
    int faces = 0;
    int materials = 0;
    int missingImages = 0;
};

static Totals countAll(const OGroup& group, const std::vector<ImageUse>& images)
{
    Totals totals;
    for (int i = 0; i < group.meshCount; ++i)
    {
        totals.vertices += group.meshes[i]->vertexCount;
        totals.faces += group.meshes[i]->faceCount;
    }
    // Number 0 is the list's own default material.
    for (int i = 0; i < group.tlistCount; ++i)
        for (const Material* material = group.tlists[i]->first->next; material; material = material->next)
            ++totals.materials;
    for (const ImageUse& image : images)
        totals.missingImages += !image.found;
    return totals;
}

static void printForPeople(const SceneFile& file, const OGroup& group, const std::vector<ImageUse>& images,
                           const KeyframeFigures& keyframes)
{
    const Totals totals = countAll(group, images);
    std::printf("%s: %zu bytes\n\n", file.path.c_str(), file.bytes.size());
    std::printf("%-20s %8s %8s  %s\n", "mesh", "vertices", "faces", "");
    for (int i = 0; i < group.meshCount; ++i)
    {
        const Mesh& mesh = *group.meshes[i];
        std::printf("%-20s %8d %8d  %s\n", objectName(mesh).c_str(), mesh.vertexCount, mesh.faceCount,
                    mesh.visible ? "" : "hidden");
    }
    std::printf("%-20s %8d %8d\n\n", (std::to_string(group.meshCount) + " in all").c_str(), totals.vertices,
                totals.faces);

    std::printf("materials: %d\n", totals.materials);
    for (int i = 0; i < group.tlistCount; ++i)
        for (const Material* material = group.tlists[i]->first->next; material; material = material->next)
        {
            std::printf("  %s\n", material->name);
            for (const ImageUse& image : images)
                if (image.material == material)
                    std::printf("    %-14s %s%s\n", image.role, image.texture->names[0],
                                image.found ? "" : "  (missing)");
        }

    std::printf("lights: %d\n", group.lightCount);
    for (int i = 0; i < group.lightCount; ++i)
    {
        const Light& light = *group.lights[i];
        std::printf("  %-18s at %g %g %g, colour %.3g %.3g %.3g, range %g to %g\n", objectName(light).c_str(),
                    static_cast<double>(light.location.x), static_cast<double>(light.location.y),
                    static_cast<double>(light.location.z), static_cast<double>(light.color.r),
                    static_cast<double>(light.color.g), static_cast<double>(light.color.b),
                    static_cast<double>(light.innerRange), static_cast<double>(light.outerRange));
    }
    std::printf("cameras: %d\n", group.cameraCount);
    for (int i = 0; i < group.cameraCount; ++i)
    {
        const Camera& camera = *group.cameras[i];
        std::printf("  %d %-16s at %g %g %g, field of view %.4g degrees\n", i + 1, objectName(camera).c_str(),
                    static_cast<double>(camera.eye.x), static_cast<double>(camera.eye.y),
                    static_cast<double>(camera.eye.z), static_cast<double>(camera.fov));
    }
    std::printf("animation: %d nodes (%d dummies), %d tracks (%d with more than one key), frames %d to %d\n",
                keyframes.nodes, keyframes.dummies, keyframes.tracks, keyframes.animatedTracks,
                keyframes.firstFrame, keyframes.lastFrame);
}

static std::string jsonVertex(const Vertex3D& v)
{
    return jsonNumbers({v.x, v.y, v.z});
}

static std::string jsonMeshes(const OGroup& group)
{
    std::vector<std::string> meshes;
    for (int i = 0; i < group.meshCount; ++i)
    {
        const Mesh& mesh = *group.meshes[i];
        meshes.push_back(JsonObject()
                             .add("name", objectName(mesh))
                             .add("vertices", mesh.vertexCount)
                             .add("faces", mesh.faceCount)
                             .add("visible", mesh.visible != 0)
                             .text());
    }
    return jsonArray(meshes);
}

static std::string jsonMaterials(const OGroup& group, const std::vector<ImageUse>& images)
{
    std::vector<std::string> materials;
    for (int i = 0; i < group.tlistCount; ++i)
        for (const Material* material = group.tlists[i]->first->next; material; material = material->next)
        {
            std::vector<std::string> used;
            for (const ImageUse& image : images)
                if (image.material == material)
                    used.push_back(JsonObject()
                                       .add("role", image.role)
                                       .add("name", image.texture->names[0])
                                       .add("found", image.found)
                                       .add("width", image.found ? image.texture->width : 0)
                                       .add("height", image.found ? image.texture->height : 0)
                                       .text());
            materials.push_back(JsonObject()
                                    .add("name", material->name)
                                    .add("twoSided", material->twoSided != 0)
                                    .add("transparency", material->transparency)
                                    .addRaw("images", jsonArray(used))
                                    .text());
        }
    return jsonArray(materials);
}

static std::string jsonLights(const OGroup& group)
{
    std::vector<std::string> lights;
    for (int i = 0; i < group.lightCount; ++i)
    {
        const Light& light = *group.lights[i];
        lights.push_back(JsonObject()
                             .add("name", objectName(light))
                             .addRaw("position", jsonVertex(light.location))
                             .addRaw("color", jsonNumbers({light.color.r, light.color.g, light.color.b}))
                             .add("innerRange", light.innerRange)
                             .add("outerRange", light.outerRange)
                             .text());
    }
    return jsonArray(lights);
}

static std::string jsonCameras(const OGroup& group)
{
    std::vector<std::string> cameras;
    for (int i = 0; i < group.cameraCount; ++i)
    {
        const Camera& camera = *group.cameras[i];
        cameras.push_back(JsonObject()
                              .add("name", objectName(camera))
                              .addRaw("eye", jsonVertex(camera.eye))
                              .addRaw("target", jsonVertex(camera.target))
                              .add("roll", camera.roll)
                              .add("fov", camera.fov)
                              .text());
    }
    return jsonArray(cameras);
}

static void printForPrograms(const SceneFile& file, const OGroup& group, const std::vector<ImageUse>& images,
                             const KeyframeFigures& keyframes)
{
    const Totals totals = countAll(group, images);
    const std::string animation = JsonObject()
                                      .add("nodes", keyframes.nodes)
                                      .add("dummies", keyframes.dummies)
                                      .add("tracks", keyframes.tracks)
                                      .add("animatedTracks", keyframes.animatedTracks)
                                      .add("keys", keyframes.keys)
                                      .add("firstFrame", keyframes.firstFrame)
                                      .add("lastFrame", keyframes.lastFrame)
                                      .text();
    const std::string text = JsonObject()
                                 .add("file", file.path)
                                 .add("bytes", static_cast<int>(file.bytes.size()))
                                 .add("vertices", totals.vertices)
                                 .add("faces", totals.faces)
                                 .add("missingImages", totals.missingImages)
                                 .addRaw("meshes", jsonMeshes(group))
                                 .addRaw("materials", jsonMaterials(group, images))
                                 .addRaw("lights", jsonLights(group))
                                 .addRaw("cameras", jsonCameras(group))
                                 .addRaw("animation", animation)
                                 .text();
    std::printf("%s\n", text.c_str());
}

int info(const InfoOptions& options)
{
    const SceneFile file = readSceneFile(options.scene);
    if (file.fault() != SceneFault::none)
    {
        std::fprintf(stderr, "vornik: %s\n", file.faultText().c_str());
        return 1;
    }
    vrkInitErrorLog(3);
    vrkSelectRasterizer(2); // a silent engine: files are read, nothing is drawn
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    if (!group)
    {
        std::fprintf(stderr, "vornik: %s: the engine can't read the file\n", options.scene.c_str());
        return 1;
    }
    const std::vector<ImageUse> images = findImages(group);
    const KeyframeFigures keyframes = countKeyframes(file);
    if (options.json)
        printForPrograms(file, *group, images, keyframes);
    else
        printForPeople(file, *group, images, keyframes);
    return 0;
}
