#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using NamedPipeMsg::ParseMsg;

template <class T>
std::string BytesOf(const T& msg) {
    RamStream stream;
    EXPECT_TRUE(NamedPipeMsg::BuildMsg(stream, msg));
    return {reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetLength()};
}

template <class T>
NamedPipeRawMsg Raw(const std::string& body) {
    return {T::MSG_TYPE, {body.begin(), body.end()}};
}

template <class T>
bool Parse(const std::string& body, T& msg) {
    return ParseMsg(Raw<T>(body), msg);
}

// What is written is what was typed, and is read back as it was written.
template <class T>
T ExpectBytes(const T& msg, const std::string& bytes) {
    EXPECT_EQ(BytesOf(msg), bytes);
    T again;
    EXPECT_TRUE(Parse(bytes.substr(4), again));
    EXPECT_EQ(BytesOf(again), bytes);
    return again;
}

std::string Field(const std::string& text) { return text + std::string(260 - text.size(), '\0'); }

const BurnerMessageList s_Messages{{"a", 2}, {"", 0}};
const std::string s_MessageBytes = "\2\0\0\0\2\0\0\0\1\0\0\0a\0\0\0\0\0\0\0\0"s;

TEST(BurnerMsgTest, EachMessagesBytes) {
    ExpectBytes(BurnerSetupMsg{.pipelinePath = "Z:\\p.ini"}, "USRB"s + Field("Z:\\p.ini") + "\x8\0\0\0"s);
    ExpectBytes(BurnerReadyMsg{.version = 0x01020304}, "BTRB\4\3\2\1");
    ExpectBytes(
        BurnRequestMsg{.changelist = 258, .directory = "d", .pattern = "p", .flags = {true, false, false, true}},
        "CWRB\2\1\0\0"s + Field("d") + Field("p") + "\1\0\0\1"s);
    ExpectBytes(BurnFileListMsg{.changelist = -1, .files = {"x", ""}, .option = true},
                "LLFB\xff\xff\xff\xff\2\0\0\0\1\0\0\0x\0\0\0\0"s);
    ExpectBytes(BurnUpdateFileListMsg{.changelist = 1, .files = {}}, "LFUB\1\0\0\0\0\0\0\0"s);
    ExpectBytes(BurnerErrorMsg{.messages = s_Messages}, "RREB" + s_MessageBytes);
    ExpectBytes(BurnerUpdateMsg{.messages = s_Messages}, "DPUB" + s_MessageBytes);
    const BurnerResultMsg result =
        ExpectBytes(BurnerResultMsg{.result = 1, .messages = s_Messages}, "SERB\1\0\0\0\0"s + s_MessageBytes);
    EXPECT_EQ(result.messages, s_Messages);
}

TEST(BurnerMsgTest, FixedTextsAreCut) {
    const std::string bytes = BytesOf(BurnRequestMsg{.directory = std::string(300, 'd'), .pattern = "p"});
    EXPECT_EQ(bytes.size(), 532u);
    EXPECT_EQ(bytes.substr(8, 260), std::string(259, 'd') + '\0');
    BurnRequestMsg request;
    // What stands behind the end means nothing.
    EXPECT_TRUE(Parse(std::string(4, '\0') + Field("d\0rest"s) + Field("p") + std::string(4, '\0'), request));
    EXPECT_EQ(request.directory, "d");
    EXPECT_FALSE(Parse(std::string(4, '\0') + std::string(260, 'd') + Field("p") + std::string(4, '\0'), request));
}

TEST(BurnerMsgTest, StringsHaveALimit) {
    BurnerUpdateMsg update;
    const auto list = [](size_t length) {
        std::string bytes = "\1\0\0\0\0\0\0\0"s;
        for (int i = 0; i < 4; ++i)
            bytes += static_cast<char>(length >> i * 8);
        return bytes + std::string(length, 'x');
    };
    EXPECT_TRUE(Parse(list(1024), update));
    EXPECT_EQ(update.messages.at(0).text.size(), 1024u);
    try {
        Parse(list(1025), update);
        ADD_FAILURE();
    } catch (const ByteStream::Exception& error) {
        EXPECT_STREQ(error.what(), "String buffer overrun!");
    }
    BurnFileListMsg files;
    EXPECT_THROW(Parse("\0\0\0\0\1\0\0\0\xff\xff\xff\xff"s, files), ByteStream::Exception);
}

TEST(BurnerMsgTest, EveryTruncationIsRefused) {
    const auto check = [](auto msg) {
        const std::string bytes = BytesOf(msg).substr(4);
        for (size_t size = 0; size < bytes.size(); ++size) {
            decltype(msg) out;
            EXPECT_FALSE(Parse(bytes.substr(0, size), out)) << size;
        }
        decltype(msg) out;
        EXPECT_FALSE(Parse(bytes + '\0', out));
    };
    check(BurnerErrorMsg{.messages = s_Messages});
    check(BurnerResultMsg{.result = 1, .messages = s_Messages});
    check(BurnFileListMsg{.changelist = 1, .files = {"x", "yy"}});
}

TEST(BurnerMsgTest, CountsAreHeldAgainstTheBytes) {
    BurnerUpdateMsg update;
    EXPECT_FALSE(Parse("\xff\xff\xff\xff"s + std::string(64, '\0'), update));
    BurnFileListMsg list;
    EXPECT_FALSE(Parse("\0\0\0\0\xff\xff\xff\x7f"s + std::string(64, '\0'), list));
    EXPECT_TRUE(list.files.empty());
}

TEST(BurnerMsgTest, BlocksOfTheWrongSizeAndOtherTypesAreMistakes) {
    BurnerReadyMsg ready{.version = 5};
    EXPECT_THROW(Parse("\1\0\0"s, ready), std::runtime_error);
    EXPECT_THROW(Parse("\1\0\0\0\0"s, ready), std::runtime_error);
    BurnerSetupMsg setup;
    EXPECT_THROW(Parse(Field("x"), setup), std::runtime_error);
    BurnRequestMsg request;
    EXPECT_THROW(Parse(std::string(529, '\0'), request), std::runtime_error);
    EXPECT_FALSE(NamedPipeMsg::IsMsg<BurnerReadyMsg>(Raw<BurnerErrorMsg>("")));
    EXPECT_THROW(ParseMsg(Raw<BurnerErrorMsg>("\1\0\0\0"s), ready), std::runtime_error);
    EXPECT_EQ(ready.version, 5u);
}

TEST(BurnerMsgTest, ListsTooLongForAMessageArentSent) {
    BurnFileListMsg list;
    list.files.assign(17000, std::string(1024, 'f'));
    RamStream stream;
    EXPECT_FALSE(NamedPipeMsg::BuildMsg(stream, list));
}

} // namespace
