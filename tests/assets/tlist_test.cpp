#include "vornik/assets/tlist.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/scene/material.h"

// A list with materials named "a", "b" and "c" behind the first.
class TListTest : public ::testing::Test
{
protected:
    TListTest()
    {
        for (const char* name : {"a", "b", "c"})
            materials.push_back(add(name));
    }
    Material* add(const char* name)
    {
        Material* material = new Material;
        material->setName(name);
        EXPECT_EQ(list.addMaterial(material), 0);
        return material;
    }

    LogCapture log;
    TList list;
    std::vector<Material*> materials;
};

TEST(TList, BeginsWithTheDefaultMaterial)
{
    const TList list;
    ASSERT_NE(list.first, nullptr);
    EXPECT_STREQ(list.first->name, "VRKDefault");
    EXPECT_EQ(list.first->id, 0);
    EXPECT_EQ(list.first->selfIllumination, 0.0f);
    EXPECT_EQ(list.first->next, nullptr);
    EXPECT_STREQ(list.baseDirectory, "");
    const Color* color = list.first->ambient;
    EXPECT_EQ(color, list.first->diffuse);
    EXPECT_EQ(color, list.first->specular);
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(color->r, 0.5f);
    EXPECT_EQ(color->g, 0.0f);
    EXPECT_EQ(color->b, 0.2f);
    EXPECT_EQ(color->a, 1.0f);
}

TEST_F(TListTest, NumbersFollowEachOther)
{
    EXPECT_EQ(list.seekLastMaterial(), materials[2]);
    EXPECT_EQ(list.seekLastMaterial()->id, 3);
    for (int id = 1; id <= 3; ++id)
        EXPECT_EQ(list.getMaterial(id), materials[static_cast<size_t>(id - 1)]);
    EXPECT_EQ(list.getMaterial(0), list.first);
    EXPECT_EQ(list.getMaterial(4), nullptr);
    EXPECT_EQ(list.getMaterial(-1), nullptr);
}

TEST_F(TListTest, NamesAreExact)
{
    EXPECT_EQ(list.seekMaterial("b"), materials[1]);
    EXPECT_EQ(list.seekMaterial("B"), nullptr);
    EXPECT_EQ(list.seekMaterial(""), nullptr);
    EXPECT_EQ(list.seekMaterial("VRKDefault"), list.first);
    EXPECT_EQ(list.seekMaterial("vrkdefault"), nullptr);
    add("b");
    EXPECT_EQ(list.seekMaterial("b"), materials[1]); // the first of the name
}

TEST_F(TListTest, FirstAndStrangersHaveNoPrevious)
{
    Material stranger;
    EXPECT_EQ(list.getPrevious(materials[0]), list.first);
    EXPECT_EQ(list.getPrevious(materials[2]), materials[1]);
    EXPECT_EQ(list.getPrevious(list.first), nullptr);
    EXPECT_EQ(list.getPrevious(&stranger), nullptr);
    EXPECT_EQ(list.getPrevious(nullptr), nullptr);
}

TEST_F(TListTest, NumberOfAMaterial)
{
    EXPECT_EQ(list.getMaterialID("c"), 3);
    EXPECT_EQ(list.getMaterialID(materials[1]), 2);
    EXPECT_EQ(list.getMaterialID("VRKDefault"), 0);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(list.getMaterialID("d"), 5);
    EXPECT_EQ(list.getMaterialID(static_cast<Material*>(nullptr)), 5);
    EXPECT_EQ(log.text(), "Material/Texture not found\nMaterial/Texture not found\n");
}

TEST_F(TListTest, DeletionKeepsTheOtherNumbers)
{
    EXPECT_EQ(list.delMaterial("a"), 0);
    EXPECT_EQ(list.getMaterial(1), nullptr);
    EXPECT_EQ(list.getMaterial(2), materials[1]);
    EXPECT_EQ(list.first->next, materials[1]);
    EXPECT_EQ(add("d")->id, 4);
    EXPECT_EQ(list.delMaterial("d"), 0);
    EXPECT_EQ(list.seekLastMaterial(), materials[2]);
    EXPECT_EQ(add("e")->id, 4);
    EXPECT_EQ(log.text(), "");
}

TEST_F(TListTest, FirstAndMissingMaterialsAreNotDeleted)
{
    EXPECT_EQ(list.delMaterial("VRKDefault"), 23);
    EXPECT_STREQ(list.first->name, "VRKDefault");
    EXPECT_EQ(list.delMaterial("d"), 5);
    EXPECT_EQ(log.text(), "Could not delete material! Possible memoryleak or program crash!\n"
                          "Material/Texture not found\n");
}

TEST_F(TListTest, DirectoryEndsInABackslash)
{
    for (const auto& [given, kept] : {std::pair{"MAPS", "MAPS\\"},
                                      {"MAPS\\", "MAPS\\"},
                                      {"C:\\SCENES\\MAPS", "C:\\SCENES\\MAPS\\"},
                                      {"maps/", "maps/\\"},
                                      {"", "\\"},
                                      {"\\", "\\"}})
    {
        list.setBaseDirectory(given);
        EXPECT_STREQ(list.baseDirectory, kept);
    }
}

TEST_F(TListTest, LongDirectoryIsCut)
{
    for (const size_t length : {253u, 254u, 255u, 256u, 1000u})
    {
        list.setBaseDirectory(std::string(length, 'd').c_str());
        EXPECT_EQ(list.baseDirectory, std::string(length < 254 ? length : 254, 'd') + "\\") << length;
    }
}

TEST_F(TListTest, KeptColoursLastAsLongAsTheList)
{
    Color* color = static_cast<Color*>(std::malloc(sizeof(Color)));
    *color = {1, 2, 3, 4};
    list.keepColor(color);
    materials[0]->addDiffuseColor(color);
    materials[1]->addDiffuseColor(color);
    EXPECT_EQ(list.delMaterial("a"), 0);
    EXPECT_EQ(materials[1]->diffuse->g, 2.0f);
}
