// Irrlicht's scene nodes, one for each mesh, without its culling: all is in view. Its triangles wind the
// other way, and its camera gets the matrices as they are.

#include <irrlicht/irrlicht.h>

#include <map>

#include "bench/peers/frames.h"

using namespace irr;

static core::matrix4 toIrrlicht(const float* elements)
{
    core::matrix4 matrix;
    matrix.setM(elements);
    return matrix;
}

static video::ITexture* makeTexture(video::IVideoDriver* driver, const FlatImage& flat, size_t number)
{
    std::vector<uint8_t> bgra = flat.rgba;
    for (size_t i = 0; i + 3 < bgra.size(); i += 4)
        std::swap(bgra[i], bgra[i + 2]);
    driver->setTextureCreationFlag(video::ETCF_ALWAYS_32_BIT, true);
    driver->setTextureCreationFlag(video::ETCF_CREATE_MIP_MAPS, flat.mipmap != 0);
    video::IImage* const image = driver->createImageFromData(
        video::ECF_A8R8G8B8, core::dimension2d<u32>(u32(flat.width), u32(flat.height)), bgra.data());
    video::ITexture* const texture =
        driver->addTexture(core::stringc("image") + core::stringc(u32(number)), image);
    image->drop();
    return texture;
}

// A buffer has one material, so each range takes the vertices that it uses.
static scene::SMeshBuffer* makeBuffer(const FlatMesh& mesh, const FlatRange& range, const FlatImage& image,
                                      video::ITexture* texture)
{
    scene::SMeshBuffer* const buffer = new scene::SMeshBuffer;
    std::map<uint16_t, u16> places;
    const auto place = [&](uint16_t corner)
    {
        const auto [found, isNew] = places.try_emplace(corner, u16(places.size()));
        if (isNew)
        {
            const Vertex3D &v = mesh.vertices[corner], &n = mesh.normals[corner];
            const Color& c = mesh.colors[corner];
            buffer->Vertices.push_back(video::S3DVertex(v.x, v.y, v.z, n.x, n.y, n.z,
                                                        video::SColorf(c.r, c.g, c.b, c.a).toSColor(),
                                                        mesh.coords[corner].x, mesh.coords[corner].y));
        }
        return found->second;
    };
    for (int i = range.first; i <= range.last; ++i)
        for (const uint16_t corner :
             {mesh.faces[size_t(i)].a, mesh.faces[size_t(i)].c, mesh.faces[size_t(i)].b})
            buffer->Indices.push_back(place(corner));
    video::SMaterial& material = buffer->Material;
    material.Lighting = false;
    material.BackfaceCulling = !range.twoSided;
    material.setTexture(0, texture);
    material.setFlag(video::EMF_TRILINEAR_FILTER, image.mipmap != 0);
    buffer->recalculateBoundingBox();
    return buffer;
}

static void addMesh(scene::ISceneManager* scenes, const FlatScene& flat, const FlatMesh& mesh,
                    const std::vector<video::ITexture*>& textures, bool kept)
{
    scene::SMesh* const made = new scene::SMesh;
    for (const FlatRange& range : mesh.ranges)
    {
        scene::SMeshBuffer* const buffer =
            makeBuffer(mesh, range, flat.images[size_t(range.image)], textures[size_t(range.image)]);
        made->addMeshBuffer(buffer);
        buffer->drop();
    }
    made->recalculateBoundingBox();
    made->setHardwareMappingHint(kept ? scene::EHM_STATIC : scene::EHM_NEVER);
    scene::IMeshSceneNode* const node = scenes->addMeshSceneNode(
        made, nullptr, -1, core::vector3df(mesh.position.x, mesh.position.y, mesh.position.z));
    node->setAutomaticCulling(scene::EAC_OFF);
    made->drop();
}

static void addCamera(scene::ISceneManager* scenes, const FlatScene& flat)
{
    // One that looks along z from the origin has no view of its own.
    scene::ICameraSceneNode* const camera =
        scenes->addCameraSceneNode(nullptr, core::vector3df(0, 0, 0), core::vector3df(0, 0, 1));
    camera->setViewMatrixAffector(toIrrlicht(flat.view));
    camera->setProjectionMatrix(toIrrlicht(flat.projection));
}

DrawFrame drawWithIrrlicht(const FlatScene& flat, bool kept)
{
    SIrrlichtCreationParameters parameters;
    parameters.DriverType = video::EDT_OPENGL;
    parameters.WindowSize = core::dimension2d<u32>(frameWidth, frameHeight);
    parameters.Bits = 32;
    parameters.ZBufferBits = 24;
    parameters.Vsync = false;
    parameters.LoggingLevel = ELL_NONE;
    IrrlichtDevice* const device = createDeviceEx(parameters);
    if (!device)
        return {};
    scene::ISceneManager* const scenes = device->getSceneManager();
    std::vector<video::ITexture*> textures;
    for (const FlatImage& image : flat.images)
        textures.push_back(makeTexture(device->getVideoDriver(), image, textures.size()));
    for (const FlatMesh& mesh : flat.meshes)
        addMesh(scenes, flat, mesh, textures, kept);
    addCamera(scenes, flat);
    return [device, scenes](const std::function<void()>& beforeSwap)
    {
        device->run();
        device->getVideoDriver()->beginScene(true, true, video::SColor(0, 0, 0, 0));
        scenes->drawAll();
        if (beforeSwap)
            beforeSwap();
        device->getVideoDriver()->endScene();
    };
}
