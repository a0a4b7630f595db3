// Tracks with any keys, played by frame and by spline, on a hierarchy of any shape.

#include <fuzzer/FuzzedDataProvider.h>

#include <array>

#include "fuzz/harness.h"
#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

static float anyFloat(FuzzedDataProvider* input)
{
    const auto bits = input->ConsumeIntegral<uint32_t>();
    float value;
    static_assert(sizeof value == sizeof bits);
    __builtin_memcpy(&value, &bits, sizeof value);
    return value;
}

static VRKPath* anyPath(FuzzedDataProvider* input, Object* object)
{
    const int keys = input->ConsumeIntegralInRange(-1, 6);
    auto* path =
        new VRKPath(keys, input->ConsumeIntegralInRange(4, 9), input->ConsumeIntegralInRange(-1, 3), object);
    for (int i = -1; i <= keys; ++i)
    {
        const int frame = input->ConsumeBool() ? i * 10 : input->ConsumeIntegral<int>();
        const float a = anyFloat(input), b = anyFloat(input), c = anyFloat(input);
        switch (input->ConsumeIntegralInRange(0, 2))
        {
        case 0:
            path->set(i, a, frame);
            break;
        case 1:
            path->set(i, a, b, c, frame);
            break;
        default:
            path->set(i, a, b, c, anyFloat(input), frame);
            break;
        }
    }
    path->calcTans();
    path->interpolateKey(anyFloat(input));
    return path;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    FuzzedDataProvider input(data, size);
    OGroup group;
    group.addTList(new TList);
    std::array<Object*, 4> objects = {};
    for (size_t i = 0; i < 3; ++i)
    {
        Mesh* mesh = makeMesh("M", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
        group.addMesh(mesh);
        objects[i] = mesh;
    }
    auto* camera = new Camera;
    group.addCamera(camera);
    objects[3] = camera;
    for (size_t i = 0; i < objects.size(); ++i)
    {
        objects[i]->objectId = static_cast<int>(i);
        objects[i]->parent =
            input.ConsumeBool() ? objects[input.ConsumeIntegralInRange<size_t>(0, 3)] : nullptr;
    }

    auto* paths = new PathList;
    paths->initPivots(input.ConsumeIntegralInRange(-1, 4));
    const int count = input.ConsumeIntegralInRange(0, 6);
    for (int i = 0; i < count; ++i)
        paths->addPath(anyPath(&input, objects[input.ConsumeIntegralInRange<size_t>(0, 3)]));
    for (Object* object : objects)
    {
        const Vertex3D pivot = {anyFloat(&input), anyFloat(&input), anyFloat(&input)};
        paths->addPivotPoint(object, &pivot);
    }
    paths->firstFrame = input.ConsumeIntegral<int>();
    paths->lastFrame = input.ConsumeIntegral<int>();
    paths->frameCount = input.ConsumeIntegral<int>();
    paths->stopAtEnd = input.ConsumeBool();
    group.addPathList(paths);
    group.setActivePathList(0);
    group.animated = 1;
    for (int i = 0; i < 4; ++i)
    {
        group.setCurrentFrame(input.ConsumeIntegral<int>());
        group.doCameraAnim(camera);
        for (int m = 0; m < group.meshCount; ++m)
        {
            float matrix[16];
            group.transformVertices(group.meshes[m]);
            group.getObjectAnimatedMatrix(group.meshes[m], matrix);
        }
        group.render(0x20, camera);
    }
    return 0;
}
