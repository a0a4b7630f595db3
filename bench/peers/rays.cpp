// The same rays through the same triangles, by the engine's octree and by other libraries, in one run.
//
// Prints the median time of a ray over several rounds, its ratio to the engine's, and how many rays hit:
// faces are hit from their front, as the engine has it, where a library can be told so. Libraries that were
// not there when this was built have a line saying so.

#include <algorithm>
#include <cfloat>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/hillyground.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

#ifdef HAS_IRRLICHT
#include <irrlicht/irrlicht.h>
#endif
#ifdef HAS_EMBREE
#include <embree3/rtcore.h>
#endif
#ifdef HAS_BULLET
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <btBulletCollisionCommon.h>
#endif

using Clock = std::chrono::steady_clock;
using Ask = std::function<bool(const Ray&)>; // does the ray hit within its length?

static double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

struct Peer
{
    std::string name;
    double buildSeconds;
    Ask ask;
};

struct Corners
{
    Vertex3D a, b, c;
};

static std::vector<Corners> trianglesOf(OGroup* group)
{
    std::vector<Corners> all;
    for (int i = 0; i < group->meshCount; ++i)
        for (int face = 0; face < group->meshes[i]->faceCount; ++face)
        {
            const Mesh& mesh = *group->meshes[i];
            const Facelist& f = mesh.faces[face];
            all.push_back(
                {mesh.calculatedVertices[f.a], mesh.calculatedVertices[f.b], mesh.calculatedVertices[f.c]});
        }
    return all;
}

static Peer engine(OGroup* group)
{
    delete group->octree;
    group->octree = nullptr;
    const Clock::time_point begin = Clock::now();
    group->constructOctree();
    return {"Vornik", secondsSince(begin),
            [group](const Ray& ray)
            {
                Ray r = ray;
                return vrkRaySceneDistance(&r.start, &r.end, group) <= vrkDistance(&r.start, &r.end);
            }};
}

#ifdef HAS_IRRLICHT
static Peer irrlichtPeer(const std::vector<Corners>& triangles)
{
    using namespace irr;
    SIrrlichtCreationParameters parameters;
    parameters.DriverType = video::EDT_NULL;
    parameters.LoggingLevel = ELL_NONE;
    IrrlichtDevice* device = createDeviceEx(parameters);
    scene::ISceneManager* manager = device->getSceneManager();
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
    const Clock::time_point begin = Clock::now();
    scene::IMeshSceneNode* node = manager->addOctreeSceneNode(mesh);
    scene::ITriangleSelector* selector = manager->createOctreeTriangleSelector(mesh, node);
    return {"Irrlicht octree selector", secondsSince(begin),
            [manager, selector](const Ray& ray)
            {
                core::vector3df point;
                core::triangle3df triangle;
                scene::ISceneNode* hit = nullptr;
                const core::line3df line(ray.start.x, ray.start.y, ray.start.z, ray.end.x, ray.end.y,
                                         ray.end.z);
                return manager->getSceneCollisionManager()->getCollisionPoint(line, selector, point, triangle,
                                                                              hit);
            }};
}
#endif

#ifdef HAS_EMBREE
static Peer embreePeer(const std::vector<Corners>& triangles)
{
    const Clock::time_point begin = Clock::now();
    RTCDevice device = rtcNewDevice("threads=1");
    RTCScene scene = rtcNewScene(device);
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    auto* vertices = static_cast<Vertex3D*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, sizeof(Vertex3D), triangles.size() * 3));
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), triangles.size()));
    for (size_t i = 0; i < triangles.size(); ++i)
    {
        vertices[i * 3] = triangles[i].a;
        vertices[i * 3 + 1] = triangles[i].b;
        vertices[i * 3 + 2] = triangles[i].c;
    }
    for (unsigned i = 0; i < triangles.size() * 3; ++i)
        indices[i] = i;
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene, geometry);
    rtcCommitScene(scene);
    return {"Embree single rays", secondsSince(begin),
            [scene](const Ray& ray)
            {
                RTCIntersectContext context;
                rtcInitIntersectContext(&context);
                RTCRayHit hit = {};
                hit.ray.org_x = ray.start.x;
                hit.ray.org_y = ray.start.y;
                hit.ray.org_z = ray.start.z;
                hit.ray.dir_x = ray.end.x - ray.start.x;
                hit.ray.dir_y = ray.end.y - ray.start.y;
                hit.ray.dir_z = ray.end.z - ray.start.z;
                hit.ray.tfar = 1;
                hit.ray.mask = ~0u;
                hit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
                rtcIntersect1(scene, &context, &hit);
                return hit.hit.geomID != RTC_INVALID_GEOMETRY_ID;
            }};
}
#endif

#ifdef HAS_BULLET
static btVector3 toBullet(const Vertex3D& v)
{
    return btVector3(v.x, v.y, v.z);
}

static Peer bulletPeer(const std::vector<Corners>& triangles)
{
    const Clock::time_point begin = Clock::now();
    auto* mesh = new btTriangleMesh;
    for (const Corners& t : triangles)
        mesh->addTriangle(toBullet(t.a), toBullet(t.b), toBullet(t.c));
    auto* shape = new btBvhTriangleMeshShape(mesh, true);
    return {"Bullet triangle mesh", secondsSince(begin),
            [shape](const Ray& ray)
            {
                struct Nearest : btTriangleRaycastCallback
                {
                    Nearest(const btVector3& from, const btVector3& to)
                        : btTriangleRaycastCallback(from, to, kF_FilterBackfaces)
                    {
                    }
                    btScalar reportHit(const btVector3&, btScalar fraction, int, int) override
                    {
                        return fraction;
                    }
                };
                const btVector3 from = toBullet(ray.start), to = toBullet(ray.end);
                Nearest nearest(from, to);
                shape->performRaycast(&nearest, from, to);
                return nearest.m_hitFraction < 1;
            }};
}
#endif

// Median seconds of a ray over some rounds. @param hits  [out] rays that hit, of 1,024
static double timeOf(const Ask& ask, const std::vector<Ray>& rays, int* hits)
{
    std::vector<double> rounds;
    for (int round = 0; round < 7; ++round)
    {
        *hits = 0;
        const Clock::time_point begin = Clock::now();
        for (const Ray& ray : rays)
            *hits += ask(ray);
        rounds.push_back(secondsSince(begin) / static_cast<double>(rays.size()));
    }
    std::nth_element(rounds.begin(), rounds.begin() + 3, rounds.end());
    return rounds[3];
}

static std::vector<Peer> makePeers(OGroup* group)
{
    std::vector<Peer> peers = {engine(group)};
    const std::vector<Corners> triangles = trianglesOf(group);
#ifdef HAS_IRRLICHT
    peers.push_back(irrlichtPeer(triangles));
#else
    std::puts("Irrlicht was not there to build with (libirrlicht-dev)");
#endif
#ifdef HAS_EMBREE
    peers.push_back(embreePeer(triangles));
#else
    std::puts("Embree was not there to build with (libembree-dev)");
#endif
#ifdef HAS_BULLET
    peers.push_back(bulletPeer(triangles));
#else
    std::puts("Bullet was not there to build with (libbullet-dev)");
#endif
    return peers;
}

int main()
{
    for (const int count : {10000, 100000, 1000000})
    {
        OGroup* group = groundOf(count);
        const std::vector<Peer> peers = makePeers(group);
        std::printf("\n%d triangles\n", group->meshCount * 1000);
        for (const Peer& peer : peers)
            std::printf("  built in %8.3f s   %s\n", peer.buildSeconds, peer.name.c_str());
        const char* const names[] = {"rays of 1 %", "rays across", "rays down"};
        for (const RayKind kind : {shortRays, longRays, raysDown})
        {
            const std::vector<Ray> rays = makeRays(kind);
            double ours = 0;
            for (const Peer& peer : peers)
            {
                int hits = 0;
                const double seconds = timeOf(peer.ask, rays, &hits);
                if (ours == 0)
                    ours = seconds;
                std::printf("  %-12s %9.3f us   we take %7.3f of it   %4d hit   %s\n", names[kind],
                            seconds * 1e6, ours / seconds, hits, peer.name.c_str());
            }
        }
    }
    return 0;
}
