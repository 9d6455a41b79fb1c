#include "Shared/Cross/Debug/db.h"

#include "Shared/Cross/Debug/CallbackTable.h"
#include "Shared/Cross/Debug/CrashReport.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

void DoNothing(void*) {}

int s_Depth = 0;
void WarnAgain(dbMessage) {
    if (++s_Depth == 1)
        dbWarningf("from within");
}

int s_Lines = 0; // subscribers are called one at a time
void CountLines(dbMessage message) { s_Lines += static_cast<int>(message.size()); }

} // namespace

TEST(Channels, WarningsBearTheirPlace) {
    ReportCapture capture;
    dbWarningf("face %d of '%s'", 7, "Arm");
    const std::string expected = "channeltest/" + std::to_string(__LINE__ - 1) + ":!face 7 of 'Arm'";
    EXPECT_EQ(capture.GetWarnings(), std::vector{expected});

    capture.Clear();
    dbSetLocation("Z:\\src\\Some.File.CPP", 12);
    (dbWarningf)("on behalf");
    EXPECT_EQ(capture.GetWarnings(), std::vector<std::string>{"some.file/12:!on behalf"});
}

TEST(Channels, PlainMessagesGoToTheErrorChannelAndLongOnesAreCut) {
    ReportCapture capture;
    dbPrintf("%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(capture.GetErrors(), std::vector{std::string(1023, 'x')});
    EXPECT_TRUE(capture.GetWarnings().empty());
    EXPECT_THROW(dbPrintf("%s", ""), std::runtime_error);
    dbWarningAt((std::string(3000, 'f') + ".cpp").c_str(), 1, "text");
    EXPECT_EQ(capture.GetWarnings().at(0).size(), 1023u);
}

TEST(Channels, BadRegistrationsStop) {
    EXPECT_THROW(dbAddWarningSubscriber(nullptr), std::runtime_error);
    CallbackTable<dbCallback, 2> table;
    EXPECT_THROW(table.Add({}), std::runtime_error);
    int users[3] = {};
    table.Add({DoNothing, &users[0]});
    EXPECT_THROW(table.Add({DoNothing, &users[0]}), std::runtime_error) << "twice";
    table.Add({DoNothing, &users[1]});
    EXPECT_THROW(table.Add({DoNothing, &users[2]}), std::runtime_error) << "too many";
    table.Remove({DoNothing, &users[0]});
    table.Add({DoNothing, &users[2]});
    EXPECT_EQ(table[0].pUser, &users[1]);
}

TEST(Channels, ASubscriberMayReport) {
    ReportCapture capture;
    dbAddWarningSubscriber(WarnAgain);
    dbWarningf("outer");
    dbRemoveWarningSubscriber(WarnAgain);
    EXPECT_TRUE(ReportCapture::HasWarning("outer"));
    EXPECT_TRUE(ReportCapture::HasWarning("from within"));
}

TEST(Channels, ThreadsReportAtTheSameTime) {
    dbAddWarningSubscriber(CountLines);
    {
        std::vector<std::jthread> threads(4);
        for (std::jthread& thread : threads)
            thread = std::jthread([] {
                for (int line = 0; line < 500; ++line)
                    dbWarningf("line %d", line);
            });
    }
    dbRemoveWarningSubscriber(CountLines);
    EXPECT_EQ(s_Lines, 4 * 500);
}

TEST(CrashReport, KeepsFourTextsWithoutDuplicates) {
    dbAddReportText("one");
    dbAddReportText("one");
    dbAddReportText(std::string(3000, 'x').c_str());
    dbAddReportText("three");
    dbAddReportText("four");
    ASSERT_EQ(dbGetReportTexts().size(), 4u);
    EXPECT_EQ(dbGetReportTexts()[1].size(), s_dbMaxReportTextLength);
    EXPECT_NO_THROW(dbAddReportText("three"));
    EXPECT_THROW(dbAddReportText("five"), std::runtime_error);
}

TEST(CrashReport, KeepsFilesUntilTheyAreTakenBack) {
    const auto name = [](uint32_t i) { return "/tmp/file" + std::to_string(i); };
    for (uint32_t i = 0; i < s_dbMaxReportFiles; ++i)
        dbAddReportFile(name(i).c_str(), false);
    EXPECT_THROW(dbAddReportFile("/tmp/more", false), std::runtime_error);
    dbAddReportFile(name(3).c_str(), true);
    EXPECT_TRUE(dbGetReportFiles().at(3).deleteAfter);
    for (uint32_t i = 0; i < s_dbMaxReportFiles; ++i)
        dbRemoveReportFile(name(i).c_str());
    EXPECT_TRUE(dbGetReportFiles().empty());
    EXPECT_THROW(dbAddReportFile(std::string(300, 'x').c_str(), false), std::runtime_error);
}
