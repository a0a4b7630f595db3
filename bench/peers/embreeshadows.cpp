// Shadow rays through Embree.
//
// By the engine's rule a ray goes on behind the vertex, and a face blocks it if its front looks at the light,
// no corner of it is aligned with the vertex on an axis, and its middle is nearer to the light than the
// vertex: a filter function says so of each face that a ray meets. What stays different is the arithmetic
// that decides whether a ray meets a face, so that rays through an edge may differ in their last bits.
//
// By the plain rule nothing is filtered, and the ray ends just before the vertex. That answers another
// question, but shows how fast the library is without a call for each hit.

#include <memory>

#include "bench/peers/embreescene.h"
#include "bench/peers/shadows.h"
#include "bench/peers/timing.h"

namespace
{
struct Blocker
{
    Vertex3D a, b, c;
    float distance; // of the middle from the light; beyond all if the front looks away
};

// Behind the context stands what the filter needs to know of the ray.
struct ShadowContext
{
    RTCIntersectContext context;
    const Blocker* blockers;
    const ShadowTarget* target;
};
} // namespace

static bool isAligned(const Vertex3D& corner, const Vertex3D& v)
{
    return corner.x == v.x || corner.y == v.y || corner.z == v.z;
}

static void keepBlockers(const RTCFilterFunctionNArguments* arguments)
{
    const auto* shadow = reinterpret_cast<const ShadowContext*>(arguments->context);
    const Blocker& face = shadow->blockers[RTCHitN_primID(arguments->hit, arguments->N, 0)];
    const Vertex3D& vertex = shadow->target->position;
    if (!(face.distance < shadow->target->distance) || isAligned(face.a, vertex) ||
        isAligned(face.b, vertex) || isAligned(face.c, vertex))
        arguments->valid[0] = 0;
}

static Blocker makeBlocker(const Light& light, const ShadowFace& face)
{
    Vertex3D middle = face.a + face.b + face.c;
    middle *= 0.33333334f;
    const bool looksAtLight = (light.location - face.a) * ((face.b - face.a) ^ (face.c - face.a)) > 0;
    return {face.a, face.b, face.c, looksAtLight ? vrkDistance(&light.location, &middle) : HUGE_VALF};
}

static bool isOccluded(RTCScene scene, RTCIntersectContext* context, const Light& light,
                       const ShadowTarget& target, float end)
{
    const Vertex3D direction = target.position - light.location;
    RTCRay ray = {};
    ray.org_x = light.location.x;
    ray.org_y = light.location.y;
    ray.org_z = light.location.z;
    ray.dir_x = direction.x;
    ray.dir_y = direction.y;
    ray.dir_z = direction.z;
    ray.tfar = end;
    ray.mask = ~0u;
    rtcOccluded1(scene, context, &ray);
    return ray.tfar < 0;
}

std::vector<ShadowPeer> makeEmbreeShadows(const Light& light, const std::vector<ShadowFace>& faces)
{
    const double begin = processorSeconds();
    std::vector<Corners> triangles;
    for (const ShadowFace& face : faces)
        triangles.push_back({face.a, face.b, face.c});
    RTCScene plain = makeEmbreeScene(triangles, nullptr);
    const double built = processorSeconds() - begin;

    const double beginFiltered = processorSeconds();
    auto blockers = std::make_shared<std::vector<Blocker>>();
    for (const ShadowFace& face : faces)
        blockers->push_back(makeBlocker(light, face));
    RTCScene filtered = makeEmbreeScene(triangles, keepBlockers);
    const double builtFiltered = processorSeconds() - beginFiltered;

    const auto byOurRule = [filtered, blockers, &light](const ShadowTarget& target)
    {
        ShadowContext shadow = {{}, blockers->data(), &target};
        rtcInitIntersectContext(&shadow.context);
        return isOccluded(filtered, &shadow.context, light, target, HUGE_VALF);
    };
    const auto byPlainRule = [plain, &light](const ShadowTarget& target)
    {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        return isOccluded(plain, &context, light, target, 0.9999f);
    };
    return {{"Embree, our rule", builtFiltered, byOurRule}, {"Embree, plain rule", built, byPlainRule}};
}
