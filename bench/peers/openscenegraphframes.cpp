// OpenSceneGraph's viewer on one thread, without its culling: all is in view. Each mesh is a transform above
// one geometry for each of its ranges.

#include <osg/CullFace>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Texture2D>
#include <osgViewer/Viewer>

#include <cstring>

#include "bench/peers/frames.h"

static osg::Texture2D* makeTexture(const FlatImage& flat)
{
    osg::Image* const image = new osg::Image;
    image->allocateImage(flat.width, flat.height, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    std::memcpy(image->data(), flat.rgba.data(), flat.rgba.size());
    osg::Texture2D* const texture = new osg::Texture2D(image);
    texture->setFilter(osg::Texture::MIN_FILTER,
                       flat.mipmap ? osg::Texture::LINEAR_MIPMAP_LINEAR : osg::Texture::LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    return texture;
}

template <class Array, class T>
static Array* toArray(const std::vector<T>& values)
{
    static_assert(sizeof(T) == sizeof(typename Array::ElementDataType));
    Array* const array = new Array(unsigned(values.size()));
    std::memcpy(static_cast<void*>(&array->front()), static_cast<const void*>(values.data()),
                values.size() * sizeof(T));
    return array;
}

static osg::Node* makeMesh(const FlatMesh& mesh, const std::vector<osg::ref_ptr<osg::StateSet>>& states,
                           const std::vector<osg::ref_ptr<osg::StateSet>>& twoSided, bool kept)
{
    osg::MatrixTransform* const place =
        new osg::MatrixTransform(osg::Matrix::translate(mesh.position.x, mesh.position.y, mesh.position.z));
    osg::Geode* const geode = new osg::Geode;
    osg::Array* const vertices = toArray<osg::Vec3Array>(mesh.vertices);
    osg::Array* const colors = toArray<osg::Vec4Array>(mesh.colors);
    osg::Array* const coords = toArray<osg::Vec2Array>(mesh.coords);
    for (const FlatRange& range : mesh.ranges)
    {
        osg::Geometry* const geometry = new osg::Geometry;
        geometry->setVertexArray(vertices);
        geometry->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
        geometry->setTexCoordArray(0, coords);
        geometry->addPrimitiveSet(new osg::DrawElementsUShort(
            GL_TRIANGLES, unsigned(range.last - range.first + 1) * 3, &mesh.faces[size_t(range.first)].a));
        geometry->setUseVertexBufferObjects(false);
        geometry->setUseDisplayList(kept);
        geometry->setStateSet((range.twoSided ? twoSided : states)[size_t(range.image)]);
        geode->addDrawable(geometry);
    }
    place->addChild(geode);
    return place;
}

static osg::Group* makeScene(const FlatScene& flat, bool kept)
{
    osg::Group* const root = new osg::Group;
    root->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    root->getOrCreateStateSet()->setAttributeAndModes(new osg::CullFace, osg::StateAttribute::ON);
    std::vector<osg::ref_ptr<osg::StateSet>> states, twoSided;
    for (const FlatImage& image : flat.images)
    {
        osg::Texture2D* const texture = makeTexture(image);
        for (auto* list : {&states, &twoSided})
        {
            list->push_back(new osg::StateSet);
            list->back()->setTextureAttributeAndModes(0, texture);
        }
        twoSided.back()->setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
    }
    for (const FlatMesh& mesh : flat.meshes)
        root->addChild(makeMesh(mesh, states, twoSided, kept));
    return root;
}

namespace
{
struct Finished : osg::Camera::DrawCallback
{
    const std::function<void()>* beforeSwap = nullptr;
    void operator()(osg::RenderInfo&) const override
    {
        if (beforeSwap && *beforeSwap)
            (*beforeSwap)();
    }
};
} // namespace

static bool openWindow(osg::Camera* camera)
{
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->readDISPLAY();
    traits->width = frameWidth;
    traits->height = frameHeight;
    traits->depth = 24;
    traits->doubleBuffer = true;
    traits->vsync = false;
    traits->windowDecoration = false;
    osg::GraphicsContext* const context = osg::GraphicsContext::createGraphicsContext(traits);
    camera->setGraphicsContext(context);
    camera->setViewport(new osg::Viewport(0, 0, frameWidth, frameHeight));
    return context != nullptr;
}

DrawFrame drawWithOpenSceneGraph(const FlatScene& flat, bool kept)
{
    osgViewer::Viewer* const viewer = new osgViewer::Viewer; // lives as long as the program
    osg::Camera* const camera = viewer->getCamera();
    Finished* const finished = new Finished;
    if (!openWindow(camera))
        return {};
    camera->setClearColor(osg::Vec4(0, 0, 0, 0));
    camera->setCullingMode(osg::CullSettings::NO_CULLING);
    camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    camera->setProjectionMatrix(osg::Matrix(flat.projection));
    camera->setViewMatrix(osg::Matrix(flat.view));
    camera->setFinalDrawCallback(finished);
    viewer->setThreadingModel(osgViewer::Viewer::SingleThreaded);
    viewer->setLightingMode(osg::View::NO_LIGHT);
    viewer->setSceneData(makeScene(flat, kept));
    viewer->realize();
    return [viewer, finished](const std::function<void()>& beforeSwap)
    {
        finished->beforeSwap = &beforeSwap;
        viewer->frame();
    };
}
