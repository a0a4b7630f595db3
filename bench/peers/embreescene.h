// Triangles as an Embree scene, for one thread.
#pragma once

#include <algorithm>
#include <vector>

#include <embree3/rtcore.h>

#include "bench/peers/peer.h"

// @param occlusionFilter  says which hits block; may be null
inline RTCScene makeEmbreeScene(const std::vector<Corners>& triangles, RTCFilterFunctionN occlusionFilter)
{
    RTCDevice device = rtcNewDevice("threads=1");
    RTCScene scene = rtcNewScene(device);
    RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
    auto* vertices = static_cast<Corners*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, sizeof(Vertex3D), triangles.size() * 3));
    auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
        geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), triangles.size()));
    std::copy(triangles.begin(), triangles.end(), vertices);
    for (unsigned i = 0; i < triangles.size() * 3; ++i)
        indices[i] = i;
    rtcSetGeometryOccludedFilterFunction(geometry, occlusionFilter);
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene, geometry);
    rtcCommitScene(scene);
    return scene;
}
