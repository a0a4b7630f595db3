// A library beside the engine: the same arrays, drawn into a window of the same size.
#pragma once

#include <functional>

#include "bench/peers/flatscene.h"

constexpr int frameWidth = 640, frameHeight = 480;

/// Draws and shows one frame. The function given, if any, is called with the finished picture in the back
/// buffer of the current context.
using DrawFrame = std::function<void(const std::function<void()>& beforeSwap)>;

/// Each opens a window. Empty if that fails. @param kept  whether the library may keep the scene in a form of
/// OpenGL's, as lists or buffers, or has to hand arrays over
DrawFrame drawWithIrrlicht(const FlatScene& scene, bool kept);
DrawFrame drawWithOpenSceneGraph(const FlatScene& scene, bool kept);
