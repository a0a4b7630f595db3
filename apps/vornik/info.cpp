#include "apps/vornik/info.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "apps/vornik/json.h"
#include "apps/vornik/progressbar.h"
#include "apps/vornik/text.h"

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
        totals.missingImages += image.state != ImageState::read;
    return totals;
}

static const char* stateNote(ImageState state)
{
    switch (state)
    {
    case ImageState::missing:
        return "missing";
    case ImageState::unreadable:
        return "unreadable";
    case ImageState::read:
        break;
    }
    return "found";
}

/// Rows of texts, printed in columns as wide as their longest text.
class Table
{
public:
    explicit Table(const std::string& title) { rows.push_back({title}); }

    void add(const std::vector<std::string>& row) { rows.push_back(row); }

    /// A title, with the number of rows behind it, and the rows.
    void print() const
    {
        std::printf("%s: %zu\n", rows[0][0].c_str(), rows.size() - 1);
        std::vector<size_t> widths;
        for (size_t row = 1; row < rows.size(); ++row)
            for (size_t i = 0; i < rows[row].size(); ++i)
            {
                widths.resize(std::max(widths.size(), i + 1));
                widths[i] = std::max(widths[i], columns(rows[row][i]));
            }
        for (size_t row = 1; row < rows.size(); ++row)
        {
            std::string line = " ";
            for (size_t i = 0; i < rows[row].size(); ++i)
                line += " " + padded(rows[row][i], widths[i] + 1);
            line.erase(line.find_last_not_of(' ') + 1);
            std::printf("%s\n", line.c_str());
        }
    }

private:
    std::vector<std::vector<std::string>> rows;
};

static std::string figure(float value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
    return text;
}

static std::string place(const Vertex3D& v)
{
    return "at " + figure(v.x) + " " + figure(v.y) + " " + figure(v.z);
}

static void printMeshes(const OGroup& group)
{
    Table table("meshes");
    for (int i = 0; i < group.meshCount; ++i)
    {
        const Mesh& mesh = *group.meshes[i];
        table.add({printable(objectName(mesh)), std::to_string(mesh.vertexCount) + " vertices",
                   std::to_string(mesh.faceCount) + " faces", mesh.visible ? "" : "hidden"});
    }
    table.print();
}

// An opacity image has taken the place of the percentage.
static float ownTransparency(const Material& material)
{
    return material.opacityTexture ? 0.0f : material.transparency;
}

static void printMaterials(const OGroup& group, const std::vector<ImageUse>& images)
{
    Table table("materials");
    for (int i = 0; i < group.tlistCount; ++i)
        for (const Material* material = group.tlists[i]->first->next; material; material = material->next)
            table.add({printable(material->name), material->twoSided ? "two-sided" : "",
                       ownTransparency(*material) != 0.0f ? "transparent" : ""});
    table.print();

    Table used("images");
    for (const ImageUse& image : images)
        used.add({printable(image.texture->names[0]), stateNote(image.state), image.role,
                  printable(image.material->name)});
    used.print();
}

static void printLightsAndCameras(const OGroup& group)
{
    Table lights("lights");
    for (int i = 0; i < group.lightCount; ++i)
    {
        const Light& light = *group.lights[i];
        lights.add(
            {printable(objectName(light)), place(light.location),
             "colour " + figure(light.color.r) + " " + figure(light.color.g) + " " + figure(light.color.b),
             "range " + figure(light.innerRange) + " to " + figure(light.outerRange)});
    }
    lights.print();

    Table cameras("cameras");
    for (int i = 0; i < group.cameraCount; ++i)
    {
        const Camera& camera = *group.cameras[i];
        cameras.add({std::to_string(i + 1), printable(objectName(camera)), place(camera.eye),
                     "field of view " + figure(camera.fov) + " degrees"});
    }
    cameras.print();
}

static void printForPeople(const SceneFile& file, const OGroup& group, const std::vector<ImageUse>& images,
                           const KeyframeFigures& keyframes)
{
    const Totals totals = countAll(group, images);
    std::printf("%s: %zu bytes, %d vertices, %d faces\n", printable(file.path).c_str(), file.bytes.size(),
                totals.vertices, totals.faces);
    printMeshes(group);
    printMaterials(group, images);
    printLightsAndCameras(group);
    std::printf("keyframes: %d nodes (%d dummies), %d tracks (%d with more than one key), frames %d to %d\n",
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
                                       .add("found", image.state != ImageState::missing)
                                       .add("readable", image.state == ImageState::read)
                                       .add("width", image.texture->width)
                                       .add("height", image.texture->height)
                                       .text());
            materials.push_back(JsonObject()
                                    .add("name", material->name)
                                    .add("twoSided", material->twoSided != 0)
                                    .add("transparency", ownTransparency(*material))
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
                             const KeyframeFigures& keyframes, const std::string& octreeFields)
{
    const Totals totals = countAll(group, images);
    const std::string keyframeFields = JsonObject()
                                           .add("nodes", keyframes.nodes)
                                           .add("dummies", keyframes.dummies)
                                           .add("tracks", keyframes.tracks)
                                           .add("animatedTracks", keyframes.animatedTracks)
                                           .add("keys", keyframes.keys)
                                           .add("firstFrame", keyframes.firstFrame)
                                           .add("lastFrame", keyframes.lastFrame)
                                           .text();
    JsonObject all;
    all.add("file", file.path)
        .add("bytes", file.bytes.size())
        .add("vertices", totals.vertices)
        .add("faces", totals.faces)
        .add("missingImages", totals.missingImages)
        .addRaw("meshes", jsonMeshes(group))
        .addRaw("materials", jsonMaterials(group, images))
        .addRaw("lights", jsonLights(group))
        .addRaw("cameras", jsonCameras(group))
        .addRaw("keyframes", keyframeFields);
    if (!octreeFields.empty())
        all.addRaw("octree", octreeFields);
    std::printf("%s\n", all.text().c_str());
}

struct TreeFigures
{
    int nodes = 0, leaves = 0, depth = 0, references = 0, planes = 0;
    size_t bytes = 0;
    double seconds = 0;
};

static void count(const octreeNode* node, TreeFigures* figures)
{
    ++figures->nodes;
    figures->depth = std::max(figures->depth, static_cast<int>(node->depth));
    figures->references += node->polys.size;
    figures->bytes += sizeof(octreeNode) + static_cast<size_t>(node->polys.room) * sizeof(OTPolyData);
    figures->leaves += !node->hasChildren;
    for (const Plane* plane = node->planes; plane; plane = plane->next)
    {
        ++figures->planes;
        figures->bytes += sizeof(Plane) + static_cast<size_t>(plane->faceCount) * sizeof(PlaneList);
    }
    for (const octreeNode* child : node->child)
        if (child)
            count(child, figures);
}

static TreeFigures buildTree(OGroup* group)
{
    TreeFigures figures;
    const auto begin = std::chrono::steady_clock::now();
    if (group->constructOctree() != 0)
        return figures;
    figures.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    count(group->octree, &figures);
    return figures;
}

static std::string jsonTree(const TreeFigures& tree)
{
    return JsonObject()
        .add("nodes", tree.nodes)
        .add("leaves", tree.leaves)
        .add("depth", tree.depth)
        .add("references", tree.references)
        .add("planes", tree.planes)
        .add("bytes", tree.bytes)
        .add("seconds", static_cast<float>(tree.seconds))
        .text();
}

static void printTree(const TreeFigures& tree)
{
    std::printf("\nOctree: %d leaves, depth %d, %.1f faces a leaf, %d planes, %.1f MB, built in %.3f s\n",
                tree.leaves, tree.depth,
                tree.leaves > 0 ? static_cast<double>(tree.references) / tree.leaves : 0.0, tree.planes,
                static_cast<double>(tree.bytes) / 1e6, tree.seconds);
}

int info(const InfoOptions& options)
{
    silenceProgress();
    const SceneFile file = readSceneFile(options.scene, options.load.pack);
    if (file.fault() != SceneFault::none)
        return fail(file.faultText());
    const std::string problem = problemOf(options.load, file);
    if (!problem.empty())
        return fail(problem);

    vrkInitErrorLog(3);
    vrkSelectRasterizer(2); // a silent engine: files are read, nothing is drawn
    Scene scene;
    OGroup* group = loadScene(&scene, file, options.load);
    if (!group)
        return fail(options.scene + ": the engine can't read the file");
    const std::vector<ImageUse> images = findImages(group, file.pack);
    const KeyframeFigures keyframes = countKeyframes(file);
    TreeFigures tree;
    if (options.octree)
        tree = buildTree(group);
    if (options.json)
        printForPrograms(file, *group, images, keyframes, options.octree ? jsonTree(tree) : "");
    else
        printForPeople(file, *group, images, keyframes);
    if (options.octree && !options.json)
        printTree(tree);
    return 0;
}
