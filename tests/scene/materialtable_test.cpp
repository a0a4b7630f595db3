#include "scene/materialtable.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"

TEST(MaterialTable, FindsWhatTheWalkFinds)
{
    std::mt19937 random(2);
    for (const int count : {0, 3, 500, 5000})
    {
        TList list, other;
        for (int i = 0; i < count; ++i)
        {
            Material* material = new Material;
            list.addMaterial(material);
            if (random() % 10 == 0) // a number of the host's: of another, below nought, beyond any table
                material->id = random() % 2 ? static_cast<int>(random() % 100) : static_cast<int>(random());
        }
        other.addMaterial(new Material);
        const NotedMaterials noted(&list);
        for (int id = -5; id < count + 100; ++id)
            ASSERT_EQ(findMaterial(&list, id), list.getMaterial(id)) << id;
        for (const int id : {INT_MIN, INT_MAX, 4095, 4096})
            EXPECT_EQ(findMaterial(&list, id), list.getMaterial(id));
        EXPECT_EQ(findMaterial(&other, 1), other.getMaterial(1));
    }
}

TEST(MaterialTable, BehindItTheWalkDecidesAgain)
{
    TList list;
    list.addMaterial(new Material);
    {
        const NotedMaterials noted(&list);
        EXPECT_NE(findMaterial(&list, 1), nullptr);
    }
    list.first->next->id = 7;
    EXPECT_EQ(findMaterial(&list, 1), nullptr);
    EXPECT_EQ(findMaterial(&list, 7), list.first->next);
    const NotedMaterials none(nullptr);
    EXPECT_EQ(findMaterial(&list, 0), list.first);
}
