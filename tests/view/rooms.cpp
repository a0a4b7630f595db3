#include "tests/view/rooms.h"
#include "apps/vornik/surface.h"

#include <algorithm>
#include <cmath>

Mesh3ds rectangle(const std::string& name, const Vertex3D& low, const Vertex3D& high, const char* facing)
{
    Mesh3ds mesh;
    mesh.name = name;
    if (facing[1] == 'x')
        mesh.vertices = {
            {low.x, low.y, low.z}, {low.x, high.y, low.z}, {high.x, high.y, high.z}, {high.x, low.y, high.z}};
    else if (facing[1] == 'y')
        mesh.vertices = {
            {high.x, low.y, low.z}, {low.x, low.y, low.z}, {low.x, high.y, high.z}, {high.x, high.y, high.z}};
    else
        mesh.vertices = {
            {low.x, low.y, low.z}, {high.x, low.y, low.z}, {high.x, high.y, high.z}, {low.x, high.y, high.z}};
    if (facing[0] == '-')
        std::reverse(mesh.vertices.begin(), mesh.vertices.end());
    mesh.faces = {{0, 1, 2}, {0, 2, 3}};
    return mesh;
}

Scene3ds room()
{
    Scene3ds scene;
    scene.meshes = {
        rectangle("floor", {-5, -5, 0}, {5, 5, 0}, "+z"), rectangle("west", {-5, -5, 0}, {-5, 5, 3}, "+x"),
        rectangle("east", {5, -5, 0}, {5, 5, 3}, "-x"), rectangle("south", {-5, -5, 0}, {5, -5, 3}, "+y"),
        rectangle("north", {-5, 5, 0}, {5, 5, 3}, "-y")};
    return scene;
}

StageTest::StageTest()
{
    // Once for all tests: a context can't be had twice as cheaply.
    static const bool started = []
    {
        static const Surface surface(64, 64);
        vrkInitErrorLog(3);
        return vrkSelectRasterizer(0) == 0 &&
               vrkInitViewport(surface.window(), 32, 0, 24, false, 0, true) == 0;
    }();
    EXPECT_TRUE(started);
}

SceneFile StageTest::write(const std::string& name, const Scene3ds& scene) const
{
    return readSceneFile(folder.write(name, build3ds(scene)), "");
}

void StageTest::show(const Scene3ds& scene)
{
    ASSERT_EQ(stage.load(write("scene.3ds", scene), options, 1.5f), "");
}
