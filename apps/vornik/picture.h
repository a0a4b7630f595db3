// Drawing a group into a picture of any size.
//
// The picture is drawn tile by tile on one small off-screen surface, each tile with several samples a pixel:
// drivers limit the size of a surface, and a picture of many samples soon exceeds it. Direct3D draws on the
// screen, see direct3d.h.
#pragma once

#include <functional>
#include <string>

#include "apps/vornik/camera.h"
#include "apps/vornik/imagefile.h"

struct PictureOptions
{
    int rasterizer = 0; ///< 0 OpenGL, 1 Direct3D
    int width = 1280;
    int height = 720;
    int samples = 3;    ///< along each side of a pixel
    int flags = 0;      ///< VRK_RENDER_... bits of style, and VRK_RENDER_CULL
    bool sorted = true; ///< transparent faces from far to near; otherwise mesh by mesh
    std::function<void(Camera*)> drawMore = {}; ///< draws what comes last, under the view that is set
    Color background = {0.19f, 0.2f, 0.235f, 1.0f};
};

/// Starts the engine on a surface that suits the picture. Load the scene after it.
/// @return what stands in the way; empty if nothing does
std::string startDrawing(const PictureOptions& options);

/// Draws the group. The meshes of the group change their order: the farthest comes first.
Image drawPicture(OGroup* group, View* view, const PictureOptions& options);
