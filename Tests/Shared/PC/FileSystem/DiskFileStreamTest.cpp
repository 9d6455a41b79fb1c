#include "Shared/PC/FileSystem/DiskFileStream.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <random>

#include <unistd.h>

namespace {

constexpr uint32_t s_Block = 0x40000;
using enum ByteStream::Mode;

class DiskStream : public testing::Test {
protected:
    TempFolder m_Folder;

    std::unique_ptr<ByteStream> Open(const std::string& name, ByteStream::Mode mode) {
        return OpenFile(m_Folder.Path(name).c_str(), mode, true);
    }
    static std::string Pattern(size_t size) {
        std::string bytes(size, '\0');
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31 + i / 255);
        return bytes;
    }
    static uint32_t Put(ByteStream& stream, std::string_view bytes) {
        return stream.Write(bytes.data(), static_cast<uint32_t>(bytes.size()));
    }
    static std::string Take(ByteStream& stream, uint32_t size) {
        std::string bytes(size, '\0');
        bytes.resize(stream.Read(bytes.data(), size));
        return bytes;
    }
};

} // namespace

TEST_F(DiskStream, AnEmptyFileOpens) {
    m_Folder.Write("empty", "");
    const auto pStream = Open("empty", Mode_Read);
    EXPECT_EQ(Take(*pStream, 1), "");
    EXPECT_EQ(pStream->GetPos() + pStream->GetLength(), 0u);
    EXPECT_TRUE(pStream->Seek(0));
    EXPECT_EQ(std::string(pStream->GetName()), m_Folder.Path("empty"));
}

TEST_F(DiskStream, SeeksEndWithTheFile) {
    const std::string bytes = Pattern(s_Block + 10);
    m_Folder.Write("file", bytes);
    const auto pStream = Open("file", Mode_Read);
    for (const uint32_t pos : {s_Block - 1, s_Block, s_Block + 9, s_Block + 10}) {
        EXPECT_TRUE(pStream->Seek(pos));
        EXPECT_EQ(Take(*pStream, 3), bytes.substr(pos, 3)) << pos;
    }
    pStream->Seek(7);
    EXPECT_THROW(pStream->Seek(pStream->GetLength() + 1), std::runtime_error);
    EXPECT_EQ(Take(*pStream, 1), bytes.substr(7, 1));
    EXPECT_THROW(Put(*pStream, "x"), std::runtime_error);
}

TEST_F(DiskStream, LargeAndSmallReadsInTurnGiveTheFile) {
    const std::string bytes = Pattern(size_t{4} * s_Block + 77);
    m_Folder.Write("file", bytes);
    const auto pStream = Open("file", Mode_Read);
    std::mt19937 random(1);
    size_t at = 0;
    for (int i = 0; i < 300; ++i) {
        const auto size = static_cast<uint32_t>(random() % (1u << random() % 20));
        EXPECT_EQ(Take(*pStream, size), bytes.substr(at, size)) << at;
        at = std::min(at + size, bytes.size());
        EXPECT_EQ(pStream->GetPos(), at);
        if (at == bytes.size() || random() % 8 == 0) {
            at = random() % bytes.size();
            EXPECT_TRUE(pStream->Seek(static_cast<uint32_t>(at)));
        }
    }
}

TEST_F(DiskStream, AFileThatShrinksEndsEarly) {
    m_Folder.Write("file", Pattern(size_t{2} * s_Block));
    const auto pStream = Open("file", Mode_Read);
    ASSERT_EQ(truncate(m_Folder.Native("file").c_str(), s_Block + 10), 0);
    EXPECT_EQ(Take(*pStream, 2 * s_Block).size(), s_Block + 10);
}

// Against a plain array of bytes: whatever is written where, the file holds the same.
TEST_F(DiskStream, WritesAnywhereAsAnArrayWould) {
    std::mt19937 engine(1);
    const auto random = [&](size_t count) { return static_cast<uint32_t>(engine() % count); };
    for (const ByteStream::Mode mode : {Mode_Write, Mode_Both}) {
        m_Folder.Remove("file");
        auto pStream = Open("file", mode);
        std::string expected;
        for (int i = 0; i < 2000 && expected.size() < size_t{20} * s_Block; ++i) {
            const std::string bytes(1 + random(i % 50 == 0 ? 3 * s_Block : 3000), static_cast<char>(i));
            if (i % 3 != 0)
                pStream->Seek(i % 3 == 1 ? pStream->GetLength() : random(expected.size() + 100));
            const uint32_t pos = pStream->GetPos();
            expected.resize(std::max(expected.size(), pos + bytes.size()));
            expected.replace(pos, bytes.size(), bytes);
            ASSERT_EQ(Put(*pStream, bytes), bytes.size());
            ASSERT_EQ(pStream->GetPos(), pos + bytes.size());
            ASSERT_EQ(pStream->GetLength(), expected.size());
            if (mode == Mode_Both && i % 7 == 0) {
                pStream->Seek(pos / 2);
                ASSERT_EQ(Take(*pStream, 500), expected.substr(pos / 2, 500));
            }
        }
        EXPECT_TRUE(pStream->Flush());
        EXPECT_TRUE(m_Folder.Read("file") == expected);
    }
}

TEST_F(DiskStream, BothAppendsToWhatIsThere) {
    m_Folder.Write("file", "abc");
    auto pStream = Open("FILE", Mode_Both);
    ASSERT_TRUE(pStream);
    EXPECT_EQ(pStream->GetPos(), 3u);
    Put(*pStream, "def");
    pStream->Seek(1);
    EXPECT_EQ(Take(*pStream, 10), "bcdef");
    pStream.reset();
    EXPECT_EQ(m_Folder.Read("file"), "abcdef");
}

TEST_F(DiskStream, AFullDiskIsToldInTheEnd) {
    const ReportCapture capture;
    const auto pStream = OpenFile("Z:\\dev\\full", Mode_Write, false);
    EXPECT_EQ(Put(*pStream, "abc"), 3u);
    EXPECT_FALSE(pStream->Flush());
    EXPECT_EQ(Put(*pStream, "abc"), 0u);
    EXPECT_FALSE(pStream->Flush());
    EXPECT_EQ(ReportCapture::CountWarnings("FILESYSTEM -- failed to write 'Z:\\dev\\full': No space left on device"),
              1u);
    // Nobody asked: the line is there all the same.
    Put(*OpenFile("Z:\\dev\\full", Mode_Write, false), "abc");
    EXPECT_EQ(ReportCapture::CountWarnings("No space left on device"), 2u);
}

TEST_F(DiskStream, FilesStayBelowFourGigabytes) {
    const ReportCapture capture;
    m_Folder.Write("huge", "x");
    if (truncate(m_Folder.Native("huge").c_str(), 5LL << 30) != 0)
        GTEST_SKIP() << "no room for a sparse file";
    EXPECT_FALSE(Open("huge", Mode_Read));
    EXPECT_TRUE(ReportCapture::HasWarning("is larger than 4 GB"));
    const auto pStream = Open("file", Mode_Write);
    EXPECT_TRUE(pStream->Seek(0xFFFFFFF0));
    EXPECT_EQ(Put(*pStream, "0123456789"), 10u);
    EXPECT_TRUE(pStream->Flush());
    EXPECT_EQ(Put(*pStream, "0123456789"), 0u);
    EXPECT_FALSE(pStream->Flush());
    EXPECT_TRUE(ReportCapture::HasWarning("beyond 4 GB"));
    EXPECT_EQ(pStream->GetLength(), 0xFFFFFFFA);
}

TEST_F(DiskStream, ClosedStreamsRefuseEverything) {
    DiskFileStream stream;
    const dbNoThrowScope stepOver;
    char byte = 0;
    EXPECT_EQ(stream.Read(&byte, 1) + stream.Write(&byte, 1), 0u);
    EXPECT_FALSE(stream.Seek(0) || stream.Flush() || stream.Close());
    EXPECT_EQ(stream.GetPos() + stream.GetLength(), 0u);

    ASSERT_TRUE(stream.Open(m_Folder.Path("file").c_str(), Mode_Write, false));
    EXPECT_EQ(stream.Read(&byte, 1), 0u); // not for reading
    EXPECT_EQ(Put(stream, "abc"), 3u);
    // Opening again closes first.
    ASSERT_TRUE(stream.Open(m_Folder.Path("file").c_str(), Mode_Read, true));
    EXPECT_EQ(Take(stream, 9), "abc");
    EXPECT_TRUE(stream.Close());
    EXPECT_STREQ(stream.GetName(), "");
    EXPECT_EQ(stream.GetMode(), Mode_None);
}

TEST_F(DiskStream, ManyOpenAtOnceAndAgain) {
    for (int round = 0; round < 3; ++round) {
        std::vector<std::unique_ptr<ByteStream>> streams;
        for (size_t i = 0; i < 10; ++i) {
            m_Folder.Write(std::to_string(i), Pattern(i));
            streams.push_back(Open(std::to_string(i), Mode_Read));
        }
        for (size_t i = 0; i < 10; ++i)
            EXPECT_EQ(Take(*streams[i], 20), Pattern(i));
        EXPECT_FALSE(Open("none", Mode_Read));
        EXPECT_EQ(OSFile::LastErrorText(), "No such file or directory");
    }
}
