// Irrlicht's octree of triangles. Its rays hit both sides of a face. Its slide moves an ellipsoid, again and
// again along what it met, up to five times; a face counts from its front.

#include <irrlicht/irrlicht.h>

#include "bench/peers/peer.h"
#include "bench/peers/timing.h"

using namespace irr;

static core::vector3df toIrrlicht(const Vertex3D& v)
{
    return core::vector3df(v.x, v.y, v.z);
}

static scene::SMesh* meshOf(const std::vector<Corners>& triangles)
{
    scene::SMesh* mesh = new scene::SMesh;
    scene::SMeshBuffer* buffer = nullptr;
    for (size_t i = 0; i < triangles.size(); ++i)
    {
        if (i % 20000 == 0) // indices have 16 bits
        {
            buffer = new scene::SMeshBuffer;
            mesh->addMeshBuffer(buffer);
        }
        for (const Vertex3D& v : {triangles[i].a, triangles[i].b, triangles[i].c})
        {
            buffer->Indices.push_back(static_cast<u16>(buffer->Vertices.size()));
            buffer->Vertices.push_back(video::S3DVertex(v.x, v.y, v.z, 0, 0, 1, video::SColor(), 0, 0));
        }
    }
    for (u32 i = 0; i < mesh->getMeshBufferCount(); ++i)
        mesh->getMeshBuffer(i)->recalculateBoundingBox();
    mesh->recalculateBoundingBox();
    return mesh;
}

Peer makeIrrlicht(const std::vector<Corners>& triangles)
{
    SIrrlichtCreationParameters parameters;
    parameters.DriverType = video::EDT_NULL;
    parameters.LoggingLevel = ELL_NONE;
    scene::ISceneManager* manager = createDeviceEx(parameters)->getSceneManager();
    scene::SMesh* mesh = meshOf(triangles);
    scene::ISceneNode* node = manager->addMeshSceneNode(mesh);
    const double begin = processorSeconds();
    scene::ITriangleSelector* selector = manager->createOctreeTriangleSelector(mesh, node);
    const double built = processorSeconds() - begin;
    scene::ISceneCollisionManager* collisions = manager->getSceneCollisionManager();
    const auto nearest = [=](const Ray& ray)
    {
        core::vector3df point;
        core::triangle3df triangle;
        scene::ISceneNode* hit = nullptr;
        const core::line3df line(toIrrlicht(ray.start), toIrrlicht(ray.end));
        return collisions->getCollisionPoint(line, selector, point, triangle, hit);
    };
    const auto move = [=](const Ray& ray, float radius)
    {
        core::vector3df point;
        core::triangle3df triangle;
        scene::ISceneNode* hit = nullptr;
        bool falling = false;
        collisions->getCollisionResultPosition(
            selector, toIrrlicht(ray.start), core::vector3df(radius, radius, radius),
            toIrrlicht(ray.end - ray.start), triangle, point, falling, hit);
        return hit != nullptr;
    };
    return {"Irrlicht octree selector", built, nearest, nullptr, move};
}
