#include "bench/peers/flatscene.h"

#include <GL/gl.h>

#include <cstdio>
#include <map>

#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

static FlatImage readBack(const Texture& texture)
{
    FlatImage image;
    glBindTexture(GL_TEXTURE_2D, GLuint(texture.textureIDs[0]));
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &image.width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &image.height);
    image.mipmap = texture.mipmap;
    image.rgba.resize(size_t(image.width) * size_t(image.height) * 4);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    return image;
}

static FlatMesh flattenMesh(const Mesh& mesh)
{
    FlatMesh flat;
    const int vertices = mesh.vertexCount;
    flat.position = mesh.position;
    flat.vertices.assign(mesh.calculatedVertices, mesh.calculatedVertices + vertices);
    flat.normals.assign(mesh.calculatedNormals, mesh.calculatedNormals + vertices);
    flat.coords.assign(mesh.textureCoords, mesh.textureCoords + vertices);
    flat.colors.assign(mesh.vertexColors, mesh.vertexColors + vertices);
    flat.faces.assign(mesh.faces, mesh.faces + mesh.faceCount);
    return flat;
}

FlatScene flatten(const OGroup& group)
{
    FlatScene scene;
    vrkGetModelViewMatrix(scene.view);
    vrkGetProjectionMatrix(scene.projection);
    std::map<const Texture*, int32_t> imageOf;
    for (int i = 0; i < group.meshCount; ++i)
    {
        const Mesh& mesh = *group.meshes[i];
        if (!mesh.visible || !mesh.materialFaces || mesh.faceCount == 0)
            continue;
        scene.meshes.push_back(flattenMesh(mesh));
        for (int r = 0; r < mesh.materialFaces->count; ++r)
        {
            const MaterialFaceRange& range = mesh.materialFaces->ranges[r];
            const Material* material =
                group.activeTList->getMaterial(mesh.faceMaterials[range.first].materialIndex);
            if (!material || material->transparency != 0.0f || !material->firstTexture ||
                material->firstTexture->environment == VRK_DECAL)
                continue;
            const auto [image, isNew] =
                imageOf.try_emplace(material->firstTexture, int32_t(scene.images.size()));
            if (isNew)
                scene.images.push_back(readBack(*material->firstTexture));
            scene.meshes.back().ranges.push_back(
                {range.first, range.last, image->second, material->twoSided});
        }
    }
    return scene;
}

namespace
{
struct Writer
{
    FILE* file;
    template <class T>
    void value(const T& v)
    {
        std::fwrite(static_cast<const void*>(&v), sizeof v, 1, file);
    }
    template <class T>
    void list(const std::vector<T>& v)
    {
        value(uint32_t(v.size()));
        std::fwrite(static_cast<const void*>(v.data()), sizeof(T), v.size(), file);
    }
};

struct Reader
{
    FILE* file;
    template <class T>
    void value(T& v)
    {
        if (std::fread(static_cast<void*>(&v), sizeof v, 1, file) != 1)
            v = {};
    }
    template <class T>
    void list(std::vector<T>& v)
    {
        uint32_t count = 0;
        value(count);
        v.resize(count);
        v.resize(std::fread(static_cast<void*>(v.data()), sizeof(T), count, file));
    }
};
} // namespace

// Both directions in one order. Scene is constant for writing.
template <class Stream, class Scene>
static void pass(Stream stream, Scene& scene, uint32_t images, uint32_t meshes)
{
    for (auto& element : scene.view)
        stream.value(element);
    for (auto& element : scene.projection)
        stream.value(element);
    for (uint32_t i = 0; i < images; ++i)
    {
        auto& image = scene.images[i];
        stream.value(image.width);
        stream.value(image.height);
        stream.value(image.mipmap);
        stream.list(image.rgba);
    }
    for (uint32_t i = 0; i < meshes; ++i)
    {
        auto& mesh = scene.meshes[i];
        stream.value(mesh.position);
        stream.list(mesh.vertices);
        stream.list(mesh.normals);
        stream.list(mesh.coords);
        stream.list(mesh.colors);
        stream.list(mesh.faces);
        stream.list(mesh.ranges);
    }
}

bool writeFlatScene(const FlatScene& scene, const std::string& file)
{
    FILE* const out = std::fopen(file.c_str(), "wb");
    if (!out)
        return false;
    Writer writer = {out};
    const auto images = uint32_t(scene.images.size()), meshes = uint32_t(scene.meshes.size());
    writer.value(images);
    writer.value(meshes);
    pass(writer, scene, images, meshes);
    return std::fclose(out) == 0;
}

FlatScene readFlatScene(const std::string& file)
{
    FlatScene scene;
    FILE* const in = std::fopen(file.c_str(), "rb");
    if (!in)
        return scene;
    Reader reader = {in};
    uint32_t images = 0, meshes = 0;
    reader.value(images);
    reader.value(meshes);
    scene.images.resize(images);
    scene.meshes.resize(meshes);
    pass(reader, scene, images, meshes);
    std::fclose(in);
    return scene;
}
