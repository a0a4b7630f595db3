#include "animation/tracks.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "vornik/animation/path.h"
#include "vornik/scene/object.h"

TEST(Tracks, NotedOnesAreThoseOfTheWalk)
{
    std::mt19937 random(9);
    for (const int count : {0, 1, 5, 300, 4096})
    {
        std::vector<Object> objects(static_cast<size_t>(1 + count / 3));
        const std::unique_ptr<PathList> list(new PathList);
        for (int i = 0; i < count; ++i)
        {
            Object* object = random() % 20 == 0 ? nullptr : &objects[random() % objects.size()];
            list->addPath(
                new VRKPath(1, 5 + static_cast<int>(random() % 4), static_cast<int>(random() % 3), object));
        }
        for (int i = 0; i < count / 10; ++i)
            list->delPath(static_cast<int>(random() % 50)); // leaves empty slots
        noteTracks(*list);
        objects.emplace_back(); // moves them all: strangers now
        std::vector<const Object*> asked = {nullptr};
        for (int i = 0; i < list->pathCount; ++i)
            if (list->paths[i])
                asked.push_back(list->paths[i]->object);
        for (const Object& object : objects)
            asked.push_back(&object);
        for (const Object* object : asked)
        {
            const Tracks plain = findTracks(*list, object), noted = findNotedTracks(*list, object);
            EXPECT_EQ(noted.position, plain.position);
            EXPECT_EQ(noted.rotation, plain.rotation);
        }
    }
}

TEST(Tracks, NodeTypeMattersWhereItIsAsked)
{
    const std::unique_ptr<PathList> list(new PathList);
    Object camera;
    VRKPath* target = new VRKPath(1, VRK_NODE_TARGET, VRK_TRACK_POSITION, &camera);
    VRKPath* eye = new VRKPath(1, VRK_NODE_CAMERA, VRK_TRACK_POSITION, &camera);
    list->addPath(target);
    list->addPath(eye);
    EXPECT_EQ(findTrack(*list, &camera, VRK_TRACK_POSITION), target);
    EXPECT_EQ(findTrack(*list, &camera, VRK_TRACK_POSITION, VRK_NODE_CAMERA), eye);
    EXPECT_EQ(findTrack(*list, &camera, VRK_TRACK_ROTATION), nullptr);
}
