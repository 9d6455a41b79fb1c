#include "Shared/PC/FileSystem/DiskFileStream.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
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
    ASSERT_TRUE(pStream);
    EXPECT_EQ(Take(*pStream, 1), "");
    EXPECT_EQ(pStream->GetPos(), 0u);
    EXPECT_EQ(pStream->GetLength(), 0u);
    EXPECT_TRUE(pStream->Seek(0));
    EXPECT_EQ(pStream->GetMode(), Mode_Read);
    EXPECT_EQ(std::string(pStream->GetName()), m_Folder.Path("empty"));
}

TEST_F(DiskStream, SeeksInsideAndOutsideOfTheBuffer) {
    const std::string bytes = Pattern(size_t{2} * s_Block + 10);
    m_Folder.Write("file", bytes);
    const auto pStream = Open("file", Mode_Read);
    for (const uint32_t pos : {5u, 0u, s_Block - 1, s_Block, s_Block + 1, 3u, 2 * s_Block + 9}) {
        EXPECT_TRUE(pStream->Seek(pos));
        EXPECT_EQ(pStream->GetPos(), pos);
        EXPECT_EQ(Take(*pStream, 3), bytes.substr(pos, 3)) << pos;
    }
    pStream->Seek(1);
    EXPECT_EQ(Take(*pStream, 2 * s_Block), bytes.substr(1, size_t{2} * s_Block)); // two buffers at once
    EXPECT_EQ(Take(*pStream, 100), bytes.substr(size_t{2} * s_Block + 1));
    EXPECT_TRUE(pStream->Seek(pStream->GetLength()));
    EXPECT_EQ(Take(*pStream, 1), "");
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
    const auto random = [&] { return static_cast<uint32_t>(engine()); };
    for (const ByteStream::Mode mode : {Mode_Write, Mode_Both}) {
        m_Folder.Remove("file");
        auto pStream = Open("file", mode);
        ASSERT_TRUE(pStream);
        std::string expected;
        for (int i = 0; i < 2000; ++i) {
            const uint32_t size = i % 50 == 0 ? random() % (3 * s_Block) : random() % 3000;
            const std::string bytes(size, static_cast<char>(random()));
            if (random() % 3 == 0) {
                ASSERT_TRUE(pStream->Seek(random() % (pStream->GetLength() + 100)));
            }
            if (random() % 4 == 0) {
                ASSERT_TRUE(pStream->Seek(pStream->GetLength()));
            }
            const uint32_t pos = pStream->GetPos();
            if (size > 0 && pos + size > expected.size())
                expected.resize(pos + size);
            expected.replace(pos, size, bytes);
            ASSERT_EQ(Put(*pStream, bytes), size);
            ASSERT_EQ(pStream->GetPos(), pos + size);
            ASSERT_EQ(pStream->GetLength(), expected.size());
            if (mode == Mode_Both && i % 7 == 0 && pos < expected.size()) {
                pStream->Seek(pos / 2);
                ASSERT_EQ(Take(*pStream, 500), expected.substr(pos / 2, 500));
            }
            if (expected.size() > size_t{20} * s_Block)
                break;
        }
        EXPECT_TRUE(pStream->Flush());
        EXPECT_TRUE(m_Folder.Read("file") == expected);
        pStream.reset();
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
    Open("file", Mode_Write).reset();
    EXPECT_EQ(m_Folder.Read("file"), "");
}

TEST_F(DiskStream, AFullDiskIsToldAtTheFlush) {
    const ReportCapture capture;
    {
        const auto pStream = OpenFile("Z:\\dev\\full", Mode_Write, false);
        ASSERT_TRUE(pStream);
        EXPECT_EQ(Put(*pStream, "abc"), 3u);
        EXPECT_FALSE(pStream->Flush());
        EXPECT_EQ(Put(*pStream, "abc"), 0u);
        EXPECT_FALSE(pStream->Flush());
    }
    EXPECT_EQ(ReportCapture::CountWarnings("FILESYSTEM -- failed to write 'Z:\\dev\\full': No space left on device"),
              1u);
    ReportCapture::Clear();
    // Nobody asked: the line is there all the same.
    Put(*OpenFile("Z:\\dev\\full", Mode_Write, false), "abc");
    EXPECT_EQ(ReportCapture::CountWarnings("No space left on device"), 1u);
    ReportCapture::Clear();
    DiskFileStream stream;
    ASSERT_TRUE(stream.Open("Z:\\dev\\full", Mode_Write, false));
    Put(stream, "abc");
    EXPECT_FALSE(stream.Close());
    EXPECT_FALSE(stream.IsOpen());
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
    EXPECT_EQ(stream.GetMode(), Mode_None);
    const dbNoThrowScope stepOver;
    char byte = 0;
    EXPECT_EQ(stream.Read(&byte, 1), 0u);
    EXPECT_EQ(stream.Write(&byte, 1), 0u);
    EXPECT_FALSE(stream.Seek(0));
    EXPECT_FALSE(stream.Flush());
    EXPECT_FALSE(stream.Close());
    EXPECT_EQ(stream.GetPos() + stream.GetLength(), 0u);

    ASSERT_TRUE(stream.Open(m_Folder.Path("file").c_str(), Mode_Write, false));
    EXPECT_EQ(stream.Read(&byte, 1), 0u); // not for reading
    EXPECT_EQ(Put(stream, "abc"), 3u);
    // Opening again closes first.
    ASSERT_TRUE(stream.Open(m_Folder.Path("file").c_str(), Mode_Read, true));
    EXPECT_EQ(Take(stream, 9), "abc");
    EXPECT_EQ(stream.Write(&byte, 1), 0u);
    EXPECT_TRUE(stream.Close());
    EXPECT_STREQ(stream.GetName(), "");
}

TEST_F(DiskStream, ManyOpenAtOnceAndAgain) {
    for (int i = 0; i < 10; ++i)
        m_Folder.Write(std::to_string(i), Pattern(static_cast<size_t>(i)));
    for (int round = 0; round < 3; ++round) {
        std::array<std::unique_ptr<ByteStream>, 10> streams;
        for (size_t i = 0; i < streams.size(); ++i)
            streams[i] = Open(std::to_string(i), Mode_Read);
        for (uint32_t i = 0; i < 10; ++i)
            EXPECT_EQ(Take(*streams[i], 20), Pattern(i));
        EXPECT_FALSE(Open("none", Mode_Read));
        EXPECT_EQ(OSFile::LastErrorText(), "No such file or directory");
    }
}
