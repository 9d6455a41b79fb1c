#include "Shared/Cross/FileSystem/ByteStream.h"

#include "Shared/Cross/FileSystem/ByteStreamAdapter.h"
#include "Shared/Cross/FileSystem/Wildcard.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

#include <gtest/gtest.h>

namespace {

std::string Stored(std::string_view text) {
    return ChunkBytes::Number(static_cast<uint32_t>(text.size())) + std::string(text);
}

std::string Written(const char* pText, bool addLineEnd) {
    const auto pStream = MakeWriteStream();
    EXPECT_TRUE(pStream->WriteText(pText, addLineEnd));
    return BytesOf(*pStream);
}

// Takes `m_Room` bytes and no more.
class FullStream : public RamStream {
public:
    explicit FullStream(uint32_t room) : m_Room(room) { Create(16, Mode_Write); }
    uint32_t Write(const void* pSource, uint32_t size) override {
        const uint32_t written = RamStream::Write(pSource, std::min(size, m_Room));
        m_Room -= written;
        return written;
    }

private:
    uint32_t m_Room;
};

} // namespace

TEST(ByteStream, TextHasOneKindOfLineEnd) {
    EXPECT_EQ(Written("a\nb\r\nc\rd", false), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(Written("\n\r", false), "\r\n\r\n");
    EXPECT_EQ(Written("\r\r\n", true), "\r\n\r\n\r\n");
    EXPECT_EQ(Written("", true), "\r\n");
    EXPECT_EQ(Written("", false), "");
}

TEST(ByteStream, PrintfDoesTheSameAndCuts) {
    const auto pStream = MakeWriteStream();
    EXPECT_TRUE(pStream->Printf("%s=%d\nx\r\n", "key", 5));
    EXPECT_EQ(BytesOf(*pStream), "key=5\r\nx\r\n");
    const auto pLong = MakeWriteStream();
    EXPECT_TRUE(pLong->Printf("%s", std::string(2000, 'x').c_str()));
    EXPECT_EQ(pLong->GetLength(), 1023u);
}

TEST(ByteStream, ShortWritesOfTextAreToldOff) {
    for (const uint32_t room : {0u, 1u, 2u, 3u, 4u})
        EXPECT_FALSE(FullStream(room).WriteText("a\nb", true)) << room;
    EXPECT_TRUE(FullStream(6).WriteText("a\nb", true));
    EXPECT_FALSE(FullStream(2).Printf("abc"));
    FullStream full(6);
    EXPECT_FALSE(ByteStreamAdapter(&full).WriteString("abc"));
}

TEST(ByteStream, StoredStrings) {
    const auto pStream = MakeReadStream(Stored("abcd") + Stored("abcde") + Stored("") + Stored("xy").substr(0, 5));
    const dbNoThrowScope stepOver;
    const auto read = [&] {
        char text[5] = "....";
        const bool isWhole = pStream->ReadString(text, 4);
        return std::to_string(pStream->GetPos()) + (isWhole ? " whole " : " failed ") + text;
    };
    EXPECT_EQ(read(), "8 whole abcd");
    EXPECT_EQ(read(), "17 failed "); // too long, and stepped over
    EXPECT_EQ(read(), "21 whole ");
    EXPECT_EQ(read(), "26 failed "); // a character is missing
    EXPECT_EQ(read(), "26 failed "); // there is no count
    const auto pHuge = MakeReadStream(ChunkBytes::Number(0xFFFFFFFF) + "abc");
    char text[5];
    EXPECT_FALSE(pHuge->ReadString(text, 4));
    EXPECT_EQ(pHuge->GetPos(), 7u);
    std::string counted("\5\0\0\0abcde\2\0\0\0ok", 15);
    RamStream unbounded;
    unbounded.AttachUnbounded(counted.data(), false);
    EXPECT_FALSE(unbounded.ReadString(text, 4));
    EXPECT_TRUE(unbounded.ReadString(text, 4));
    EXPECT_STREQ(text, "ok");
}

TEST(ByteStreamAdapter, StringsThrowWhenTheyOverrun) {
    const auto pStream = MakeReadStream(Stored("abcd") + Stored("abcd").substr(0, 6));
    ByteStreamAdapter adapter(pStream.get());
    char text[5] = "....";
    EXPECT_TRUE(adapter.ReadString(text, 4));
    EXPECT_STREQ(text, "abcd");
    EXPECT_TRUE(adapter.ReadString(text, 4)); // what is missing is NUL
    EXPECT_EQ(std::string(text, 5), std::string("ab\0\0\0", 5));
    pStream->Seek(0);
    try {
        adapter.ReadString(text, 3);
        ADD_FAILURE();
    } catch (const ByteStream::Exception& exception) {
        EXPECT_STREQ(exception.what(), "String buffer overrun!");
        EXPECT_EQ(exception.GetCode(), 0);
    }
    const auto pWide = MakeWriteStream();
    EXPECT_TRUE(ByteStreamAdapter(pWide.get()).WriteWString(u"h\u00FC"));
    EXPECT_EQ(BytesOf(*pWide), ChunkBytes::Number(2) + std::string("h\0\xFC\0", 4));
    char16_t wide[3];
    const auto pRead = MakeReadStream(BytesOf(*pWide));
    EXPECT_TRUE(pRead->ReadWString(wide, 2));
    EXPECT_EQ(std::u16string(wide), u"h\u00FC");
    pRead->Seek(0);
    EXPECT_THROW(pRead->ReadWString(wide, 1), ByteStream::Exception);
}

TEST(ByteStreamAdapter, ElementsAreLittleEndian) {
    const auto pStream = MakeWriteStream();
    ByteStreamAdapter adapter(pStream.get());
    const uint16_t halves[] = {0x0102, 0x0304};
    EXPECT_EQ(adapter.Write(halves, 2), 4u);
    EXPECT_TRUE(adapter.WriteValue(1.0f));
    EXPECT_EQ(BytesOf(*pStream), std::string("\x02\x01\x04\x03\0\0\x80\x3F", 8));
    EXPECT_EQ(adapter.GetPlatform(), 1u);
    EXPECT_FALSE(ByteStreamAdapter().WriteValue(1.0f));
    EXPECT_FALSE(ByteStreamAdapter().Flush());
    EXPECT_THROW(adapter.Write(halves, 0x80000000), std::runtime_error); // more bytes than a count can say
}

TEST(ByteStream, LongNamesAreCut) {
    RamStream stream;
    EXPECT_STREQ(stream.SetName("DATA:x.tga"), "DATA:x.tga");
    EXPECT_STREQ(stream.SetName(std::string(260, 'n').c_str()), std::string(260, 'n').c_str());
    const dbNoThrowScope stepOver;
    EXPECT_STREQ(stream.SetName(std::string(261, 'n').c_str()), std::string(260, 'n').c_str());
}

TEST(Wildcard, Patterns) {
    using Pair = std::pair<const char*, const char*>; // pattern and name
    for (const auto& [pPattern, pName] :
         {Pair("*", ""), Pair("*.*", "plain"), Pair("*.tga", "X.TGA"), Pair("a?c", "abc"), Pair("a*b*c", "aXXbYYbZc"),
          Pair("", ""), Pair("**?", "a"), Pair("*a", "aaaa"), Pair("x*", "X")})
        EXPECT_TRUE(MatchesWildcard(pPattern, pName)) << pPattern << " on " << pName;
    for (const auto& [pPattern, pName] :
         {Pair("*.tga", "x.tgas"), Pair("a?c", "ac"), Pair("a*b*c", "aXXbYYbZ"), Pair("", "a")})
        EXPECT_FALSE(MatchesWildcard(pPattern, pName)) << pPattern << " on " << pName;
    std::string pattern; // which takes no time
    for (int i = 0; i < 60; ++i)
        pattern += "*a";
    EXPECT_FALSE(MatchesWildcard(pattern + "b", std::string(250, 'a')));
}
