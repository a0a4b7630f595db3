// Laying out a tree for queries, and keeping the layout true.

#include "spatial/packedtree.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <unordered_map>

#include "core/facecorners.h"
#include "scene/transformpoint.h"
#include "scene/worldcorners.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/mesh.h"

using namespace packed;

void PackedTree::Freed::operator()(char* block) const
{
    std::free(block);
}

PackedTree* PackedTree::of(const octreeNode* root)
{
    PackedTree* tree = root->packed;
    return tree && tree->root == root && !tree->stale ? tree : nullptr;
}

void PackedTree::markStale(octreeNode* node)
{
    if (node->packed)
        node->packed->stale = true;
}

void PackedTree::leave(octreeNode* node)
{
    PackedTree* tree = node->packed;
    node->packed = nullptr;
    if (!tree)
        return;
    tree->stale = true;
    if (--tree->users == 0)
        delete tree;
}

const Leaf* PackedTree::leafOf(const octreeNode* node) const
{
    if (node->packed != this || node->packedLeaf < 0)
        return nullptr;
    const Leaf* leaf = leaves[static_cast<size_t>(node->packedLeaf)];
    return leaf->first == node->planes ? leaf : nullptr;
}

// Copies what has to stand still for the matrix to stay. @return has anything changed?
static bool notePlacing(MeshCopy* copy)
{
    const Mesh& mesh = *copy->mesh;
    const void* context = rasterizerContext();
    const float placing[10] = {mesh.rotation.x, mesh.rotation.y, mesh.rotation.z, mesh.rotation.w,
                               mesh.position.x, mesh.position.y, mesh.position.z, mesh.pivot.x,
                               mesh.pivot.y,    mesh.pivot.z};
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits, for numbers that are none
    if (std::memcmp(placing, copy->placing, sizeof placing) == 0 &&
        copy->rasterizer == vrkSelectedRasterizer && copy->context == context)
        return false;
    std::memcpy(copy->placing, placing, sizeof placing);
    copy->rasterizer = vrkSelectedRasterizer;
    copy->context = context;
    return true;
}

bool PackedTree::check(MeshCopy* copy) const
{
    Mesh& mesh = *copy->mesh;
    copy->checked = query;
    copy->nowVertices = reinterpret_cast<const char*>(mesh.calculatedVertices);
    copy->nowFaces = reinterpret_cast<const char*>(mesh.faces);
    copy->usable = mesh.vertexCount == copy->vertexCount && mesh.faceCount == copy->faceCount &&
                   copy->nowVertices && copy->nowFaces;
    if (!copy->usable)
        return false;
    if (notePlacing(copy))
    {
        const double* matrix = WorldCorners::matrixOf(&mesh);
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits, for numbers that are none
        if (std::memcmp(matrix, copy->matrix, sizeof copy->matrix) != 0)
            ++copy->version;
        std::memcpy(copy->matrix, matrix, sizeof copy->matrix);
    }
    // Arrays too small for a chunk.
    if (copy->faceBytes < chunkBytes)
        copy->usable = std::memcmp(copy->nowFaces, copy->faces.get(), copy->faceBytes) == 0;
    if (copy->vertexBytes < chunkBytes &&
        std::memcmp(copy->nowVertices, copy->vertices.get(), copy->vertexBytes) != 0)
    {
        std::memcpy(copy->vertices.get(), copy->nowVertices, copy->vertexBytes);
        ++copy->version;
    }
    return copy->usable;
}

// Puts the faces of a leaf into its blocks. cornersOf(place, corners) gives the corners in the world.
template <class CornersOf>
static void layOut(Leaf* leaf, CornersOf cornersOf)
{
    const uint32_t count = static_cast<uint32_t>(leaf->size);
    float low[3] = {HUGE_VALF, HUGE_VALF, HUGE_VALF}, high[3] = {-HUGE_VALF, -HUGE_VALF, -HUGE_VALF};
    bool finite = true;
    for (uint32_t block = 0; block < leaf->blockCount; ++block)
    {
        Faces& faces = leaf->faces[block];
        Normals& normals = leaf->normals[block];
        float from[3] = {HUGE_VALF, HUGE_VALF, HUGE_VALF}, to[3] = {-HUGE_VALF, -HUGE_VALF, -HUGE_VALF};
        for (uint32_t lane = 0; lane < width && block * width + lane < count; ++lane)
        {
            Vertex3D v[3] = {};
            cornersOf(leaf->order[block * width + lane], v);
            const Vertex3D e1 = v[1] - v[0], e2 = v[2] - v[0];
            const float* const corner[3] = {&v[0].x, &v[1].x, &v[2].x};
            for (int axis = 0; axis < 3; ++axis)
            {
                const float a = corner[0][axis], b = corner[1][axis], c = corner[2][axis];
                faces.corner[axis][lane] = a;
                faces.edge1[axis][lane] = (&e1.x)[axis];
                faces.edge2[axis][lane] = (&e2.x)[axis];
                from[axis] = std::min({from[axis], a, b, c});
                to[axis] = std::max({to[axis], a, b, c});
                finite = finite && std::isfinite(a) && std::isfinite(b) && std::isfinite(c);
            }
            const double x1 = e1.x, y1 = e1.y, z1 = e1.z, x2 = e2.x, y2 = e2.y, z2 = e2.z;
            // Without an edge the face is never hit: then this is no number.
            const double inverse =
                1.0 / std::sqrt((x1 * x1 + y1 * y1 + z1 * z1) * (x2 * x2 + y2 * y2 + z2 * z2));
            normals.normal[0][lane] = static_cast<float>((y2 * z1 - y1 * z2) * inverse);
            normals.normal[1][lane] = static_cast<float>((x1 * z2 - x2 * z1) * inverse);
            normals.normal[2][lane] = static_cast<float>((y1 * x2 - y2 * x1) * inverse);
        }
        Boxes& boxes = leaf->boxes[block / width];
        for (int axis = 0; axis < 3; ++axis)
        {
            boxes.low[axis][block % width] = from[axis];
            boxes.high[axis][block % width] = to[axis];
            low[axis] = std::min(low[axis], from[axis]);
            high[axis] = std::max(high[axis], to[axis]);
        }
    }

    float extent = 0.0f, largest = 0.0f;
    leaf->reach = 0.0f;
    for (int axis = 0; axis < 3; ++axis)
    {
        extent = std::max(extent, high[axis] - low[axis]);
        largest = std::max({largest, std::fabs(low[axis]), std::fabs(high[axis])});
        leaf->middle[axis] = (low[axis] + high[axis]) * 0.5f;
        leaf->reach += high[axis] - low[axis];
    }
    leaf->margin = extent / 64;
    if (!finite || largest > 1e10f || leaf->margin < 1e-10f || leaf->margin < largest * 4e-6f)
        leaf->margin = 0.0f;
    for (uint32_t block = 0; block < leaf->blockCount; ++block)
        for (int axis = 0; axis < 3; ++axis)
        {
            leaf->boxes[block / width].low[axis][block % width] -= leaf->margin;
            leaf->boxes[block / width].high[axis][block % width] += leaf->margin;
        }
}

static const Facelist& faceAt(const Leaf& leaf, uint32_t place)
{
    const OTPolyData& poly = leaf.items[place];
    return poly.mesh->faces[poly.face];
}

bool PackedTree::refresh(Leaf* leaf) const
{
    if (leaf->node->polys.items != leaf->items || leaf->node->polys.size != leaf->size)
        return false;
    const auto differs = [](const char* now, const char* then, uint32_t offset)
    { return std::memcmp(now + offset, then + offset, chunkBytes) != 0; };
    const uint32_t* chunks = leaf->chunks;
    for (uint32_t i = 0; i < leaf->partCount; ++i)
    {
        const Part& part = leaf->parts[i];
        MeshCopy& mesh = *part.mesh;
        if (!(mesh.checked == query ? mesh.usable : check(&mesh)))
            return false;
        for (uint32_t k = 0; k < part.faceChunks; ++k)
            if (differs(mesh.nowFaces, mesh.faces.get(), chunks[part.vertexChunks + k]))
                return false;
        // Other leaves with these vertices learn of it by the version.
        bool moved = false;
        for (uint32_t k = 0; k < part.vertexChunks; ++k)
            if (differs(mesh.nowVertices, mesh.vertices.get(), chunks[k]))
            {
                std::memcpy(mesh.vertices.get() + chunks[k], mesh.nowVertices + chunks[k], chunkBytes);
                moved = true;
            }
        mesh.version += moved ? 1 : 0;
        chunks += part.vertexChunks + part.faceChunks;
    }
    // Not before all parts are known to be usable: a leaf that is given up halfway is still to be laid out.
    for (uint32_t i = 0; i < leaf->partCount; ++i)
        leaf->parts[i].version = leaf->parts[i].mesh->version;
    WorldCorners world;
    layOut(leaf, [&](uint32_t place, Vertex3D* corners)
           { world.get(leaf->items[place].mesh, leaf->items[place].face, corners); });
    return true;
}

/// What is only needed while a tree is laid out.
class TreePacker
{
public:
    explicit TreePacker(octreeNode* root) : tree(new PackedTree)
    {
        tree->root = root;
        if (!addNode(root, 0))
            return;
        tree->passed.resize(tree->leaves.size());
        tree->hitBits.resize(largestLeaf / 64 + 1);
        isDone = true;
    }
    std::unique_ptr<PackedTree> tree;
    bool isDone = false;

private:
    /// A mesh with its vertices in the world.
    struct Source
    {
        MeshCopy* copy = nullptr;
        std::vector<Vertex3D> world;
        std::vector<int32_t> vertexMarks, faceMarks;    ///< by chunk: the last leaf that has it
        std::vector<uint32_t> vertexChunks, faceChunks; ///< of the leaf at hand
        int32_t leaf = -1;
    };

    struct Centre
    {
        float at[3]; ///< of a face, three times over
        uint32_t place;
    };

    bool addNode(octreeNode* node, int depth);
    int32_t addLeaf(octreeNode* node);
    Source* sourceOf(Mesh* mesh);
    void copyMesh(Mesh* mesh, Source* source);
    void noteFace(const OTPolyData& poly);
    static void sort(Centre* first, size_t count);
    void packParts(Leaf* leaf);
    void packPlanes(Leaf* leaf);
    template <class T>
    T* take(size_t count)
    {
        return reinterpret_cast<T*>(takeBytes((count * sizeof(T) + 31) / 32 * 32));
    }
    char* takeBytes(size_t bytes);

    std::unordered_map<Mesh*, std::unique_ptr<Source>> sources;
    Source* last = nullptr;
    std::vector<Source*> ofLeaf; ///< the meshes of the leaf at hand
    std::vector<Centre> centres;
    char* free = nullptr;
    size_t freeBytes = 0;
    size_t largestLeaf = 0;
};

char* TreePacker::takeBytes(size_t bytes)
{
    if (bytes > freeBytes)
    {
        freeBytes = std::max<size_t>(bytes, 1 << 20);
        free = static_cast<char*>(std::calloc(freeBytes + 64, 1));
        if (!free)
            throw std::bad_alloc();
        tree->storage.emplace_back(free);
        free += 64 - reinterpret_cast<uintptr_t>(free) % 64;
    }
    char* result = free;
    free += bytes;
    freeBytes -= bytes;
    return result;
}

void packCubes(Node* packedNode, const octreeNode& node)
{
    for (int i = 0; i < width; ++i)
    {
        // As the walk has it: the outer children give the bounds of both halves.
        const auto side = [&](int bit) { return node.child[i & bit ? 7 : 0]; };
        const octreeNode &x = *side(1), &y = *side(2), &z = *side(4);
        packedNode->middle[0][i] = (x.min.x + x.max.x) * 0.5f;
        packedNode->middle[1][i] = (y.min.y + y.max.y) * 0.5f;
        packedNode->middle[2][i] = (z.min.z + z.max.z) * 0.5f;
        packedNode->scale[i] = 1.0f / ((x.max.x - x.min.x) * 1.01f);
        packedNode->withWidth |= x.max.x - x.min.x != 0.0f ? 1u << i : 0u;
    }
}

// @return false for a tree that is too deep
bool TreePacker::addNode(octreeNode* node, int depth)
{
    if (!node->hasChildren)
    {
        if (node->polys.size > 0)
            addLeaf(node);
        return depth == 0;
    }
    if (depth >= 60)
        return false;
    const size_t number = tree->nodes.size();
    tree->nodes.emplace_back();
    Node made = {};
    packCubes(&made, *node);
    for (int i = 0; i < width; ++i)
    {
        octreeNode* child = node->child[i];
        if (child->hasChildren)
        {
            made.child[i] = static_cast<int32_t>(tree->nodes.size());
            if (!addNode(child, depth + 1))
                return false;
        }
        else
            made.child[i] = child->polys.size > 0 ? -1 - addLeaf(child) : INT32_MIN;
    }
    tree->nodes[number] = made;
    return true;
}

void TreePacker::copyMesh(Mesh* mesh, Source* source)
{
    std::unique_ptr<MeshCopy> copy(new MeshCopy());
    copy->mesh = mesh;
    copy->vertexCount = mesh->vertexCount;
    copy->faceCount = mesh->faceCount;
    copy->vertexBytes = sizeof(Vertex3D) * static_cast<size_t>(mesh->vertexCount);
    copy->faceBytes = sizeof(Facelist) * static_cast<size_t>(mesh->faceCount);
    copy->vertices.reset(new char[copy->vertexBytes]);
    copy->faces.reset(new char[copy->faceBytes]);
    std::memcpy(copy->vertices.get(), mesh->calculatedVertices, copy->vertexBytes);
    std::memcpy(copy->faces.get(), mesh->faces, copy->faceBytes);
    notePlacing(copy.get());
    std::memcpy(copy->matrix, WorldCorners::matrixOf(mesh), sizeof copy->matrix);
    source->world.reserve(static_cast<size_t>(mesh->vertexCount));
    for (int i = 0; i < mesh->vertexCount; ++i)
        source->world.push_back(transformPoint(copy->matrix, mesh->calculatedVertices[i]));
    source->vertexMarks.assign(copy->vertexBytes / chunkBytes + 1, -1);
    source->faceMarks.assign(copy->faceBytes / chunkBytes + 1, -1);
    source->copy = copy.get();
    tree->meshes.push_back(std::move(copy));
}

TreePacker::Source* TreePacker::sourceOf(Mesh* mesh)
{
    if (last && last->copy->mesh == mesh)
        return last;
    std::unique_ptr<Source>& source = sources[mesh];
    if (!source)
    {
        source.reset(new Source);
        copyMesh(mesh, source.get());
    }
    return last = source.get();
}

// Notes the chunks with some bytes of an array.
static void noteChunks(size_t first, size_t bytes, size_t all, int32_t leaf, std::vector<int32_t>* marks,
                       std::vector<uint32_t>* chunks)
{
    if (all < chunkBytes)
        return;
    for (size_t chunk = first / chunkBytes; chunk <= (first + bytes - 1) / chunkBytes; ++chunk)
        if ((*marks)[chunk] != leaf)
        {
            (*marks)[chunk] = leaf;
            chunks->push_back(static_cast<uint32_t>(std::min(chunk * chunkBytes, all - chunkBytes)));
        }
}

void TreePacker::noteFace(const OTPolyData& poly)
{
    Source* source = sourceOf(poly.mesh);
    const int32_t leaf = static_cast<int32_t>(tree->leaves.size());
    if (source->leaf != leaf)
    {
        source->leaf = leaf;
        source->vertexChunks.clear();
        source->faceChunks.clear();
        ofLeaf.push_back(source);
    }
    const MeshCopy& copy = *source->copy;
    const Facelist& face = poly.mesh->faces[poly.face];
    noteChunks(sizeof(Facelist) * static_cast<size_t>(poly.face), sizeof(Facelist), copy.faceBytes, leaf,
               &source->faceMarks, &source->faceChunks);
    for (const uint16_t vertex : {face.a, face.b, face.c})
        noteChunks(sizeof(Vertex3D) * vertex, sizeof(Vertex3D), copy.vertexBytes, leaf, &source->vertexMarks,
                   &source->vertexChunks);
    const Vertex3D sum = source->world[face.a] + source->world[face.b] + source->world[face.c];
    centres.push_back({{sum.x, sum.y, sum.z}, static_cast<uint32_t>(centres.size())});
}

// Brings faces together that lie together, eight by eight.
void TreePacker::sort(Centre* first, size_t count)
{
    if (count <= width)
        return;
    float low[3], high[3];
    std::copy_n(first->at, 3, low);
    std::copy_n(first->at, 3, high);
    for (size_t i = 1; i < count; ++i)
        for (int axis = 0; axis < 3; ++axis)
        {
            low[axis] = std::min(low[axis], first[i].at[axis]);
            high[axis] = std::max(high[axis], first[i].at[axis]);
        }
    int longest = 0;
    for (int axis = 1; axis < 3; ++axis)
        if (high[axis] - low[axis] > high[longest] - low[longest])
            longest = axis;
    const size_t half = (count / 2 + width - 1) / width * width;
    std::nth_element(first, first + half, first + count,
                     [longest](const Centre& a, const Centre& b) { return a.at[longest] < b.at[longest]; });
    sort(first, half);
    sort(first + half, count - half);
}

void TreePacker::packParts(Leaf* leaf)
{
    size_t chunkCount = 0;
    for (const Source* source : ofLeaf)
        chunkCount += source->vertexChunks.size() + source->faceChunks.size();
    leaf->partCount = static_cast<uint32_t>(ofLeaf.size());
    leaf->parts = take<Part>(ofLeaf.size());
    leaf->chunks = take<uint32_t>(chunkCount);
    uint32_t* chunks = leaf->chunks;
    for (size_t i = 0; i < ofLeaf.size(); ++i)
    {
        Source& source = *ofLeaf[i];
        leaf->parts[i] = {source.copy, 0, static_cast<uint32_t>(source.vertexChunks.size()),
                          static_cast<uint32_t>(source.faceChunks.size())};
        for (std::vector<uint32_t>* list : {&source.vertexChunks, &source.faceChunks})
        {
            std::sort(list->begin(), list->end());
            chunks = std::copy(list->begin(), list->end(), chunks);
        }
    }
}

void TreePacker::packPlanes(Leaf* leaf)
{
    leaf->first = leaf->node->planes;
    size_t count = 0;
    for (const Plane* plane = leaf->first; plane; plane = plane->next)
        ++count;
    leaf->planeCount = static_cast<uint32_t>(count);
    leaf->planes = take<Planes>((count + width - 1) / width);
    leaf->planeRecords = take<PlaneRecord>(count);
    size_t i = 0;
    for (Plane* plane = leaf->node->planes; plane; plane = plane->next, ++i)
    {
        const PlaneList* member = plane->faceCount > 0 ? plane->faces : nullptr;
        const EdgeNormal* edges = member && member->mesh ? member->mesh->edgeNormals : nullptr;
        leaf->planeRecords[i] = {plane, member, edges ? edges + member->face : nullptr};
        for (int axis = 0; axis < 3; ++axis)
        {
            leaf->planes[i / width].normal[axis][i % width] = (&plane->normal.x)[axis];
            leaf->planes[i / width].point[axis][i % width] = (&plane->point.x)[axis];
        }
    }
}

// @return its number
int32_t TreePacker::addLeaf(octreeNode* node)
{
    const size_t count = static_cast<size_t>(node->polys.size);
    Leaf* leaf = take<Leaf>(1);
    leaf->node = node;
    leaf->items = node->polys.items;
    leaf->size = node->polys.size;
    largestLeaf = std::max(largestLeaf, count);
    ofLeaf.clear();
    centres.clear();
    for (size_t i = 0; i < count; ++i)
        noteFace(leaf->items[i]);
    packParts(leaf);
    const size_t blocks = (count + width - 1) / width;
    leaf->blockCount = static_cast<uint32_t>(blocks);
    leaf->boxes = take<Boxes>((blocks + width - 1) / width);
    leaf->normals = take<Normals>(blocks);
    leaf->faces = take<Faces>(blocks);
    leaf->order = take<uint32_t>(blocks * width);
    sort(centres.data(), count);
    for (size_t i = 0; i < count; ++i)
        leaf->order[i] = centres[i].place;
    for (size_t i = count; i < blocks * width; ++i)
        for (float* component : leaf->normals[blocks - 1].normal)
            component[i % width] = std::numeric_limits<float>::quiet_NaN();
    layOut(leaf,
           [&](uint32_t place, Vertex3D* corners)
           {
               const Facelist& face = faceAt(*leaf, place);
               const std::vector<Vertex3D>& world = sourceOf(leaf->items[place].mesh)->world;
               corners[0] = world[face.a];
               corners[1] = world[face.b];
               corners[2] = world[face.c];
           });
    packPlanes(leaf);
    node->packedLeaf = static_cast<int32_t>(tree->leaves.size());
    tree->leaves.push_back(leaf);
    return node->packedLeaf;
}

// Are all faces there? Hosts may have changed a mesh since they were inserted.
static bool isWhole(const octreeNode* node)
{
    for (int i = 0; i < node->polys.size; ++i)
    {
        const Mesh* mesh = node->polys.items[i].mesh;
        const int face = node->polys.items[i].face;
        if (!mesh || !mesh->faces || !mesh->calculatedVertices || face < 0 || face >= mesh->faceCount ||
            !hasCorners(mesh->faces[face], mesh->vertexCount))
            return false;
    }
    for (const octreeNode* child : node->child)
        if (node->hasChildren && (!child || !isWhole(child)))
            return false;
    return true;
}

void PackedTree::make(octreeNode* root)
{
    if (root->packed && root->packed->root != root)
    {
        markStale(root); // a part of a larger tree has changed
        return;
    }
    if (!isWhole(root))
        return;
    try
    {
        TreePacker packer(root);
        if (!packer.isDone)
            return;
        PackedTree* tree = packer.tree.release();
        std::vector<octreeNode*> waiting = {root};
        while (!waiting.empty())
        {
            octreeNode* node = waiting.back();
            waiting.pop_back();
            leave(node);
            node->packed = tree;
            ++tree->users;
            for (octreeNode* child : node->child)
                if (child)
                    waiting.push_back(child);
        }
    }
    catch (const std::bad_alloc&)
    {
        markStale(root); // the queries go face by face
    }
}
