// Edge normals beside the plain way: every corner asked for by itself and normalised by the exported call.

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
    const auto corner = [&] { return static_cast<uint16_t>(random() % 22); };
    for (int i = 0; i < 40; ++i)
        faces.push_back({corner(), corner(), corner()});
    std::unique_ptr<Mesh> mesh(makeMesh("mesh", vertices, faces, {value(), value(), value()}));
    mesh->pivot = {value(), value(), value()};
    mesh->rotation = {value(), value(), value(), 0};
    return mesh;
}

class EdgeNormals : public EngineTest
{
};

TEST_F(EdgeNormals, AreThoseOfThePlainWayBitForBit)
{
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round)
    {
        const std::unique_ptr<Mesh> mesh = randomMesh(random);
        mesh->calcEdgeNormals();
        for (int i = 0; i < mesh->faceCount; ++i)
        {
            const EdgeNormal plain = plainEdgeNormal(mesh.get(), i);
            EXPECT_EQ(std::memcmp(&plain, &mesh->edgeNormals[i], sizeof plain), 0) << round << " " << i;
        }
    }
}
