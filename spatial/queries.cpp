#include "vornik/spatial/queries.h"

float intersect2(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a, const Vertex3D* b,
                 const Vertex3D* c)
{
    const Vertex3D direction = *end - *start;
    const Vertex3D edge1 = *b - *a;
    const Vertex3D edge2 = *c - *a;
    const Vertex3D p = direction ^ edge2;
    const float det = p * edge1;
    // Parallel, or seen from behind.
    if (det < 1e-12f)
        return -1.0f;

    const float inverse = 1.0f / det;
    const Vertex3D s = *start - *a;
    const float u = (s * p) * inverse;
    if (u < 0.0f || u > 1.0f)
        return -1.0f;
    const Vertex3D q = s ^ edge1;
    const float v = (q * direction) * inverse;
    if (v < 0.0f || u + v > 1.0f)
        return -1.0f;
    return (q * edge2) * inverse;
}
