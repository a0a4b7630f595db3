#include "apps/vornik/view/treeview.h"

#include <algorithm>

static const size_t mostBoxes = 65536;
static const int boxesAMesh = 8192; // a mesh has 65,536 vertices
static const Color amber = {1.0f, 0.76f, 0.35f, 1.0f};

static void collectLeaves(const octreeNode* node, std::vector<const octreeNode*>* leaves)
{
    if (!node || leaves->size() == mostBoxes)
        return;
    if (node->polys.size > 0)
        leaves->push_back(node);
    for (const octreeNode* child : node->child)
        collectLeaves(child, leaves);
}

// Bit 0 of a corner's number is set on the far side in x, bit 1 in y, bit 2 in z.
static Vertex3D cornerOf(const octreeNode& leaf, int corner)
{
    return {corner & 1 ? leaf.max.x : leaf.min.x, corner & 2 ? leaf.max.y : leaf.min.y,
            corner & 4 ? leaf.max.z : leaf.min.z};
}

// A line is a face of which only the edge from a to b shows.
static void addLines(Mesh* mesh, int box, int* face)
{
    for (int corner = 0; corner < 8; ++corner)
        for (const int axis : {1, 2, 4})
            if (!(corner & axis))
            {
                const auto a = static_cast<uint16_t>(8 * box + corner);
                const auto b = static_cast<uint16_t>(8 * box + corner + axis);
                mesh->faces[*face] = {a, b, b};
                mesh->faceFlags[(*face)++] = 2;
            }
}

using Leaves = std::vector<const octreeNode*>;

static std::unique_ptr<Mesh> boxesAround(Leaves::const_iterator leaves, int count)
{
    auto mesh = std::make_unique<Mesh>();
    mesh->createVertices(8 * count);
    mesh->createFaces(12 * count + 1); // the last face of a range isn't drawn as lines
    int face = 0;
    for (int box = 0; box < count; ++box)
    {
        for (int corner = 0; corner < 8; ++corner)
        {
            mesh->calculatedVertices[8 * box + corner] = cornerOf(*leaves[box], corner);
            mesh->vertexColors[8 * box + corner] = amber;
        }
        addLines(mesh.get(), box, &face);
    }
    mesh->sortFacesByMaterial();
    return mesh;
}

void TreeView::build(const octreeNode* tree)
{
    clear();
    Leaves leaves;
    collectLeaves(tree, &leaves);
    count = static_cast<int>(leaves.size());
    for (int from = 0; from < count; from += boxesAMesh)
        meshes.push_back(boxesAround(leaves.begin() + from, std::min(count - from, boxesAMesh)));
}

void TreeView::clear()
{
    meshes.clear();
    count = 0;
}

void TreeView::draw(View* view, TList* list)
{
    if (meshes.empty() || !list)
        return;
    lookThrough(view);
    for (const std::unique_ptr<Mesh>& mesh : meshes)
        mesh->render(VRK_RENDER_SOLID | VRK_RENDER_WIRE | VRK_RENDER_NOTEXTURE, list);
}
