// Bullet's tree over a triangle mesh: rays that hit fronts, and one sweep of a sphere, which stops where it
// meets something and doesn't slide.

#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <btBulletCollisionCommon.h>

#include "bench/peers/peer.h"
#include "bench/peers/timing.h"

static btVector3 toBullet(const Vertex3D& v)
{
    return btVector3(v.x, v.y, v.z);
}

static btTransform at(const Vertex3D& v)
{
    return btTransform(btQuaternion::getIdentity(), toBullet(v));
}

struct NearestTriangle : btTriangleRaycastCallback
{
    NearestTriangle(const btVector3& from, const btVector3& to)
        : btTriangleRaycastCallback(from, to, kF_FilterBackfaces)
    {
    }
    btScalar reportHit(const btVector3&, btScalar fraction, int, int) override { return fraction; }
};

Peer makeBullet(const std::vector<Corners>& triangles)
{
    const double begin = processorSeconds();
    auto* mesh = new btTriangleMesh;
    for (const Corners& t : triangles)
        mesh->addTriangle(toBullet(t.a), toBullet(t.b), toBullet(t.c));
    auto* shape = new btBvhTriangleMeshShape(mesh, true);
    const double built = processorSeconds() - begin;
    auto* object = new btCollisionObject;
    object->setCollisionShape(shape);
    const auto nearest = [shape](const Ray& ray)
    {
        const btVector3 from = toBullet(ray.start), to = toBullet(ray.end);
        NearestTriangle triangle(from, to);
        shape->performRaycast(&triangle, from, to);
        return triangle.m_hitFraction < 1;
    };
    const auto move = [shape, object](const Ray& ray, float radius)
    {
        const btSphereShape sphere(radius);
        btCollisionWorld::ClosestConvexResultCallback result(toBullet(ray.start), toBullet(ray.end));
        btCollisionWorld::objectQuerySingle(&sphere, at(ray.start), at(ray.end), object, shape,
                                            btTransform::getIdentity(), result, 0);
        return result.hasHit();
    };
    return {"Bullet triangle mesh", built, nearest, nullptr, move};
}
