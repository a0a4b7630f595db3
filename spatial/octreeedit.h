#pragma once

class Mesh;
class octreeNode;

/// Takes all faces of a mesh out of a tree, before the mesh is destroyed. @param root  may be null
void removeFromOctree(octreeNode* root, const Mesh* mesh);
