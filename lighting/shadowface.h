#pragma once

// What a shadow ray of the lighting pass asks of one face, and of a whole group face by face.

#include "vornik/core/vectors.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

class Light;

/// The corners of a face with the mesh's position added.
struct ShadowFace
{
    Vertex3D a, b, c;
    const Vertex3D* vertices; ///< the mesh's calculatedVertices
    Facelist indices;
};

/// The vertex at which a ray ends.
struct ShadowTarget
{
    const Vertex3D* vertex; ///< its entry: faces that use this very entry never block it
    Vertex3D position;      ///< vertex + offset
    float distance;         ///< from the light
};

ShadowTarget shadowTarget(const Light& light, const Vertex3D* vertex, const Vertex3D& offset);

/// Reads a face of a mesh. False for one that names vertices which the mesh doesn't have.
bool readShadowFace(const Mesh& mesh, int number, ShadowFace* face);

/// Of the face's middle from the light.
float centroidDistance(const Light& light, const ShadowFace& face);

/// False for a face that lets the light through to the target although the ray hits it: one of the vertex's
/// own, or one with a corner in line with the vertex on an axis.
bool mayBlock(const ShadowFace& face, const ShadowTarget& target);

/// Does the face keep the light from the target?
bool faceBlocks(const Light& light, const ShadowTarget& target, const ShadowFace& face);

/// Does any face of the group? Tests all of them.
bool groupBlocks(const OGroup& group, const Light& light, const ShadowTarget& target);

/// Calls visit with every face of a group until it returns true.
template <class Visit>
bool anyShadowFace(const OGroup& group, Visit visit)
{
    ShadowFace face;
    for (int m = 0; m < group.meshCount; m++)
    {
        const Mesh* mesh = group.meshes[m];
        if (!mesh || !mesh->faces || !mesh->calculatedVertices)
            continue;
        for (int f = 0; f < mesh->faceCount; f++)
            if (readShadowFace(*mesh, f, &face) && visit(face))
                return true;
    }
    return false;
}
