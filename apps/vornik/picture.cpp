#include "apps/vornik/picture.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <GL/gl.h>

#include "apps/vornik/direct3d.h"
#include "apps/vornik/drawing.h"
#include "apps/vornik/surface.h"

enum
{
    largestSurfaceSide = 2048
};

/// Size of a tile in pixels of the picture.
struct TileSize
{
    int width, height;
};

static TileSize tileSize(const PictureOptions& options)
{
    const int most = std::max(1, largestSurfaceSide / options.samples);
    return {std::min(options.width, most), std::min(options.height, most)};
}

std::string startDrawing(const PictureOptions& options)
{
    if (options.rasterizer == 1)
        return startDirect3D(options);
    // Until the process ends, as the engine does.
    static std::unique_ptr<Surface> surface;
    const TileSize tile = tileSize(options);
    surface = std::make_unique<Surface>(tile.width * options.samples, tile.height * options.samples);
    const bool started =
        vrkSelectRasterizer(0) == 0 && vrkInitViewport(surface->window(), 32, 0, 24, false, 0, true) == 0;
    return started ? "" : "can't start OpenGL off-screen";
}

// Narrows the projection of the whole picture to the tile whose upper left pixel is at x, y.
static void narrowProjection(const float* whole, int x, int y, const TileSize& tile,
                             const PictureOptions& options)
{
    // vrkMultMatrix takes every fourth float of a block of 64.
    float block[4][4][4] = {};
    for (int i = 0; i < 16; ++i)
        block[i / 4][i % 4][0] = whole[i];

    const float width = static_cast<float>(options.width);
    const float height = static_cast<float>(options.height);
    const float tileWidth = static_cast<float>(tile.width);
    const float tileHeight = static_cast<float>(tile.height);
    const float left = static_cast<float>(x);
    const float bottom = height - static_cast<float>(y) - tileHeight;
    vrkSetMatrixType(VRK_PROJECTION);
    vrkInitMatrix();
    vrkTranslate((width - 2.0f * left) / tileWidth - 1.0f, (height - 2.0f * bottom) / tileHeight - 1.0f,
                 0.0f);
    vrkScale(width / tileWidth, height / tileHeight, 1.0f);
    vrkMultMatrix(block);
    vrkSetMatrixType(VRK_MODELVIEW);
}

static void draw(OGroup* group, View* view, const PictureOptions& options)
{
    Color background = options.background;
    vrkSetClearColor(&background);
    vrkClear();
    drawGroup(group, view, options.flags, options.sorted ? Transparency::sorted : Transparency::immediate);
    if (options.drawMore)
        options.drawMore(&view->camera);
}

static Image readSurface(int width, int height)
{
    const size_t stride = static_cast<size_t>(width) * 3;
    Image image = {width, height, std::vector<uint8_t>(stride * static_cast<size_t>(height))};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    for (int y = 0; y < height; ++y) // rows come bottom-up
        glReadPixels(0, height - 1 - y, width, 1, GL_RGB, GL_UNSIGNED_BYTE,
                     &image.rgb[static_cast<size_t>(y) * stride]);
    return image;
}

// Copies a tile into the picture at x, y; what reaches over the edge is left out.
static void paste(const Image& tile, int x, int y, Image* picture)
{
    const int width = std::min(tile.width, picture->width - x);
    const int height = std::min(tile.height, picture->height - y);
    for (int row = 0; row < height; ++row)
    {
        const size_t from = static_cast<size_t>(row) * static_cast<size_t>(tile.width) * 3;
        const size_t to =
            (static_cast<size_t>(y + row) * static_cast<size_t>(picture->width) + static_cast<size_t>(x)) * 3;
        std::copy_n(&tile.rgb[from], static_cast<size_t>(width) * 3, &picture->rgb[to]);
    }
}

static float distanceTo(const Mesh* mesh, const Vertex3D& eye)
{
    const float distance = vrkFakeDistance(&mesh->position, &eye);
    return std::isfinite(distance) ? distance : 0.0f;
}

// Transparent faces are drawn in the order of the meshes.
static void sortFarthestFirst(OGroup* group, const Vertex3D& eye)
{
    std::stable_sort(group->meshes, group->meshes + group->meshCount,
                     [&eye](const Mesh* a, const Mesh* b)
                     { return distanceTo(a, eye) > distanceTo(b, eye); });
}

Image drawPicture(OGroup* group, View* view, const PictureOptions& options)
{
    sortFarthestFirst(group, view->camera.eye);
    if (options.rasterizer == 1)
        return drawOnDirect3D(group, view, options);
    vrkInitTransparentPlaneStack(transparentRoom(*group));
    setProjection(group, *view, static_cast<float>(options.width) / static_cast<float>(options.height));
    float whole[16];
    vrkGetProjectionMatrix(whole);
    glLineWidth(static_cast<float>(options.samples));
    const TileSize tile = tileSize(options);
    Image picture = {
        options.width, options.height,
        std::vector<uint8_t>(static_cast<size_t>(options.width) * static_cast<size_t>(options.height) * 3)};
    for (int y = 0; y < options.height; y += tile.height)
        for (int x = 0; x < options.width; x += tile.width)
        {
            narrowProjection(whole, x, y, tile, options);
            draw(group, view, options);
            const Image samples = readSurface(tile.width * options.samples, tile.height * options.samples);
            paste(shrink(samples, options.samples), x, y, &picture);
        }
    vrkUnInitTransparentPlaneStack();
    return picture;
}
