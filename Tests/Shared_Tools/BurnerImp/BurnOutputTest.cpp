#include "Shared_Tools/BurnerImp/BurnOutput.h"

#include "Shared_Tools/BurnerImp/BurnPlugin.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

TEST(BurnOutputTest, TimesDecideWhatIsUpToDate) {
    const TempFolder folder;
    folder.Write("fin/a.txt", "a");
    const int64_t time = OSFile::GetWriteTime(folder.Path("fin/a.txt").c_str());
    EXPECT_EQ(GetNewestTime({folder.Path("fin/a.txt")}), time);
    EXPECT_EQ(GetNewestTime({folder.Path("fin/a.txt"), folder.Path("missing")}), std::numeric_limits<int64_t>::max());
    BurnSource source;
    source.finalFolder = folder.Path("fin");
    EXPECT_TRUE(AreOutputsNewer(source, {"DATA:a.txt"}, time - 1));
    EXPECT_FALSE(AreOutputsNewer(source, {"DATA:a.txt"}, time)); // the input may have been written after it
    EXPECT_FALSE(AreOutputsNewer(source, {"DATA:a.txt", "DATA:missing"}, time - 1));
}

} // namespace
