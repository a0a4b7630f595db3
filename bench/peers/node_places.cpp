// Compares where animated meshes stand with what lib3ds makes of the same file.
//
// usage: node_places FILE.3DS FRAME...
//
// Between keys the two differ where a file asks for curves: the engine goes straight. So ask for frames with
// keys.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <lib3ds/file.h>
#include <lib3ds/matrix.h>
#include <lib3ds/mesh.h>
#include <lib3ds/node.h>
#include <lib3ds/vector.h>

#include "vornik/vornik.h"

// Farthest distance between the two places of a vertex, and the largest coordinate.
struct Comparison
{
    double distance = 0, size = 0;
    int meshes = 0;
    std::string worst;
};

static Mesh* meshOfNode(const OGroup& group, const Lib3dsNode& node)
{
    for (int i = 0; i < group.meshCount; ++i)
        if (group.meshes[i]->objectId == int(node.node_id) && group.meshes[i]->vertexCount > 0)
            return group.meshes[i];
    return nullptr;
}

static void compareNode(Lib3dsFile* file, Lib3dsNode* node, OGroup* group, Comparison* result)
{
    for (Lib3dsNode* child = node->childs; child; child = child->next)
        compareNode(file, child, group, result);
    Lib3dsMesh* theirs = lib3ds_file_mesh_by_name(file, node->name);
    Mesh* ours = meshOfNode(*group, *node);
    if (node->type != LIB3DS_OBJECT_NODE || !theirs || !ours || ours->vertexCount != int(theirs->points))
        return;

    Lib3dsMatrix toWorld, fromMesh;
    lib3ds_matrix_copy(toWorld, node->matrix);
    lib3ds_matrix_translate_xyz(toWorld, -node->data.object.pivot[0], -node->data.object.pivot[1],
                                -node->data.object.pivot[2]);
    lib3ds_matrix_copy(fromMesh, theirs->matrix);
    lib3ds_matrix_inv(fromMesh);
    lib3ds_matrix_mult(toWorld, fromMesh);
    group->transformVertices(ours);
    ++result->meshes;
    for (int i = 0; i < ours->vertexCount; ++i)
    {
        Lib3dsVector place;
        lib3ds_vector_transform(place, toWorld, theirs->pointL[i].pos);
        const Vertex3D& v = ours->transformedVertices[i];
        const double distance = std::hypot(v.x - place[0], v.y - place[1], v.z - place[2]);
        if (distance > result->distance)
        {
            result->distance = distance;
            result->worst = node->name;
        }
        for (const float c : place)
            result->size = std::fmax(result->size, std::fabs(c));
    }
}

int main(int argc, char** argv)
{
    const VRKNativeWindow surface = {nullptr, 0, 16, 16};
    if (argc < 3 || initVornik(0, &surface) != 0)
        return 2;
    vrkInitErrorLog(3);
    Lib3dsFile* file = lib3ds_file_load(argv[1]);
    OGroup* group = new OGroup; // without smoothing the vertices keep their order
    if (!file ||
        load3ds(argv[1], group, "", LOAD_MESHES | LOAD_CAMERAS | LOAD_LIGHTS | LOAD_KEYFRAMES | LOAD_TOLERANT,
                nullptr, nullptr) != 0)
        return 1;
    for (int i = 2; i < argc; ++i)
    {
        const int frame = std::atoi(argv[i]);
        group->currentFrame = frame;
        lib3ds_file_eval(file, float(frame));
        Comparison result;
        for (Lib3dsNode* node = file->nodes; node; node = node->next)
            compareNode(file, node, group, &result);
        std::printf("%s frame %d: %d meshes, farthest %g of %g (%s)\n", argv[1], frame, result.meshes,
                    result.distance, result.size, result.worst.c_str());
    }
    lib3ds_file_free(file);
    delete group;
    return 0;
}
