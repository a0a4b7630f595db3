// Edge normals beside the plain way: every corner asked for by itself and normalised by the exported call.

#include <cmath>
#include <cstring>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "vornik/scene/mesh.h"

static EdgeNormal plainEdgeNormal(Mesh* mesh, int face)
{
    const Vertex3D a = mesh->calculatedVertex(mesh->faces[face].a);
    const Vertex3D b = mesh->calculatedVertex(mesh->faces[face].b);
    const Vertex3D c = mesh->calculatedVertex(mesh->faces[face].c);
    const Vertex3D normal = calcNormal(&a, &b, &c);
    EdgeNormal result;
    result.edgeNormal[0] = (b - a) ^ normal;
    result.edgeNormal[1] = (c - b) ^ normal;
    result.edgeNormal[2] = (a - c) ^ normal;
    for (Vertex3D& edge : result.edgeNormal)
        edge.normalize();
    for (int corner = 0; corner < 3; ++corner)
    {
        result.cornerNormal[corner] = result.edgeNormal[corner] + result.edgeNormal[(corner + 1) % 3];
        result.cornerNormal[corner].normalize();
    }
    return result;
}

// With corners that don't exist, and some that lie on others.
static std::unique_ptr<Mesh> randomMesh(std::mt19937& random)
{
    const auto value = [&] { return static_cast<float>(static_cast<int>(random() % 2001) - 1000) * 0.137f; };
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int i = 0; i < 20; ++i)
        vertices.push_back(random() % 4 || i == 0 ? Vertex3D{value(), value(), value()} : vertices.back());
    // Products of these overflow and underflow.
    if (random() % 4 == 0)
        vertices[1] = {1e30f, -1e25f, value()};
    if (random() % 4 == 0)
        vertices[2].y = std::nanf("");
    const auto corner = [&] { return static_cast<uint16_t>(random() % 22); };
    const unsigned faceCount = random() % 80;
    for (unsigned i = 0; i < faceCount; ++i)
        faces.push_back({corner(), corner(), corner()});
    std::unique_ptr<Mesh> mesh(makeMesh("mesh", vertices, faces, {value(), value(), value()}));
    mesh->pivot = {value(), value(), value()};
    mesh->rotation = {value(), value(), value(), 0};
    return mesh;
}

// The same bits, or no number in both.
static bool same(const EdgeNormal& a, const EdgeNormal& b)
{
    float x[18], y[18];
    static_assert(sizeof x == sizeof a);
    std::memcpy(x, &a, sizeof a);
    std::memcpy(y, &b, sizeof b);
    for (int i = 0; i < 18; ++i)
        if (std::isnan(x[i]) ? !std::isnan(y[i]) : std::memcmp(&x[i], &y[i], sizeof(float)) != 0)
            return false;
    return true;
}

class EdgeNormals : public EngineTest
{
};

TEST_F(EdgeNormals, AreThoseOfThePlainWayBitForBit)
{
    std::mt19937 random(7);
    for (int round = 0; round < 100; ++round)
    {
        const std::unique_ptr<Mesh> mesh = randomMesh(random);
        mesh->calcEdgeNormals();
        for (int i = 0; i < mesh->faceCount; ++i)
            EXPECT_TRUE(same(plainEdgeNormal(mesh.get(), i), mesh->edgeNormals[i])) << round << " " << i;
    }
}
