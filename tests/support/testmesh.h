// Meshes and logs for tests and benchmarks.
#pragma once

#include <string>
#include <vector>

#include "tests/support/tempfolder.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/mesh.h"

/// A mesh with its original and calculated vertices in place and normals (0, 0, 1).
inline Mesh* makeMesh(const char* name, const std::vector<Vertex3D>& vertices,
                      const std::vector<Facelist>& faces, Vertex3D position = {0.0f, 0.0f, 0.0f})
{
    Mesh* mesh = new Mesh;
    mesh->setName(name);
    mesh->position = position;
    mesh->createVertices(int(vertices.size()));
    mesh->createFaces(int(faces.size()));
    for (size_t i = 0; i < vertices.size(); i++)
    {
        mesh->originalVertices[i] = mesh->calculatedVertices[i] = vertices[i];
        mesh->originalNormals[i] = mesh->calculatedNormals[i] = {0.0f, 0.0f, 1.0f};
    }
    for (size_t i = 0; i < faces.size(); i++)
        mesh->faces[i] = faces[i];
    return mesh;
}

/// While it lives, reports go to a file of its own.
class LogCapture
{
public:
    LogCapture() { vrkInitErrorLog(folder.path("log").c_str()); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { vrkInitErrorLog(3); }

    /// All reports so far, each with its line feed.
    std::string text() const { return folder.readText("log"); }

private:
    TempFolder folder;
};
