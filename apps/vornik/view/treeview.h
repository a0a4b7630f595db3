// The leaves of a group's octree as boxes of lines, to see what queries look through.
#pragma once

#include <memory>
#include <vector>

#include "apps/vornik/camera.h"

class TreeView
{
public:
    /// Takes the leaves that hold faces, 65,536 at most. A null tree shows nothing.
    void build(const octreeNode* tree);
    void clear();
    /// Draws them under the projection that is set. @param list  whose first material has no transparency
    void draw(View* view, TList* list);

    int boxes() const { return count; }

private:
    std::vector<std::unique_ptr<Mesh>> meshes;
    int count = 0;
};
