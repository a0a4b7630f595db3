// Nodes that cameras carry.
#pragma once

#include <deque>
#include <vector>

struct LoadedNode;

/// A camera turns what hangs from it, which the engine's tracks don't: rewrites the keys of such nodes, frame
/// by frame, to where they are in the world, and makes them roots.
/// @param parents  index of each node's parent, -1 for roots; without circles
/// @param order    node numbers, parents in front of their children
void freeFromCameras(std::deque<LoadedNode>* nodes, std::vector<int>* parents, const std::vector<int>& order);
