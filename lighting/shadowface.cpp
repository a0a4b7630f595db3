// Shadow rays of the vertex lighting, face by face.
//
// A face blocks if intersect2 hits it on the ray from the light, if none of its corners shares an x, y or z
// with the vertex, and if its centroid is nearer to the light than the vertex. The ray has no end: a face hit
// behind the vertex blocks when its centroid lies in front.

#include "lighting/shadowface.h"

#include <algorithm>

#include "vornik/scene/object.h"
#include "vornik/spatial/queries.h"

ShadowTarget shadowTarget(const Light& light, const Vertex3D* vertex, const Vertex3D& offset)
{
    ShadowTarget target;
    target.vertex = vertex;
    target.position = *vertex + offset;
    target.distance = vrkDistance(&light.location, &target.position);
    return target;
}

// A vertex with the mesh's position added once for each corner that names it: the position is added corner by
// corner, and corners that name one vertex move it together.
static Vertex3D corner(const Mesh& mesh, const Facelist& face, uint16_t index)
{
    Vertex3D v = mesh.calculatedVertices[index];
    for (uint16_t other : {face.a, face.b, face.c})
        if (other == index)
            v += mesh.position;
    return v;
}

bool readShadowFace(const Mesh& mesh, int number, ShadowFace* face)
{
    const Facelist& f = mesh.faces[number];
    if (std::max({f.a, f.b, f.c}) >= mesh.vertexCount)
        return false;
    *face = {corner(mesh, f, f.a), corner(mesh, f, f.b), corner(mesh, f, f.c), mesh.calculatedVertices, f};
    return true;
}

float centroidDistance(const Light& light, const ShadowFace& face)
{
    Vertex3D centroid = face.a + face.b + face.c;
    centroid *= 0.33333334f;
    return vrkDistance(&light.location, &centroid);
}

static bool uses(const ShadowFace& face, const Vertex3D* vertex)
{
    return vertex == face.vertices + face.indices.a || vertex == face.vertices + face.indices.b ||
           vertex == face.vertices + face.indices.c;
}

static bool sharesCoordinate(const Vertex3D& corner, const Vertex3D& v)
{
    return corner.x == v.x || corner.y == v.y || corner.z == v.z;
}

bool mayBlock(const ShadowFace& face, const ShadowTarget& target)
{
    // A vertex isn't shadowed by its own faces. Any other corner that is aligned with it on one axis lets the
    // light through as well.
    return !uses(face, target.vertex) && !sharesCoordinate(face.a, target.position) &&
           !sharesCoordinate(face.b, target.position) && !sharesCoordinate(face.c, target.position);
}

bool faceBlocks(const Light& light, const ShadowTarget& target, const ShadowFace& face)
{
    return intersect2(&light.location, &target.position, &face.a, &face.b, &face.c) >= 0.0f &&
           mayBlock(face, target) && centroidDistance(light, face) < target.distance;
}

bool groupBlocks(const OGroup& group, const Light& light, const ShadowTarget& target)
{
    return anyShadowFace(group, [&](const ShadowFace& face) { return faceBlocks(light, target, face); });
}
