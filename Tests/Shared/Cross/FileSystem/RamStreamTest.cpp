#include "Shared/Cross/FileSystem/RamStream.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

namespace {

constexpr auto Read = ByteStream::Mode_Read;
constexpr auto Write = ByteStream::Mode_Write;

} // namespace

TEST(RamStream, GrowsAsItIsWritten) {
    for (const auto& [first, written] : {std::pair(100u, 101u), {1u, 16u}, {1u, 15u}, {1u, 1u << 20}}) {
        const std::vector<uint8_t> bytes(written, 7);
        RamStream stream;
        ASSERT_TRUE(stream.Create(first, Write));
        EXPECT_EQ(stream.Write(bytes.data(), written), written);
        EXPECT_EQ(stream.GetLength(), written);
        EXPECT_TRUE(std::ranges::equal(std::span(stream.GetBuffer(), written), bytes));
    }
}

TEST(RamStream, OverwritingKeepsTheLength) {
    RamStream stream;
    stream.Create(8, Write);
    stream.Write("abcdef", 6);
    EXPECT_TRUE(stream.Seek(2));
    stream.Write("XY", 2);
    EXPECT_EQ(stream.GetPos(), 4u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(stream.GetBuffer()), stream.GetLength()), "abXYef");
    EXPECT_THROW(stream.Seek(7), std::runtime_error);
}

TEST(RamStream, StaysBelowSixteenMegabytes) {
    const std::vector<uint8_t> bytes((1 << 24) - 1);
    RamStream stream;
    stream.Create(1, Write);
    EXPECT_EQ(stream.Write(bytes.data(), (1 << 24) - 1), (1u << 24) - 1);
    // The capacity is there for one more byte, but not for two.
    EXPECT_EQ(stream.Write(bytes.data(), 1), 1u);
    EXPECT_THROW(stream.Write(bytes.data(), 1 << 24), std::runtime_error);
    const dbNoThrowScope stepOver;
    EXPECT_EQ(stream.Write(bytes.data(), 1 << 24), 0u);
    EXPECT_EQ(stream.GetLength(), 1u << 24);
}

TEST(RamStream, ReadsUpToTheEndAndNoFurther) {
    char source[] = "0123456789";
    RamStream stream;
    ASSERT_TRUE(stream.Attach(source, 10, false, Read));
    char read[16] = {};
    EXPECT_EQ(stream.Read(read, 4), 4u);
    EXPECT_EQ(stream.Read(read, 6), 6u);
    EXPECT_EQ(stream.Read(read, 1), 0u);
    stream.Seek(8);
    EXPECT_EQ(stream.Read(read, 0xFFFFFFFF), 2u);
    EXPECT_STREQ(read, "896789");
    EXPECT_THROW(stream.Seek(11), std::runtime_error);
    EXPECT_THROW(stream.Write("x", 1), std::runtime_error);
    RamStream zeros;
    zeros.Create(3, Read);
    EXPECT_EQ(zeros.Read(read, 9), 3u);
    EXPECT_EQ(read[0] + read[1] + read[2], 0);
}

TEST(RamStream, BlocksChangeHands) {
    RamStream first;
    first.Create(4, Write);
    first.Write("abcd", 4);
    const uint8_t* pBlock = first.GetBuffer();
    auto pOwned = first.Detach();
    EXPECT_EQ(pOwned.get(), pBlock);
    EXPECT_EQ(first.GetMode(), ByteStream::Mode_None);
    EXPECT_EQ(first.GetLength(), 0u);

    RamStream second;
    EXPECT_TRUE(second.Attach(pOwned.release(), 4, true, Write));
    EXPECT_EQ(second.Write("efgh", 4), 4u);
    char other[] = "xy";
    EXPECT_TRUE(second.Attach(other, 2, false, Read)) << "its own block goes";
    EXPECT_EQ(second.GetLength(), 2u);
    EXPECT_TRUE(second.Attach(other, 2, false, Write));
    EXPECT_EQ(second.Write("zz", 2), 2u);
    const dbNoThrowScope stepOver;
    EXPECT_EQ(second.Write("i", 1), 0u);  // a block that was handed over doesn't grow
    EXPECT_FALSE(second.Create(4, Read)); // it has one
    EXPECT_EQ(first.Detach(), nullptr);   // it has none
    EXPECT_FALSE(first.Create(0, Write));
    EXPECT_FALSE(first.Attach(nullptr, 4, false, Read));
    EXPECT_FALSE(first.Attach(&second, 4, false, ByteStream::Mode_Both));
    char read[4];
    EXPECT_EQ(first.Read(read, 4), 0u);
    EXPECT_EQ(first.Write(read, 4), 0u);
}
