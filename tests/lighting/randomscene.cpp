#include "tests/lighting/randomscene.h"

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

using Random = std::mt19937;

static float uniform(Random& random, float low, float high)
{
    return std::uniform_real_distribution<float>(low, high)(random);
}

static float extremeCoordinate(Random& random)
{
    const float infinity = std::numeric_limits<float>::infinity();
    switch (random() % 24)
    {
    case 0:
        return infinity;
    case 1:
        return -infinity;
    case 2:
        return std::numeric_limits<float>::quiet_NaN();
    case 3:
        return std::numeric_limits<float>::max();
    case 4:
        return std::ldexp(uniform(random, -1.0f, 1.0f), int(random() % 250) - 125);
    case 5:
        return std::ldexp(uniform(random, -1.0f, 1.0f), 30 + int(random() % 20));
    default:
        return uniform(random, -10.0f, 10.0f);
    }
}

static float coordinate(SceneKind kind, Random& random)
{
    switch (kind)
    {
    case SceneKind::Lattice:
        return float(int(random() % 9) - 4);
    case SceneKind::Magnitudes:
        return std::ldexp(uniform(random, -1.0f, 1.0f), int(random() % 40) - 20);
    case SceneKind::Extreme:
        return extremeCoordinate(random);
    case SceneKind::Tiny:
        return uniform(random, -1e-3f, 1e-3f);
    default:
        return uniform(random, -10.0f, 10.0f);
    }
}

static Vertex3D point(SceneKind kind, Random& random)
{
    float x = coordinate(kind, random), y = coordinate(kind, random), z = coordinate(kind, random);
    // On an oblique plane; rounding takes most points off it by a hair.
    if (kind == SceneKind::Tilted)
        z = 0.3f * x - 0.7f * y + 1.1f;
    return {x, y, z};
}

static Mesh* makeTerrain(Random& random)
{
    const int side = 3 + int(random() % 6);
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const float height = random() % 2 ? 0.0f : uniform(random, 0.0f, 3.0f);
    for (int y = 0; y <= side; y++)
        for (int x = 0; x <= side; x++)
            vertices.push_back({float(x) - 4.0f, float(y) - 4.0f, height * uniform(random, -1.0f, 1.0f)});
    for (int y = 0; y < side; y++)
        for (int x = 0; x < side; x++)
        {
            uint16_t a = uint16_t(y * (side + 1) + x), b = uint16_t(a + 1), c = uint16_t(a + side + 1);
            faces.push_back({a, b, c});
            faces.push_back({b, uint16_t(c + 1), c});
        }
    return makeMesh("terrain", vertices, faces);
}

static Mesh* makeSoup(SceneKind kind, Random& random)
{
    const int vertexCount = 6 + int(random() % 40), faceCount = 4 + int(random() % 80);
    std::vector<Vertex3D> vertices;
    for (int i = 0; i < vertexCount; i++)
    {
        Vertex3D v = point(kind, random);
        // Beside, or on the line of, vertices that exist.
        if (kind == SceneKind::Slivers && i > 1 && random() % 2)
        {
            const Vertex3D& a = vertices[random() % vertices.size()];
            Vertex3D along = vertices[random() % vertices.size()] - a;
            along *= uniform(random, 0.0f, 2.0f);
            v = a + along;
            if (random() % 2)
                v.x += std::ldexp(1.0f, -int(random() % 24));
        }
        // Small faces among large ones.
        if ((kind == SceneKind::Soup || kind == SceneKind::Tilted) && i > 1 && random() % 3 != 0)
        {
            Vertex3D step = point(SceneKind::Soup, random);
            if (kind == SceneKind::Tilted)
                step.z = 0.3f * step.x - 0.7f * step.y;
            step *= std::ldexp(1.0f, -int(random() % 10));
            v = vertices[random() % vertices.size()] + step;
        }
        vertices.push_back(v);
    }
    std::vector<Facelist> faces;
    auto index = [&] { return uint16_t(random() % vertices.size()); };
    for (int i = 0; i < faceCount; i++)
    {
        Facelist face = {index(), index(), index()};
        if (kind == SceneKind::Slivers && random() % 4 == 0)
            face.c = face.b;
        faces.push_back(face);
    }
    return makeMesh("soup", vertices, faces);
}

static Vertex3D meshPosition(SceneKind kind, Random& random)
{
    if (random() % 3 == 0 || (kind == SceneKind::Tilted && random() % 2))
        return {0.0f, 0.0f, 0.0f};
    if (kind == SceneKind::Offset)
        return {uniform(random, -1e6f, 1e6f), uniform(random, -1e6f, 1e6f), uniform(random, -1e6f, 1e6f)};
    Vertex3D p = point(kind == SceneKind::Tilted ? SceneKind::Soup : kind, random);
    p *= kind == SceneKind::Lattice ? 1.0f : 0.3f;
    return p;
}

void fillRandomGroup(OGroup* group, SceneKind kind, Random& random)
{
    const int meshes = 1 + int(random() % 3);
    for (int m = 0; m < meshes; m++)
    {
        Mesh* mesh = kind == SceneKind::Terrain && m == 0 ? makeTerrain(random) : makeSoup(kind, random);
        mesh->position = meshPosition(kind, random);
        for (int v = 0; v < mesh->vertexCount; v++)
        {
            mesh->calculatedNormals[v] = {uniform(random, -1, 1), uniform(random, -1, 1),
                                          uniform(random, -1, 1)};
            mesh->calculatedNormals[v].normalize();
        }
        group->addMesh(mesh);
    }
}

Light* makeRandomLight(const OGroup& group, SceneKind kind, Random& random)
{
    Light* light = new Light;
    light->location = point(kind == SceneKind::Tilted && random() % 2 ? SceneKind::Soup : kind, random);
    const Mesh* mesh = group.meshes[random() % size_t(group.meshCount)];
    const Facelist& face = mesh->faces[random() % size_t(mesh->faceCount)];
    const Vertex3D a = mesh->calculatedVertices[face.a] + mesh->position;
    if (random() % 8 == 0)
        light->location = a;
    else if (random() % 8 == 0)
    {
        Vertex3D e1 = mesh->calculatedVertices[face.b] - mesh->calculatedVertices[face.a];
        Vertex3D e2 = mesh->calculatedVertices[face.c] - mesh->calculatedVertices[face.a];
        e1 *= uniform(random, -2.0f, 2.0f);
        e2 *= uniform(random, -2.0f, 2.0f);
        light->location = a + e1 + e2;
    }
    else if (kind == SceneKind::Offset)
        light->location += a;
    // A hair above the plane, so that rays graze its faces.
    if (kind == SceneKind::Tilted)
        light->location.z += std::ldexp(uniform(random, 0.0f, 1.0f), -int(random() % 24));

    light->color = {uniform(random, 0, 2), uniform(random, 0, 2), uniform(random, 0, 2), 1.0f};
    light->innerRange = random() % 2 ? 0.0f : uniform(random, 0.0f, 12.0f);
    light->outerRange = random() % 2 ? 1e6f : light->innerRange + uniform(random, 0.0f, 12.0f);
    return light;
}
