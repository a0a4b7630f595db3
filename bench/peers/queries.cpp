// Rays, heights and moving spheres through the same triangles, by the engine's octree and by other libraries,
// in one run.
//
// usage: peer_queries [TRIANGLES [ground|city]]
//
// Prints the median time of a question, the ratio of ours to theirs, and how many of the 1,024 hit. All take
// turns in each round, so that whatever else the machine does meets them alike. Where a library has no such
// question the nearest one stands in for it: a search for the nearest hit for one that stops at any, a ray
// down for a height. Rays that hit both sides of a face, and a sphere that starts in touch with one, differ
// in what they count as a hit; the sources of the peers say how.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/city.h"
#include "bench/hillyground.h"
#include "bench/peers/peer.h"
#include "bench/peers/timing.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

static const float sphereRadius = worldSide * 0.005f;

using Ask = std::function<bool(const Ray&)>;

struct Contender
{
    std::string name;
    Ask ask;
    int hits = 0;
    std::vector<double> rounds = {}; // seconds of a question
};

// One round: all rays, over and over for at least two milliseconds.
static double timeOfRound(Contender* contender, const std::vector<Ray>& rays)
{
    const auto askAll = [&]
    {
        contender->hits = 0;
        for (const Ray& ray : rays)
            contender->hits += contender->ask(ray);
    };
    askAll(); // brings back what the others have pushed out of the cache
    const double begin = processorSeconds();
    int times = 0;
    double seconds = 0;
    while (seconds < 0.002)
    {
        askAll();
        ++times;
        seconds = processorSeconds() - begin;
    }
    return seconds / times / double(rays.size());
}

// The first contender is the engine.
static void compare(const char* question, std::vector<Contender> contenders, const std::vector<Ray>& rays)
{
    for (int round = 0; round < 7; ++round)
        for (Contender& contender : contenders)
            contender.rounds.push_back(timeOfRound(&contender, rays));
    const double ours = median(contenders[0].rounds);
    for (const Contender& contender : contenders)
        std::printf("  %-20s %10.3f us   ours / theirs %8.3f   %4d hit   %s\n", question,
                    median(contender.rounds) * 1e6, ours / median(contender.rounds), contender.hits,
                    contender.name.c_str());
    std::fflush(stdout);
}

static void compareRays(OGroup* group, const std::vector<Peer>& peers, const char* rayName,
                        const std::vector<Ray>& rays)
{
    const std::string name = rayName;
    std::vector<Contender> nearest = {{"vrkRaySceneDistance", [group](const Ray& ray)
                                       {
                                           Ray r = ray;
                                           return vrkRaySceneDistance(&r.start, &r.end, group) <=
                                                  vrkDistance(&r.start, &r.end);
                                       }}};
    std::vector<Contender> any = {{"vrkRayScene", [group](const Ray& ray)
                                   {
                                       Ray r = ray;
                                       return vrkRayScene(&r.start, &r.end, vrkDistance(&r.start, &r.end),
                                                          group);
                                   }}};
    for (const Peer& peer : peers)
    {
        nearest.push_back({peer.name, peer.nearest});
        any.push_back({peer.name, peer.any ? peer.any : peer.nearest});
    }
    compare(("nearest, " + name).c_str(), nearest, rays);
    compare(("any, " + name).c_str(), any, rays);
}

static void compareHeights(OGroup* group, const std::vector<Peer>& peers, const std::vector<Ray>& rays)
{
    std::vector<Contender> heights = {{"vrkCheckHeight", [group](const Ray& ray)
                                       {
                                           Ray r = ray;
                                           return vrkCheckHeight(&r.start, &r.end, group).z > -999999.0f;
                                       }}};
    for (const Peer& peer : peers)
        heights.push_back({peer.name, peer.nearest});
    compare("height", heights, rays);
}

static void compareMoves(OGroup* group, const std::vector<Peer>& peers, const std::vector<Ray>& rays)
{
    for (const int passes : {1, 3, 5})
    {
        std::vector<Contender> moves = {{"vrkCheckCollision", [group, passes](const Ray& ray)
                                         {
                                             Vertex3D position = ray.end, old = ray.start, normal;
                                             return vrkCheckCollision(&position, &old, sphereRadius, group,
                                                                      true, &normal, passes);
                                         }}};
        for (const Peer& peer : peers)
            if (peer.move)
                moves.push_back(
                    {peer.name, [&peer](const Ray& ray) { return peer.move(ray, sphereRadius); }});
        compare(("move, passes " + std::to_string(passes)).c_str(), moves, rays);
    }
}

static double buildSeconds(OGroup* group)
{
    delete group->octree;
    group->octree = nullptr;
    const double begin = processorSeconds();
    group->constructOctree();
    return processorSeconds() - begin;
}

static void run(const char* sceneName, int triangles)
{
    const bool isCity = std::strcmp(sceneName, "city") == 0;
    OGroup* group = isCity ? cityOf(triangles) : groundOf(triangles);
    const auto raysOf = [&](RayKind kind) { return isCity ? makeCityRays(triangles, kind) : makeRays(kind); };
    std::printf("\n%s of %d triangles\n", sceneName, group->meshCount * 1000);
    const double ours = buildSeconds(group);
    std::printf("  built in %8.3f s   Vornik, planes included\n", ours);
    const std::vector<Peer> peers = makePeers(trianglesOf(group));
    for (const Peer& peer : peers)
        std::printf("  built in %8.3f s   ours / theirs %8.3f   %s\n", peer.buildSeconds,
                    ours / peer.buildSeconds, peer.name.c_str());
    compareRays(group, peers, "1 %", raysOf(shortRays));
    compareRays(group, peers, "across", raysOf(longRays));
    compareRays(group, peers, "down", raysOf(raysDown));
    compareHeights(group, peers, raysOf(raysDown));
    compareMoves(group, peers, raysOf(shortRays));
}

int main(int argc, char** argv)
{
    const char* const wanted = argc > 2 ? argv[2] : nullptr;
    const int count = argc > 1 ? std::atoi(argv[1]) : 0;
    if (argc > 3 || (argc > 1 && (count < 1000 || count > 10000000)) ||
        (wanted && std::strcmp(wanted, "ground") != 0 && std::strcmp(wanted, "city") != 0))
    {
        std::fprintf(stderr, "usage: peer_queries [TRIANGLES [ground|city]]   from 1000 triangles on\n");
        return 2;
    }
    const std::vector<int> counts =
        count ? std::vector<int>{count} : std::vector<int>{10000, 100000, 1000000};
    for (const char* scene : {"ground", "city"})
        for (const int triangles : counts)
            if (!wanted || std::strcmp(scene, wanted) == 0)
                run(scene, triangles);
    return 0;
}
