#include "tests/scene/plainmesh.h"

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "vornik/rasterizer/state.h"

static bool uses(const Facelist& face, int vertex)
{
    return face.a == vertex || face.b == vertex || face.c == vertex;
}

static bool isWhole(const Mesh& mesh, const Facelist& face)
{
    return face.a < mesh.vertexCount && face.b < mesh.vertexCount && face.c < mesh.vertexCount;
}

void plainCalcNormals(Mesh* mesh)
{
    for (int v = 0; v < mesh->vertexCount; ++v)
    {
        float x = 0, y = 0, z = 0;
        int count = 0;
        for (int f = 0; f < mesh->faceCount; ++f)
        {
            const Facelist& face = mesh->faces[f];
            if (!isWhole(*mesh, face) || !uses(face, v))
                continue;
            const Vertex3D& a = mesh->originalVertices[face.a];
            const Vertex3D& b = mesh->originalVertices[face.b];
            const Vertex3D& c = mesh->originalVertices[face.c];
            const float ux = b.x - a.x, uy = b.y - a.y, uz = b.z - a.z;
            const float wx = c.x - a.x, wy = c.y - a.y, wz = c.z - a.z;
            const float nx = uy * wz - wy * uz;
            const float ny = wx * uz - ux * wz;
            const float nz = wy * ux - uy * wx;
            float length = std::sqrt(nx * nx + ny * ny + nz * nz);
            if (length == 0.0f)
                length = FLT_MIN;
            x += nx / length;
            y += ny / length;
            z += nz / length;
            ++count;
        }
        if (count == 0)
            continue;
        x /= static_cast<float>(count);
        y /= static_cast<float>(count);
        z /= static_cast<float>(count);
        float length = std::sqrt(x * x + y * y + z * z);
        if (length == 0.0f)
            length = FLT_MIN;
        mesh->originalNormals[v] = {x / length, y / length, z / length};
    }
}

void plainCalcRadius(Mesh* mesh)
{
    const Vertex3D origin = {0, 0, 0};
    mesh->radius = FLT_MIN;
    for (int v = 0; v < mesh->vertexCount; ++v)
        if (vrkDistance(&origin, &mesh->originalVertices[v]) > mesh->radius)
            mesh->radius = vrkDistance(&origin, &mesh->originalVertices[v]);
}

void plainSortFacesByMaterial(Mesh* mesh)
{
    std::vector<int> materials;
    for (int f = 0; f < mesh->faceCount; ++f)
    {
        bool known = false;
        for (const int material : materials)
            known = known || material == mesh->faceMaterials[f].materialIndex;
        if (!known)
            materials.push_back(mesh->faceMaterials[f].materialIndex);
    }
    const std::vector<Facelist> faces(mesh->faces, mesh->faces + mesh->faceCount);
    const std::vector<Textlist> numbers(mesh->faceMaterials, mesh->faceMaterials + mesh->faceCount);
    if (mesh->materialFaces)
    {
        std::free(mesh->materialFaces->ranges);
        std::free(mesh->materialFaces);
    }
    mesh->materialFaces = static_cast<MaterialFaceList*>(std::malloc(sizeof(MaterialFaceList)));
    mesh->materialFaces->count = static_cast<int>(materials.size());
    mesh->materialFaces->ranges =
        static_cast<MaterialFaceRange*>(std::malloc(sizeof(MaterialFaceRange) * (materials.size() + 1)));
    int place = 0;
    for (size_t m = 0; m < materials.size(); ++m)
    {
        mesh->materialFaces->ranges[m].first = place;
        for (size_t f = 0; f < faces.size(); ++f)
            if (numbers[f].materialIndex == materials[m])
            {
                mesh->faces[place] = faces[f];
                mesh->faceMaterials[place] = numbers[f];
                ++place;
            }
        mesh->materialFaces->ranges[m].last = place - 1;
    }
}

// The faces around a vertex, at most 512. @return false for more
static bool collect(const Mesh& mesh, int vertex, std::vector<int>* faces)
{
    faces->clear();
    for (int f = 0; f < mesh.faceCount; ++f)
        if (uses(mesh.faces[f], vertex))
        {
            if (faces->size() == 512)
                return false;
            faces->push_back(f);
        }
    return true;
}

static bool isNew(const std::vector<uint32_t>& values, uint32_t value)
{
    for (const uint32_t known : values)
        if (known == value)
            return false;
    return true;
}

void plainPrepareSmoothing(Mesh* mesh)
{
    std::vector<int> faces;
    int sum = 0;
    for (int v = 0; v < mesh->vertexCount; ++v)
    {
        if (!collect(*mesh, v, &faces))
            return;
        std::vector<uint32_t> values;
        for (const int f : faces)
            if (isNew(values, mesh->smoothingGroups[f]))
                values.push_back(mesh->smoothingGroups[f]);
        sum += static_cast<int>(values.size()) - 1;
    }
    const int old = mesh->vertexCount;
    int room = old + sum;
    if (room > 65536)
        room = 65536;
    mesh->expandObject(room, mesh->faceCount);

    int next = old;
    for (int v = 0; v < old; ++v)
    {
        if (!collect(*mesh, v, &faces))
            return;
        std::vector<uint32_t> values;
        for (const int f : faces)
        {
            const uint32_t value = mesh->smoothingGroups[f];
            if (!isNew(values, value))
                continue;
            values.push_back(value);
            if (values.size() == 1)
                continue;
            if (next >= mesh->vertexCount)
                return;
            mesh->originalVertices[next] = mesh->originalVertices[v];
            mesh->textureCoords[next] = mesh->textureCoords[v];
            for (int other = 0; other < mesh->faceCount; ++other)
            {
                if (mesh->smoothingGroups[other] != value)
                    continue;
                Facelist& face = mesh->faces[other];
                const uint16_t slot = static_cast<uint16_t>(next);
                if (face.a == v)
                    face.a = slot;
                if (face.b == v)
                    face.b = slot;
                if (face.c == v)
                    face.c = slot;
            }
            ++next;
        }
    }
}

Vertex3D plainCalculatedVertex(Mesh* mesh, int i)
{
    double m[16];
    vrkPushMatrix();
    vrkInitMatrix();
    vrkTranslate(mesh->position.x, mesh->position.y, mesh->position.z);
    vrkTranslate(-mesh->pivot.x, -mesh->pivot.y, -mesh->pivot.z);
    if (mesh->rotation.z != 0.0f)
        vrkRotate(mesh->rotation.z, 0, 0, 1);
    if (mesh->rotation.y != 0.0f)
        vrkRotate(mesh->rotation.y, 0, 1, 0);
    if (mesh->rotation.x != 0.0f)
        vrkRotate(mesh->rotation.x, 1, 0, 0);
    vrkTranslate(mesh->pivot.x, mesh->pivot.y, mesh->pivot.z);
    vrkGetModelViewMatrix(m);
    vrkPopMatrix();
    const Vertex3D& v = mesh->calculatedVertices[i];
    return {static_cast<float>(m[0] * v.x + m[4] * v.y + m[8] * v.z + m[12]),
            static_cast<float>(m[1] * v.x + m[5] * v.y + m[9] * v.z + m[13]),
            static_cast<float>(m[2] * v.x + m[6] * v.y + m[10] * v.z + m[14])};
}
