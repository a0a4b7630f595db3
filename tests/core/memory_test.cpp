#include "vornik/core/memory.h"

#include <cstdlib>

#include <gtest/gtest.h>

TEST(Memory, FreeClearsTheVariable)
{
    char* block = static_cast<char*>(std::malloc(10));
    vrkFree(&block);
    EXPECT_EQ(block, nullptr);
}

TEST(Memory, FreeOfAClearedVariableDoesNothing)
{
    char* block = nullptr;
    vrkFree(&block);
    EXPECT_EQ(block, nullptr);
}
