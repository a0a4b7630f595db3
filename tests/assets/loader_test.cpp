#include "vornik/assets/loader.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/assets/loaderblock.h"
#include "tests/support/writer3ds.h"

TEST(Loader, NewOneReadsAsExhausted)
{
    Loader loader;
    EXPECT_TRUE(loader.atEnd);
    EXPECT_EQ(loader.chunkID, 0);
    EXPECT_EQ(loader.chunkLength, 0u);
    EXPECT_EQ(loader.current, nullptr);
    EXPECT_EQ(loader.data, nullptr);
    EXPECT_EQ(loader.getFloat(), -1.0f);
    EXPECT_EQ(loader.getInt(), 0);
    EXPECT_EQ(loader.getShort(), 0);
    EXPECT_EQ(loader.getChar(), 0);
    loader.finishCurrentChunk();
    EXPECT_EQ(loader.current, nullptr);
}

TEST(Loader, ReadsLittleEndianValuesOfTheirWidths)
{
    LoaderBlock block(ChunkWriter().f32(1.5f).i32(-70000).i16(-2).u8(0x80).u8(7).finish());
    EXPECT_EQ(vrkLoader.getFloat(), 1.5f);
    EXPECT_EQ(block.offset(), 4u);
    EXPECT_EQ(vrkLoader.getInt(), -70000);
    EXPECT_EQ(block.offset(), 8u);
    EXPECT_EQ(vrkLoader.getShort(), -2);
    EXPECT_EQ(block.offset(), 10u);
    EXPECT_EQ(static_cast<signed char>(vrkLoader.getChar()), -128);
    EXPECT_FALSE(vrkLoader.atEnd);
    EXPECT_EQ(vrkLoader.getChar(), 7);
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, ReadOfTheLastByteReturnsItAndEndsTheBlock)
{
    LoaderBlock block({42});
    EXPECT_EQ(vrkLoader.getChar(), 42);
    EXPECT_TRUE(vrkLoader.atEnd);
    EXPECT_EQ(vrkLoader.getChar(), 0);
    EXPECT_EQ(block.offset(), 1u);
}

TEST(Loader, EveryWidthEndsTheBlockByItself)
{
    {
        LoaderBlock block(ChunkWriter().f32(2).finish());
        EXPECT_EQ(vrkLoader.getFloat(), 2.0f);
        EXPECT_TRUE(vrkLoader.atEnd);
        EXPECT_EQ(vrkLoader.getFloat(), -1.0f);
    }
    {
        LoaderBlock block(ChunkWriter().u32(2).finish());
        EXPECT_EQ(vrkLoader.getInt(), 2);
        EXPECT_TRUE(vrkLoader.atEnd);
        EXPECT_EQ(vrkLoader.getInt(), 0);
    }
    LoaderBlock block(ChunkWriter().u16(2).finish());
    EXPECT_EQ(vrkLoader.getShort(), 2);
    EXPECT_TRUE(vrkLoader.atEnd);
    EXPECT_EQ(vrkLoader.getShort(), 0);
}

TEST(Loader, ValueAcrossTheEndIsReadWholeFromThePadding)
{
    LoaderBlock block({0x11, 0x22});
    EXPECT_EQ(vrkLoader.getInt(), 0x2211);
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, InitDataLeavesTheChunkFieldsAlone)
{
    LoaderBlock first(ChunkWriter().header(0x1234, 60).u8(1).finish());
    vrkLoader.getChunkID();
    LoaderBlock second({1, 2, 3});
    EXPECT_EQ(vrkLoader.chunkID, 0x1234);
    EXPECT_EQ(vrkLoader.chunkLength, 60u);
    EXPECT_EQ(vrkLoader.size, 3);
    EXPECT_EQ(vrkLoader.current, vrkLoader.data);
    EXPECT_FALSE(vrkLoader.atEnd);
}

TEST(Loader, ToStartReadsTheSameBlockAgainWithTheOldChunkInPlace)
{
    LoaderBlock block(ChunkWriter().open(0x1234).u16(5).finish());
    block.enter();
    vrkLoader.getShort();
    ASSERT_TRUE(vrkLoader.atEnd);
    vrkLoader.toStart();
    EXPECT_FALSE(vrkLoader.atEnd);
    EXPECT_EQ(vrkLoader.chunkID, 0x1234);
    EXPECT_EQ(vrkLoader.getShort(), 0x1234);
}

TEST(Loader, StringCountsItsTerminator)
{
    LoaderBlock block(ChunkWriter().text("abc").text("").u8(1).finish());
    char buffer[8] = "xxxxxxx";
    EXPECT_EQ(vrkLoader.getString(buffer), 4);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(vrkLoader.getString(buffer), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(vrkLoader.atEnd);
    EXPECT_EQ(block.offset(), 5u);
}

TEST(Loader, EmptyStringAtTheLastByteEndsTheBlock)
{
    LoaderBlock block({0});
    char buffer[4] = "xxx";
    EXPECT_EQ(vrkLoader.getString(buffer), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, StringOfAnExhaustedBlockLeavesTheBuffer)
{
    LoaderBlock block({0});
    vrkLoader.getChar();
    char buffer[4] = "xxx";
    EXPECT_EQ(vrkLoader.getString(buffer), 0);
    EXPECT_STREQ(buffer, "xxx");
}

TEST(Loader, StringWithoutTerminatorEndsWithTheBlock)
{
    LoaderBlock block({'a', 'b'});
    char buffer[4] = "xxx";
    EXPECT_EQ(vrkLoader.getString(buffer), 2);
    EXPECT_STREQ(buffer, "ab");
    EXPECT_TRUE(vrkLoader.atEnd);
    EXPECT_EQ(block.offset(), 2u);
}

TEST(Loader, StringIsCutToItsBufferAndPassedOverWhole)
{
    LoaderBlock block(ChunkWriter().text("abcdef").u8(9).finish());
    char buffer[4] = "xxx";
    EXPECT_EQ(vrkLoader.getString(buffer, 4), 7);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(vrkLoader.getChar(), 9);
}

TEST(Loader, ChunkHeaderIsKeptWithItsPlace)
{
    LoaderBlock block(ChunkWriter().u8(0).open(0xAFFF).zeros(3).finish());
    vrkLoader.getChar();
    vrkLoader.getChunkID();
    EXPECT_EQ(vrkLoader.chunkID, 0xAFFF);
    EXPECT_EQ(vrkLoader.chunkLength, 9u);
    EXPECT_EQ(vrkLoader.chunkStart, vrkLoader.data + 1);
    EXPECT_EQ(block.offset(), 7u);
}

TEST(Loader, ChunkCutBehindItsIdentifierHasNoLength)
{
    LoaderBlock block({0x4D, 0x4D});
    vrkLoader.chunkLength = 77;
    vrkLoader.getChunkID();
    EXPECT_EQ(vrkLoader.chunkID, 0x4D4D);
    EXPECT_EQ(vrkLoader.chunkLength, 0u);
    EXPECT_TRUE(vrkLoader.atEnd);
    EXPECT_EQ(block.offset(), 2u);
}

TEST(Loader, ChunkOfAnExhaustedBlockKeepsTheLastOne)
{
    LoaderBlock block(ChunkWriter().empty(0x1234).finish());
    block.enter();
    vrkLoader.getChunkID();
    EXPECT_EQ(vrkLoader.chunkID, 0x1234);
    EXPECT_EQ(vrkLoader.chunkLength, 6u);
}

TEST(Loader, MainChunkAloneIsAFileAndItsEnd)
{
    LoaderBlock block(ChunkWriter().empty(0x4D4D).finish());
    EXPECT_TRUE(vrkLoader.checkFormat());
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, OtherChunkIsNoFile)
{
    LoaderBlock block(ChunkWriter().empty(0x3D3D).u8(0).finish());
    EXPECT_FALSE(vrkLoader.checkFormat());
    EXPECT_EQ(vrkLoader.chunkID, 0x3D3D);
}

TEST(Loader, ExhaustedBlockIsNoFileAndKeepsTheLastChunk)
{
    LoaderBlock block(ChunkWriter().empty(0x4D4D).finish());
    block.enter();
    EXPECT_FALSE(vrkLoader.checkFormat());
    EXPECT_EQ(vrkLoader.chunkID, 0x4D4D);
}

TEST(Loader, SkipGoesByTheStoredLength)
{
    LoaderBlock block(ChunkWriter().open(1).zeros(4).close().u8(9).finish());
    block.enter();
    vrkLoader.skipChunk();
    EXPECT_EQ(vrkLoader.getChar(), 9);
}

TEST(Loader, SkipOfAChunkWithoutLengthStandsOnItsHeaderAgain)
{
    LoaderBlock block(ChunkWriter().u16(0).header(1, 0).zeros(4).finish());
    vrkLoader.getShort();
    block.enter();
    vrkLoader.skipChunk();
    EXPECT_EQ(block.offset(), 2u);
    EXPECT_FALSE(vrkLoader.atEnd);
}

TEST(Loader, SkipPastTheBlockEndsItAndStaysInside)
{
    for (uint32_t length : {11u, 1000u, 0x7FFFFFFFu, 0xFFFFFFFFu})
    {
        LoaderBlock block(ChunkWriter().header(1, length).zeros(4).finish());
        block.enter();
        vrkLoader.skipChunk();
        EXPECT_TRUE(vrkLoader.atEnd);
        EXPECT_EQ(block.offset(), 10u);
    }
}

TEST(Loader, SkipOnAnExhaustedBlockStays)
{
    LoaderBlock block(ChunkWriter().header(1, 2).finish());
    block.enter();
    vrkLoader.skipChunk();
    EXPECT_EQ(block.offset(), 6u);
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, FinishMovesToTheChunksEndFromEitherSide)
{
    LoaderBlock block(ChunkWriter().open(1).zeros(4).close().zeros(8).finish());
    block.enter();
    vrkLoader.finishCurrentChunk();
    EXPECT_EQ(block.offset(), 10u);
    vrkLoader.getInt();
    vrkLoader.finishCurrentChunk();
    EXPECT_EQ(block.offset(), 10u);
    EXPECT_FALSE(vrkLoader.atEnd);
}

TEST(Loader, FinishActsOnAnExhaustedBlockToo)
{
    LoaderBlock block(ChunkWriter().header(1, 7).zeros(4).finish());
    block.enter();
    vrkLoader.getInt();
    ASSERT_TRUE(vrkLoader.atEnd);
    vrkLoader.finishCurrentChunk();
    EXPECT_EQ(block.offset(), 7u);
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST(Loader, FinishDoesNothingBeforeTheFirstRead)
{
    LoaderBlock block(ChunkWriter().header(1, 8).zeros(20).finish());
    block.enter();
    vrkLoader.initData(reinterpret_cast<char*>(vrkLoader.data), vrkLoader.size);
    vrkLoader.finishCurrentChunk();
    EXPECT_EQ(block.offset(), 0u);
    EXPECT_FALSE(vrkLoader.atEnd);
}

TEST(Loader, FinishIgnoresTheChunkOfAnotherBlock)
{
    LoaderBlock first(ChunkWriter().header(1, 8).zeros(20).finish());
    first.enter();
    LoaderBlock second(std::vector<uint8_t>(20));
    vrkLoader.getChar();
    vrkLoader.finishCurrentChunk();
    EXPECT_EQ(second.offset(), 1u);
}

TEST(Loader, CopyFloatDoesNothingInTheMiddleOfABlock)
{
    LoaderBlock block(ChunkWriter().f32(1).f32(2).f32(3).finish());
    float values[2] = {9, 9};
    vrkLoader.copyFloat(values, 1);
    EXPECT_EQ(values[0], 9.0f);
    EXPECT_EQ(block.offset(), 0u);
}

TEST(Loader, CopyFloatActsOnlyWhileTheEndFlagIsSet)
{
    LoaderBlock block(ChunkWriter().f32(1).f32(2).f32(3).finish());
    float values[3] = {9, 9, 9};
    vrkLoader.atEnd = true;
    vrkLoader.copyFloat(values, 3); // up to the very end: refused
    EXPECT_EQ(values[0], 9.0f);
    vrkLoader.copyFloat(values, 2);
    EXPECT_EQ(values[0], 1.0f);
    EXPECT_EQ(values[1], 2.0f);
    EXPECT_EQ(values[2], 9.0f);
    EXPECT_EQ(block.offset(), 8u);
    vrkLoader.copyFloat(values, -1);
    EXPECT_EQ(block.offset(), 8u);
}

TEST(Loader, CopyIsMemberByMember)
{
    LoaderBlock block(ChunkWriter().open(0x1234).zeros(4).finish());
    block.enter();
    Loader copy;
    copy = vrkLoader;
    EXPECT_EQ(copy.current, vrkLoader.current);
    EXPECT_EQ(copy.data, vrkLoader.data);
    EXPECT_EQ(copy.chunkStart, vrkLoader.chunkStart);
    EXPECT_EQ(copy.size, vrkLoader.size);
    EXPECT_EQ(copy.chunkID, 0x1234);
    EXPECT_EQ(copy.chunkLength, 10u);
    EXPECT_FALSE(copy.atEnd);
}
