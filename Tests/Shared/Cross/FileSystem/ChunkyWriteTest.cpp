#include "Shared/Cross/FileSystem/Chunky.h"

#include "Shared/Cross/FileSystem/ChunkyReservedTypes.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

class ChunkyWrite : public testing::Test {
protected:
    std::unique_ptr<RamStream> m_pStream = MakeWriteStream();
    Chunky m_Chunky{ByteStreamAdapter(m_pStream.get())};

    void Put(std::string_view text) { m_Chunky.GetStream().Write(text.data(), static_cast<uint32_t>(text.size())); }
    std::string Bytes() { return BytesOf(*m_pStream); }
    // The code of the exception behind an assertion that is stepped over; -1 without one.
    int32_t CodeOf(const std::function<void(Chunky&)>& operation) {
        const ReportCapture capture;
        const dbNoThrowScope stepOver;
        try {
            operation(m_Chunky);
        } catch (const Chunky::Exception& exception) {
            EXPECT_TRUE(ReportCapture::HasWarning("Assertion of (dbBreak) failed."));
            m_Text = exception.what();
            return exception.GetCode();
        }
        return -1;
    }
    std::string m_Text;
};

TEST_F(ChunkyWrite, LaysDownTheBytesOfATree) {
    m_Chunky.BeginFolder(FourCC("ROOT"), 2, "ab");
    m_Chunky.BeginData(FourCC("ITEM"), 7);
    Put("xyz");
    m_Chunky.EndChunk();
    m_Chunky.BeginData(FourCC("NONE"), 0, "");
    m_Chunky.EndChunk();
    m_Chunky.EndChunk();
    const std::string children = ChunkBytes::Data("ITEM", "xyz", 7) + ChunkBytes::Data("NONE", "", 0);
    EXPECT_EQ(Bytes(), ChunkBytes::FileHeader() +
                           ChunkBytes::Header("FOLD", "ROOT", 2, static_cast<uint32_t>(children.size()), 3) +
                           std::string("ab\0", 3) + children);
    EXPECT_EQ(m_pStream->GetPos(), m_pStream->GetLength());
}

TEST_F(ChunkyWrite, DepthGoesBeyondTheInlineStack) {
    for (uint32_t depth = 0; depth < 11; ++depth)
        m_Chunky.BeginFolder(FourCC("DEEP"), depth);
    EXPECT_EQ(m_Chunky.GetDepth(), 11u);
    for (uint32_t depth = 0; depth < 11; ++depth)
        m_Chunky.EndChunk();
    EXPECT_EQ(Bytes().size(), 24u + 11 * 20);
    EXPECT_EQ(Bytes().substr(24 + 12, 4), ChunkBytes::Number(10 * 20));
}

TEST_F(ChunkyWrite, RefusesSubChunksOfData) {
    m_Chunky.BeginData(FourCC("ITEM"), 1);
    EXPECT_EQ(CodeOf([](Chunky& chunky) { chunky.BeginFolder(FourCC("SUBF"), 1); }), ChunkyError_BadStructure);
    EXPECT_EQ(m_Text, "Invalid file format, only Folder Chunks may have sub-chunks!");
    EXPECT_THROW(m_Chunky.BeginData(FourCC("SUBD"), 1), std::runtime_error);
}

TEST_F(ChunkyWrite, AChunkThatIsNeverEndedKeepsASizeOfZero) {
    const auto pStream = MakeWriteStream();
    {
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        chunky.BeginData(FourCC("OPEN"), 1);
        chunky.GetStream().Write("123", 3);
    }
    EXPECT_EQ(BytesOf(*pStream), ChunkBytes::FileHeader() + ChunkBytes::Header("DATA", "OPEN", 1, 0) + "123");
}

TEST_F(ChunkyWrite, RefusesBytesOutsideOfDataChunks) {
    const auto begin = [](Chunky& chunky) { chunky.BeginData(FourCC("ITEM"), 1); };
    const auto end = [](Chunky& chunky) { chunky.EndChunk(); };
    // Puts a byte where there is no data chunk, and takes it back.
    const auto expectRefusal = [&](const std::function<void(Chunky&)>& next) {
        Put("x");
        EXPECT_EQ(CodeOf(next), ChunkyError_DataInFolder);
        EXPECT_EQ(m_Text, "A folder chunk had data written directly in it!");
        m_pStream->Seek(m_pStream->GetPos() - 1);
    };
    expectRefusal(begin); // behind the file header
    m_Chunky.BeginFolder(FourCC("FOLD"), 1);
    expectRefusal(begin);
    begin(m_Chunky);
    end(m_Chunky);
    expectRefusal(begin);
    expectRefusal(end);
}

TEST_F(ChunkyWrite, RefusesAnOverwrittenHeader) {
    m_Chunky.BeginData(FourCC("ITEM"), 1);
    m_pStream->Seek(30);
    EXPECT_EQ(CodeOf([](Chunky& chunky) { chunky.EndChunk(); }), ChunkyError_BadChunk);
    EXPECT_EQ(m_Text, "Invalid Chunk Size, chunks must not be over-written!");
}

TEST_F(ChunkyWrite, BurnInfoComesBack) {
    FileBurnInfo info;
    info.first = "artist";
    info.number = 12;
    info.second = std::string(1023, 's');
    WriteFileBurnInfo(m_Chunky, info);
    const std::string header = Bytes().substr(24, 20 + 13);
    EXPECT_EQ(header.substr(0, 12), "DATAFBIF" + ChunkBytes::Number(1));
    EXPECT_EQ(header.substr(16), ChunkBytes::Number(13) + std::string("FileBurnInfo\0", 13));

    const auto pRead = MakeReadStream(Bytes());
    Chunky reader{ByteStreamAdapter(pRead.get())};
    const FileBurnInfo read = ReadFileBurnInfo(reader);
    EXPECT_EQ(read.first, info.first);
    EXPECT_EQ(read.number, info.number);
    EXPECT_EQ(read.second, info.second);
    EXPECT_EQ(read.date, info.date);
    EXPECT_FALSE(read.date.empty());
}

TEST(ChunkyReserved, CodesByTheirNumbers) {
    EXPECT_EQ(GetChunkyReservedCode(ChunkyReserved_BuildLog), FourCC("BDLG"));
    EXPECT_EQ(GetChunkyReservedCode(ChunkyReserved_Comment), FourCC("CMNT"));
    EXPECT_EQ(GetChunkyReservedCode(ChunkyReserved_FileDependency), FourCC("FDEP"));
    const dbNoThrowScope stepOver;
    EXPECT_EQ(GetChunkyReservedCode(static_cast<ChunkyReservedType>(4)), FourCC("0000"));
}

} // namespace
