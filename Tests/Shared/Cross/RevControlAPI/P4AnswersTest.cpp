#include "Shared/Cross/RevControlAPI/P4Answers.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

// Writes down what it is told: "0:text" and so on for an answer, "E:" for an error, "T:" for a text.
class Recorder : public ClientUser {
public:
    void InputData(std::string&, Error&) override {}
    void OutputError(const char* pText) override { m_Calls.push_back(std::string("E:") + pText); }
    void OutputInfo(char level, const char* pText) override { m_Calls.push_back(std::string(1, level) + ":" + pText); }
    void OutputText(const char* pText, int length) override {
        m_Calls.push_back("T:" + std::string(pText, static_cast<size_t>(length)));
    }
    std::vector<std::string> m_Calls;
};

struct Result {
    std::vector<std::string> calls;
    bool exit = false;
    bool lost = false;
};

Result Read(const std::string& output, const std::string& error = {}, size_t pieceSize = SIZE_MAX) {
    Recorder recorder;
    P4Answers answers(recorder);
    for (size_t at = 0; at < output.size(); at += std::min(pieceSize, output.size() - at))
        answers.AddOutput(std::string_view(output).substr(at, pieceSize));
    answers.AddError(error);
    answers.Finish();
    return {recorder.m_Calls, answers.HasExit(), answers.IsConnectionLost()};
}

TEST(P4AnswersTest, LinesBecomeCallsWhereverTheyAreCut) {
    const std::string text = "info: one\ninfo1: two\ninfo2: three\nerror: bad\nwarning: hm\ntext: a\ntext: b\r\n"
                             "info:bare\nexit: 1\n";
    for (size_t size = 1; size < 20; ++size) {
        const Result result = Read(text, "", size);
        EXPECT_THAT(result.calls, ElementsAre("0:one", "1:two", "2:three", "E:bad", "E:hm", "T:a", "T:b", "0:bare"));
        EXPECT_TRUE(result.exit);
    }
    EXPECT_FALSE(Read("info: one\ninfo: two").exit);
    EXPECT_THAT(Read("info: one\ninfo: two").calls, ElementsAre("0:one", "0:two"));
    EXPECT_TRUE(Read("").calls.empty());
}

TEST(P4AnswersTest, FieldsOfTaggedAnswers) {
    EXPECT_THAT(
        Read("info1: depotFile //depot/x\ninfo1: isMapped \ninfo2: otherOpen0 bob@ws\ninfo1: \nexit: 0\n").calls,
        ElementsAre("1:depotFile //depot/x", "1:isMapped ", "2:otherOpen0 bob@ws", "1:"));
    EXPECT_THAT(Read("info: ... headType text\ninfo: ... ... otherLock0 bob\n").calls,
                ElementsAre("1:headType text", "2:otherLock0 bob"));
}

TEST(P4AnswersTest, MessagesOfSeveralLines) {
    EXPECT_THAT(Read("info: Change 1 on x\n\n\tMine\n\tinfo: mine\n\ninfo: Change 2 on y\nexit: 0\n").calls,
                ElementsAre("0:Change 1 on x\n\n\tMine\n\tinfo: mine", "0:Change 2 on y"));
    EXPECT_THAT(Read("info: Change 1 on x\ninfo: \ninfo: \tMine\ninfo: \ninfo: Change 2 on y\n").calls,
                ElementsAre("0:Change 1 on x\n\n\tMine", "0:Change 2 on y"));
    EXPECT_THAT(Read("error: Bad form.\nUnknown field.\nerror: other\n").calls,
                ElementsAre("E:Bad form.\nUnknown field.", "E:other"));
    EXPECT_THAT(Read("no mark\n").calls, ElementsAre("T:no mark"));
}

TEST(P4AnswersTest, TheErrorStreamHoldsErrors) {
    const Result result = Read("", "Perforce client error:\n\tConnect to server failed; check $P4PORT.\nand more\n");
    EXPECT_THAT(result.calls,
                ElementsAre("E:Perforce client error:\n\tConnect to server failed; check $P4PORT.", "E:and more"));
    EXPECT_TRUE(result.lost);
    EXPECT_FALSE(Read("error: x - no such file(s).\nexit: 1\n").lost);
    EXPECT_FALSE(Read("info: Connect to server failed\nexit: 0\n").lost);
}

TEST(P4AnswersTest, EndlessLinesAndMessagesAreCut) {
    std::string lines = "error: start\n";
    while (lines.size() < 5 << 20)
        lines += "more and more\n";
    const Result result = Read("info: " + std::string(5 << 20, 'x') + "\ninfo: next\n" + lines);
    ASSERT_EQ(result.calls.size(), 3u);
    EXPECT_LE(result.calls[0].size(), 2u << 20);
    EXPECT_EQ(result.calls[1], "0:next");
    EXPECT_LE(result.calls[2].size(), 2u << 20);
}

} // namespace
