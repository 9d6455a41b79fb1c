#include "Shared/Cross/FileSystem/Chunky.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

// One reading of a file's bytes, and what it ends with.
class Reading {
public:
    explicit Reading(const std::string& bytes) : m_pStream(MakeReadStream(bytes)) {}

    Chunky& Open() {
        m_pChunky = std::make_unique<Chunky>(ByteStreamAdapter(m_pStream.get()));
        return *m_pChunky;
    }
    ByteStream& GetStream() { return *m_pStream; }

private:
    std::unique_ptr<RamStream> m_pStream;
    std::unique_ptr<Chunky> m_pChunky;
};

// "code: text" of what is thrown.
std::string FaultOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Chunky::Exception& exception) {
        return std::to_string(exception.GetCode()) + ": " + exception.what();
    } catch (const std::exception& exception) {
        return exception.what();
    }
    return "nothing";
}

const std::string s_BadFile = "1: Not a valid chunky file!";
const std::string s_BadHeader = "2: Not a valid chunk header!";
const std::string s_Missing = "4: Missing Chunk Type!";
const std::string s_Newer = "5: Unsupported (newer) Chunk Version!";
const std::string s_PastEnd = "6: Read past the Chunk end!";
const std::string s_BadSeek = "10: Failed to seek to end of chunk";

std::string File(const std::string& chunks) { return ChunkBytes::FileHeader() + chunks; }

// Down to the last byte, as a tool does that knows no id.
void WalkAll(Chunky& chunky) {
    ChunkInfo info;
    while (chunky.NextChunk(info)) {
        if (info.kind == ChunkKind_Data)
            continue;
        chunky.EnterFolder(info.id, info.version);
        WalkAll(chunky);
        chunky.EndChunk();
    }
}

} // namespace

TEST(ChunkyRead, RefusesWhatIsNoChunkyFile) {
    for (const uint32_t version : {0u, 1u})
        EXPECT_EQ(FaultOf([=] { WalkAll(Reading(ChunkBytes::FileHeader(version)).Open()); }), "nothing");
    EXPECT_EQ(FaultOf([] { Chunky chunky{ByteStreamAdapter()}; }), "0: Unable to open file!");
    EXPECT_EQ(FaultOf([] { Reading(ChunkBytes::FileHeader(2)).Open(); }), "1: Unsupported file version!");
    for (const size_t damaged : {0, 13, 14, 15}) {
        std::string bytes = ChunkBytes::FileHeader();
        bytes[damaged] ^= 1;
        EXPECT_EQ(FaultOf([&] { Reading(bytes).Open(); }), s_BadFile) << "byte " << damaged;
    }
    Reading both(ChunkBytes::FileHeader());
    both.GetStream().SetMode(ByteStream::Mode_Both);
    const std::string fault = FaultOf([&] { both.Open(); });
    EXPECT_TRUE(fault.ends_with("Assertion of (m_Mode == Mode_Read || m_Mode == Mode_Write) failed.")) << fault;
}

TEST(ChunkyRead, WalksATreeInFileOrder) {
    const std::string name("hip\0junk", 8);
    Reading reading(
        File(ChunkBytes::Folder("ROOT",
                                ChunkBytes::Data("SKIP", "12345") + ChunkBytes::Header("DATA", "NAME", 3, 2, 8) + name +
                                    "ab" + ChunkBytes::Data("SAME", "1") + ChunkBytes::Data("SAME", "2"),
                                4) +
             ChunkBytes::Data("LAST", "")));
    Chunky& chunky = reading.Open();
    EXPECT_EQ(chunky.EnterFolder(FourCC("ROOT"), 4).version, 4u);
    ChunkInfo info;
    ASSERT_TRUE(chunky.NextChunk(info));
    EXPECT_EQ(info.id, FourCC("SKIP"));
    EXPECT_EQ(info.size, 5u);
    EXPECT_EQ(chunky.GetDepth(), 1u);
    ASSERT_TRUE(chunky.NextChunk(info));
    EXPECT_EQ(info.name, "hip");
    EXPECT_EQ(chunky.EnterData(FourCC("NAME"), 9).version, 3u);
    EXPECT_EQ(chunky.GetDepth(), 2u);
    EXPECT_EQ(chunky.GetRemaining(), 2u);
    chunky.EndChunk(); // unread
    for (const char expected : {'1', '2'}) {
        chunky.EnterData(FourCC("SAME"), 1);
        char read = 0;
        EXPECT_EQ(chunky.GetStream().Read(&read, 1), 1u);
        EXPECT_EQ(read, expected);
        EXPECT_EQ(chunky.GetRemaining(), 0u);
        chunky.EndChunk();
    }
    EXPECT_FALSE(chunky.NextChunk(info));
    chunky.EndChunk();
    EXPECT_TRUE(chunky.FindChunk(ChunkKind_Data, FourCC("LAST")));
    EXPECT_EQ(chunky.EnterData(FourCC("LAST"), 1).size, 0u);
    chunky.EndChunk();
    EXPECT_EQ(reading.GetStream().GetPos(), reading.GetStream().GetLength());
}

TEST(ChunkyRead, TheEndOfALevelHolds) {
    Reading reading(File(ChunkBytes::Folder("ROOT", ChunkBytes::Data("AAAA", "1")) + ChunkBytes::Data("BBBB", "2")));
    Chunky& chunky = reading.Open();
    chunky.EnterFolder(FourCC("ROOT"), 1);
    // Behind a skipped chunk the folder is on top again, and must not be taken for the next chunk.
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(chunky.FindChunk(ChunkKind_Data, FourCC("BBBB")));
        EXPECT_EQ(chunky.GetDepth(), 1u);
    }
    EXPECT_EQ(FaultOf([&] { chunky.EnterData(FourCC("BBBB"), 1); }), s_Missing);
    chunky.EndChunk();
    EXPECT_EQ(chunky.GetDepth(), 0u);
    chunky.EnterData(FourCC("BBBB"), 1);
    chunky.EndChunk();
    // At the end of the file the first read finds no header at all.
    EXPECT_EQ(FaultOf([&] { chunky.EnterData(FourCC("AAAA"), 1); }), s_BadHeader);
    EXPECT_EQ(FaultOf([&] { Reading(File(ChunkBytes::Data("AAAA", ""))).Open().EnterFolder(FourCC("AAAA"), 1); }),
              s_Missing);
}

TEST(ChunkyRead, RefusesDamagedHeaders) {
    const std::string item = ChunkBytes::Data("ITEM", "1234");
    const auto inFolder = [](const std::string& header) { return File(ChunkBytes::Folder("ROOT", header)); };
    const struct {
        const char* what;
        std::string bytes;
        std::string fault;
    } cases[] = {
        {"a type of its own", File("DATE" + item.substr(4)), s_BadHeader},
        {"a payload beyond the file", File(ChunkBytes::Header("DATA", "ITEM", 1, 5) + "1234"), s_BadSeek},
        {"a payload of 4 GB", File(ChunkBytes::Header("DATA", "ITEM", 1, 0xFFFFFFFF) + "1234"), s_BadSeek},
        {"a name beyond the file", File(ChunkBytes::Header("DATA", "ITEM", 1, 0, 5) + "1234"), s_PastEnd},
        {"a name of 4 GB", File(ChunkBytes::Header("DATA", "ITEM", 1, 0, 0xFFFFFFFF) + "1234"), s_PastEnd},
        {"a name beyond its folder", inFolder(ChunkBytes::Header("DATA", "ITEM", 1, 0, 1)) + "1234", s_PastEnd},
        {"a header beyond its folder", File(ChunkBytes::Header("FOLD", "ROOT", 1, 19) + item), s_PastEnd},
        {"a payload beyond its folder", File(ChunkBytes::Header("FOLD", "ROOT", 1, 22) + item), s_PastEnd},
        {"less than a header at the end", File(item + "DATAITEM"), s_BadHeader},
        {"less than a header in a folder", inFolder("DATAITEM"), s_BadHeader},
    };
    for (const auto& damaged : cases)
        EXPECT_EQ(FaultOf([&] { WalkAll(Reading(damaged.bytes).Open()); }), damaged.fault) << damaged.what;
}

TEST(ChunkyRead, LongNamesAreReadAndVeryLongOnesAsserted) {
    const auto read = [](uint32_t length) {
        const std::string name = std::string(length - 1, 'n') + '\0';
        const std::string item = ChunkBytes::Header("DATA", "ITEM", 1, 0, length) + name;
        Reading reading(File(ChunkBytes::Folder("ROOT", item)));
        Chunky& chunky = reading.Open();
        chunky.EnterFolder(FourCC("ROOT"), 1);
        return chunky.EnterData(FourCC("ITEM"), 1).name.GetLength() + 1;
    };
    for (const uint32_t length : {513u, 1024u})
        EXPECT_EQ(read(length), length);
    EXPECT_NE(FaultOf([&] { read(1025); }).find("header.nameLength <="), std::string::npos);
}

TEST(ChunkyRead, NewerVersionsStayOnTheStack) {
    Reading reading(File(ChunkBytes::Data("AAAA", ChunkBytes::Data("ITEM", ""), 3)));
    Chunky& chunky = reading.Open();
    EXPECT_EQ(FaultOf([&] { chunky.EnterData(FourCC("AAAA"), 2); }), s_Newer);
    EXPECT_EQ(chunky.GetDepth(), 1u);
    const dbNoThrowScope stepOver;
    ChunkInfo info;
    const std::string fault = "3: Invalid file format, only Folder Chunks may have sub-chunks!";
    EXPECT_EQ(FaultOf([&] { chunky.NextChunk(info); }), fault);
    EXPECT_EQ(FaultOf([&] { chunky.EnterData(FourCC("ITEM"), 1); }), fault);
}

TEST(ChunkyRead, AChunkEndsWithItsPositionInside) {
    const dbNoThrowScope stepOver;
    for (const uint32_t pos : {0u, 46u}) {
        Reading reading(File(ChunkBytes::Data("AAAA", "1") + ChunkBytes::Data("BBBB", "2")));
        Chunky& chunky = reading.Open();
        chunky.EnterData(FourCC("AAAA"), 1);
        reading.GetStream().Seek(pos);
        EXPECT_EQ(FaultOf([&] { chunky.EndChunk(); }), s_PastEnd) << pos;
    }
}

TEST(ChunkyRead, EveryTruncationIsRefused) {
    const std::string first = File(ChunkBytes::Data("ITEM", "1234"));
    const std::string named = ChunkBytes::Header("DATA", "NAME", 1, 3, 4) + "nameabc"; // without a terminator
    const std::string whole = first + ChunkBytes::Folder("ROOT", named + ChunkBytes::Folder("DEEP", named));
    for (size_t size = 1; size <= whole.size(); ++size) {
        // Between two chunks of the top level a file is whole.
        const bool isWhole = size == 24 || size == first.size() || size == whole.size();
        EXPECT_EQ(FaultOf([&] { WalkAll(Reading(whole.substr(0, size)).Open()); }) == "nothing", isWhole) << size;
    }
}

TEST(ChunkyRead, AnUnboundedBlockIsReadOnTheCallersWord) {
    std::string bytes = File(ChunkBytes::Data("AAAA", "1") + ChunkBytes::Data("BBBB", "2"));
    RamStream stream;
    stream.AttachUnbounded(bytes.data(), false);
    Chunky chunky{ByteStreamAdapter(&stream)};
    chunky.EnterData(FourCC("BBBB"), 1);
    chunky.EndChunk();
    EXPECT_EQ(stream.GetPos(), bytes.size());
}
