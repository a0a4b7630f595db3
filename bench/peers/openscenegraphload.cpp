// OpenSceneGraph's reader of .3DS files, with its default options: smooth normals.

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osg/TriangleIndexFunctor>
#include <osgDB/ReadFile>

#include "bench/peers/loads.h"
#include "bench/peers/timing.h"

namespace
{
struct Counter
{
    size_t triangles = 0;
    void operator()(unsigned int, unsigned int, unsigned int) { ++triangles; }
};

class CountTriangles : public osg::NodeVisitor
{
public:
    size_t triangles = 0;

    CountTriangles() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Geode& geode) override
    {
        for (unsigned int i = 0; i < geode.getNumDrawables(); ++i)
        {
            osg::TriangleIndexFunctor<Counter> counter;
            geode.getDrawable(i)->accept(counter);
            triangles += counter.triangles;
        }
    }
};
} // namespace

Loaded loadWithOpenSceneGraph(const char* file)
{
    const double begin = processorSeconds();
    const osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(file);
    const double seconds = processorSeconds() - begin;
    CountTriangles count;
    if (node)
        node->accept(count);
    return {seconds, count.triangles};
}
