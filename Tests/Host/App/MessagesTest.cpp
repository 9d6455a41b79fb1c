#include "Host/App/Messages.h"

#include "Host/App/MergeCommand.h"
#include "Shared/Cross/Debug/db.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using testing::ElementsAre;

std::vector<std::string> Faces(int count) {
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i)
        lines.push_back("Warning : 'Rock': face " + std::to_string(i) + " at (" + std::to_string(i) + ".5, -" +
                        std::to_string(i * 37) + ") is odd");
    return lines;
}

std::string Printed(const Messages::Settings& settings, const std::vector<std::string>& lines) {
    char* pText = nullptr;
    size_t size = 0;
    std::FILE* pOut = open_memstream(&pText, &size);
    Messages(pOut, settings).PrintList(lines);
    std::fclose(pOut);
    std::string text(pText, size);
    std::free(pText);
    return text;
}

TEST(FoldLines, TwentyStayAndTwentyOneAreCut) {
    EXPECT_EQ(FoldLines(Faces(20)), Faces(20));
    const std::vector<std::string> folded = FoldLines(Faces(21));
    ASSERT_EQ(folded.size(), 4u);
    EXPECT_EQ(folded[2], Faces(21)[2]);
    EXPECT_THAT(folded[3], testing::HasSubstr("18 more"));
}

TEST(FoldLines, ARunEndsWhereTheWordsChange) {
    std::vector<std::string> lines = Faces(30);
    lines[15] = "Error   : 'Rock': something else";
    EXPECT_EQ(FoldLines(lines), lines) << "two runs of 15 and 14";
    lines = Faces(25);
    lines.push_back("last");
    lines.insert(lines.begin(), "first");
    const std::vector<std::string> folded = FoldLines(lines);
    ASSERT_EQ(folded.size(), 6u);
    EXPECT_EQ(folded.front(), "first");
    EXPECT_EQ(folded.back(), "last");
}

TEST(FoldLines, NumbersInNamesCountAsNumbersAndWordsDoNot) {
    std::vector<std::string> numbered, lettered;
    for (int i = 0; i < 26; ++i) {
        numbered.push_back("Warning : 'Wheel_L" + std::to_string(i) + "' is odd");
        lettered.push_back(std::string("Warning : 'Wheel_") + static_cast<char>('a' + i) + "' is odd");
    }
    EXPECT_EQ(FoldLines(numbered).size(), 4u);
    EXPECT_EQ(FoldLines(lettered), lettered);
}

TEST(Messages, OnlyATerminalFolds) {
    const auto count = [](const std::string& text) { return std::ranges::count(text, '\n'); };
    EXPECT_EQ(count(Printed({}, Faces(100))), 100);
    EXPECT_EQ(count(Printed({.terminal = true}, Faces(100))), 4);
    EXPECT_EQ(count(Printed({.terminal = true, .all = true}, Faces(100))), 100);
}

TEST(Messages, LinesOfAListStandAsQueued) {
    const std::vector<std::string> lines{"Error   : a\tb", "Warning : %s %d", ""};
    EXPECT_EQ(Printed({}, lines), "Error   : a\tb\nWarning : %s %d\n\n");
    EXPECT_EQ(Printed({.quiet = true}, lines), "Error   : a\tb\nWarning : %s %d\n\n");
    EXPECT_EQ(Printed({.terminal = true, .colour = true}, {lines[0]}), "\033[31mError   : a\tb\033[0m\n");
}

// What a merge's log says it does next is seen by those who wait for it.
TEST(MergeNotes, StepsAreShownOnTheTerminal) {
    char* pText = nullptr;
    size_t size = 0;
    std::FILE* pOut = open_memstream(&pText, &size);
    Progress progress(pOut, true, 60);
    {
        const MergeNotes notes(progress);
        dbPrintf("MERGE -- animation file 1 of 3: 'Z:\\int\\aim.pvx'");
        std::this_thread::sleep_for(std::chrono::milliseconds(110));
        dbPrintf("MERGE -- animation file 2 of 3: 'Z:\\int\\run.pvx'");
    }
    dbPrintf("MERGE -- of another one");
    std::fclose(pOut);
    EXPECT_STREQ(pText, "\r\033[Kmerge: animation file 2 of 3, run.pvx");
    std::free(pText);
}

} // namespace
