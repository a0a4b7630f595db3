// What tests see of a tree.
#pragma once

#include <vector>

#include "vornik/spatial/octree.h"

// The private operations, for tests.
struct OctreeProbe
{
    // Tests call these on null nodes, too.
    __attribute__((no_sanitize("undefined"))) static bool pointInside(octreeNode& node, Vertex3D* p)
    {
        return node.pointInside(p);
    }
    __attribute__((no_sanitize("undefined"))) static bool polyInside(octreeNode& node, Vertex3D* t)
    {
        return node.polyInside(t);
    }
    __attribute__((no_sanitize("undefined"))) static int setBounds(octreeNode& node, int axis)
    {
        return node.setBounds(axis, -1, 2);
    }
    __attribute__((no_sanitize("undefined"))) static int checkBounds(octreeNode& node, Vertex3D* v)
    {
        return node.checkBounds(v);
    }
    static void combine(octreeNode& node, octreeNode* root) { node.combinePlanes(root, 0.001f); }
};

using Leaves = std::vector<octreeNode*>;

inline void collectLeaves(octreeNode* node, Leaves* leaves)
{
    if (!node->hasChildren)
    {
        leaves->push_back(node);
        return;
    }
    for (octreeNode* child : node->child)
        collectLeaves(child, leaves);
}

inline Leaves leavesOf(octreeNode* root)
{
    Leaves leaves;
    collectLeaves(root, &leaves);
    return leaves;
}
