// Shadow light: the engine's tree, its plain loop over all faces, and Embree, in one run.
//
// usage: peer_shadows [TRIANGLES [landscape|city]]
//
// In the city most corners stand in line with others, which lets the light through: rays find little that
// stops them early.
//
// A pass traces every vertex of the scene, in the order of the meshes. The plain loop takes a sample of them.
// Prints the median time of a ray over several rounds, in which all take turns, how many are blocked, and the
// time of building. All answers of the tree are compared with those of the plain loop where that was asked.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/city.h"
#include "bench/landscape.h"
#include "bench/peers/shadows.h"
#include "bench/peers/timing.h"

static std::vector<ShadowFace> facesOf(const OGroup& group)
{
    std::vector<ShadowFace> faces;
    for (int m = 0; m < group.meshCount; ++m)
        for (int f = 0; f < group.meshes[m]->faceCount; ++f)
        {
            const Mesh& mesh = *group.meshes[m];
            const Facelist& face = mesh.faces[f];
            const Vertex3D* v = mesh.calculatedVertices;
            faces.push_back(
                {v[face.a] + mesh.position, v[face.b] + mesh.position, v[face.c] + mesh.position, v, face});
        }
    return faces;
}

static std::vector<ShadowTarget> targetsOf(const OGroup& group, const Light& light)
{
    std::vector<ShadowTarget> targets;
    for (int m = 0; m < group.meshCount; ++m)
        for (int v = 0; v < group.meshes[m]->vertexCount; ++v)
            targets.push_back(
                shadowTarget(light, &group.meshes[m]->calculatedVertices[v], group.meshes[m]->position));
    return targets;
}

// Median seconds of a ray by each.
static std::vector<double> timesOf(const std::vector<ShadowPeer>& peers,
                                   const std::vector<ShadowTarget>& targets, std::vector<int>* blocked)
{
    std::vector<std::vector<double>> rounds(peers.size());
    blocked->resize(peers.size());
    for (int round = 0; round < 7; ++round)
        for (size_t peer = 0; peer < peers.size(); ++peer)
        {
            int dark = 0;
            const double begin = processorSeconds();
            for (const ShadowTarget& target : targets)
                dark += peers[peer].blocks(target);
            rounds[peer].push_back((processorSeconds() - begin) / double(targets.size()));
            (*blocked)[peer] = dark;
        }
    std::vector<double> times;
    for (const std::vector<double>& seconds : rounds)
        times.push_back(median(seconds));
    return times;
}

// Seconds of a ray of the plain loop, over a sample of at least half a second.
static double plainSeconds(const OGroup& group, const Light& light, const ShadowTree& tree,
                           std::vector<ShadowTarget> targets)
{
    std::shuffle(targets.begin(), targets.end(), std::mt19937(7));
    size_t asked = 0, differ = 0;
    double seconds = 0;
    while (asked < targets.size() && (asked < 200 || seconds < 0.5))
    {
        const ShadowTarget& target = targets[asked++];
        const double begin = processorSeconds();
        const bool blocked = groupBlocks(group, light, target);
        seconds += processorSeconds() - begin;
        differ += blocked != tree.blocks(target);
    }
    std::printf("  plain loop: %zu rays asked, %zu answers differ from the tree's\n", asked, differ);
    return seconds / double(asked);
}

static void run(const char* sceneName, OGroup* group, const Light& light)
{
    const std::vector<ShadowFace> faces = facesOf(*group);
    const std::vector<ShadowTarget> targets = targetsOf(*group, light);
    std::printf("\n%s of %zu faces, %zu vertices\n", sceneName, faces.size(), targets.size());
    const double begin = processorSeconds();
    const ShadowTree tree(light, &group, 1);
    std::vector<ShadowPeer> peers = {{"Vornik", processorSeconds() - begin,
                                      [&tree](const ShadowTarget& target) { return tree.blocks(target); }}};
#ifdef HAS_EMBREE
    for (ShadowPeer& peer : makeEmbreeShadows(light, faces))
        peers.push_back(std::move(peer));
#else
    std::puts("Embree was not there to build with (libembree-dev)");
#endif
    std::vector<int> blocked;
    const std::vector<double> times = timesOf(peers, targets, &blocked);
    const double pass = times[0] * double(targets.size());
    for (size_t i = 0; i < peers.size(); ++i)
    {
        const double theirPass = times[i] * double(targets.size());
        std::printf(
            "  ray %8.3f us, ours / theirs %6.3f   built in %6.4f s, whole pass ours / theirs %6.3f   "
            "%6d blocked   %s\n",
            times[i] * 1e6, times[0] / times[i], peers[i].buildSeconds,
            (pass + peers[0].buildSeconds) / (theirPass + peers[i].buildSeconds), blocked[i],
            peers[i].name.c_str());
    }
    const double plain = plainSeconds(*group, light, tree, targets);
    std::printf("  ray %8.1f us by the plain loop: %.0f times a ray of the tree, %.0f times with building\n",
                plain * 1e6, plain / times[0],
                plain * double(targets.size()) / (pass + peers[0].buildSeconds));
}

int main(int argc, char** argv)
{
    const char* const wanted = argc > 2 ? argv[2] : nullptr;
    const int count = argc > 1 ? std::atoi(argv[1]) : 100000;
    if (argc > 3 || count < 1000 || count > 700000 ||
        (wanted && std::strcmp(wanted, "landscape") != 0 && std::strcmp(wanted, "city") != 0))
    {
        std::fprintf(stderr, "usage: peer_shadows [TRIANGLES [landscape|city]]   1000 to 700000 triangles\n");
        return 2;
    }
    if (!wanted || std::strcmp(wanted, "landscape") == 0)
        run("landscape", &landscape(count).group, landscape(count).light);
    if (!wanted || std::strcmp(wanted, "city") == 0)
    {
        Light light;
        light.location = {613.3f, 377.7f, 260.1f};
        run("city", cityOf(count), light);
    }
    return 0;
}
