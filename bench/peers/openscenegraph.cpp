// OpenSceneGraph's k-d tree over one geometry, asked by an intersector of line segments that keeps the
// nearest hit. Both sides of a face are hit.

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/KdTree>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

#include "bench/peers/peer.h"
#include "bench/peers/timing.h"

static osg::Vec3 toOpenSceneGraph(const Vertex3D& v)
{
    return osg::Vec3(v.x, v.y, v.z);
}

Peer makeOpenSceneGraph(const std::vector<Corners>& triangles)
{
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    for (const Corners& t : triangles)
        for (const Vertex3D& v : {t.a, t.b, t.c})
            vertices->push_back(toOpenSceneGraph(v));
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, GLsizei(vertices->size())));

    const double begin = processorSeconds();
    osg::ref_ptr<osg::KdTree> tree = new osg::KdTree;
    osg::KdTree::BuildOptions options;
    tree->build(options, geometry);
    geometry->setShape(tree);
    const double built = processorSeconds() - begin;

    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(geometry);
    geode->getBound();
    const auto nearest = [geode](const Ray& ray)
    {
        osg::ref_ptr<osgUtil::LineSegmentIntersector> intersector =
            new osgUtil::LineSegmentIntersector(toOpenSceneGraph(ray.start), toOpenSceneGraph(ray.end));
        intersector->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
        osgUtil::IntersectionVisitor visitor(intersector);
        geode->accept(visitor);
        return intersector->containsIntersections();
    };
    return {"OpenSceneGraph k-d tree", built, nearest, nullptr, nullptr};
}
