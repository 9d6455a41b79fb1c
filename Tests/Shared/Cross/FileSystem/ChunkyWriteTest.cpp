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

TEST_F(ChunkyWrite, RefusesSubChunksOfData) {
    m_Chunky.BeginData(FourCC("ITEM"), 1);
    EXPECT_EQ(CodeOf([](Chunky& chunky) { chunky.BeginFolder(FourCC("SUBF"), 1); }), ChunkyError_BadStructure);
    EXPECT_EQ(m_Text, "Invalid file format, only Folder Chunks may have sub-chunks!");
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
    EXPECT_EQ(Bytes().substr(24, 12), "DATAFBIF" + ChunkBytes::Number(1));
    EXPECT_EQ(Bytes().substr(40, 17), ChunkBytes::Number(13) + std::string("FileBurnInfo\0", 13));
    const auto pRead = MakeReadStream(Bytes());
    Chunky reader{ByteStreamAdapter(pRead.get())};
    const FileBurnInfo read = ReadFileBurnInfo(reader);
    EXPECT_EQ(std::tie(read.first, read.number, read.second, read.date),
              std::tie(info.first, info.number, info.second, info.date));
    EXPECT_FALSE(read.date.empty());
}

} // namespace
