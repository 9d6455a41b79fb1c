#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(BurnerMessageTest, LinesStartWithTheirKindAndSource) {
    BurnerMessageList messages;
    AddBurnerInfo(messages, "Burner", "%s %d", "file", 3);
    AddBurnerWarning(messages, "ConfigIO", "odd");
    AddBurnerError(messages, "Burner", "%s", std::string(3000, 'x').c_str());
    AddBurnerMessage(messages, 7, "100%");
    const BurnerMessageList expected{{"Burner --file 3", 0},
                                     {"Warning: ConfigIO --odd", 1},
                                     {"Error: Burner --" + std::string(3000, 'x'), 2},
                                     {"100%", 7}};
    EXPECT_EQ(messages, expected);
}

TEST(BurnerMessageTest, TheyAreDumpedLineByLine) {
    const TempFolder folder;
    FilePath::AddSource("DUMP", "d", 1, FilePathHD::Create(folder.Path().c_str(), ByteStream::Mode_Both));
    const BurnerMessageList messages{{"one", 0}, {"", 1}, {"three", 2}};
    EXPECT_TRUE(DumpBurnerMessages(messages, "DUMP:x.txt"));
    EXPECT_EQ(folder.Read("x.txt"), "one\r\n\r\nthree\r\n");
    EXPECT_TRUE(DumpBurnerMessages({}, "DUMP:x.txt"));
    EXPECT_EQ(folder.Read("x.txt"), "");
    EXPECT_FALSE(DumpBurnerMessages(messages, "NONE:x.txt"));
    FilePath::RemoveSource("DUMP", "d");
}

} // namespace
