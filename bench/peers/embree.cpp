// Embree, one ray at a time on one thread. Both sides of a face are hit.

#include "bench/peers/embreescene.h"
#include "bench/peers/peer.h"
#include "bench/peers/timing.h"

static RTCRay toEmbree(const Ray& ray)
{
    RTCRay r = {};
    r.org_x = ray.start.x;
    r.org_y = ray.start.y;
    r.org_z = ray.start.z;
    r.dir_x = ray.end.x - ray.start.x;
    r.dir_y = ray.end.y - ray.start.y;
    r.dir_z = ray.end.z - ray.start.z;
    r.tfar = 1;
    r.mask = ~0u;
    return r;
}

Peer makeEmbree(const std::vector<Corners>& triangles)
{
    const double begin = processorSeconds();
    RTCScene scene = makeEmbreeScene(triangles, nullptr);
    const double built = processorSeconds() - begin;
    const auto nearest = [scene](const Ray& ray)
    {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit hit = {};
        hit.ray = toEmbree(ray);
        hit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(scene, &context, &hit);
        return hit.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    };
    const auto any = [scene](const Ray& ray)
    {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRay r = toEmbree(ray);
        rtcOccluded1(scene, &context, &r);
        return r.tfar < 0;
    };
    return {"Embree single rays", built, nearest, any, nullptr};
}
