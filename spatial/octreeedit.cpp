#include "spatial/octreeedit.h"

#include <algorithm>

#include "vornik/spatial/octree.h"

void removeFromOctree(octreeNode* root, const Mesh* mesh)
{
    if (!root)
        return;
    OTPolyData* end = std::remove_if(root->polys.items, root->polys.items + root->polys.size,
                                     [mesh](const OTPolyData& poly) { return poly.mesh == mesh; });
    root->polys.size = static_cast<int32_t>(end - root->polys.items);
    for (Plane* plane = root->planes; plane; plane = plane->next)
    {
        PlaneList* last = std::remove_if(plane->faces, plane->faces + (plane->faces ? plane->faceCount : 0),
                                         [mesh](const PlaneList& face) { return face.mesh == mesh; });
        plane->faceCount = static_cast<int32_t>(last - plane->faces);
    }
    for (octreeNode* node : root->child)
        removeFromOctree(node, mesh);
}
