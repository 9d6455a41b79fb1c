#include "Shared_Tools/Burner/BurnPattern.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(BurnPatternTest, WildcardsBecomeExpressions) {
    const std::pair<const char*, const char*> cases[] = {
        {"*.*", ".*$"},
        {"*", ".*$"},
        {"ref.pvx", "ref\\.pvx$"},
        {"r?f*.pvx", "r.f.*\\.pvx$"},
        {"*.*.pvx", ".*\\..*\\.pvx$"},
        {"a+b(c)[d]{e}^$", "a\\+b\\(c\\)\\[d\\]\\{e\\}\\^\\$$"},
        {"", "$"},
    };
    for (const auto& [pWildcard, pExpression] : cases)
        EXPECT_EQ(WildcardToExpression(pWildcard), pExpression);
}

TEST(BurnPatternTest, PathsAreSplit) {
    const TempFolder folder;
    folder.MakeFolder("art");
    EXPECT_EQ(SplitBurnPattern(""), BurnPattern());
    EXPECT_EQ(SplitBurnPattern(folder.Path("art").c_str()), (BurnPattern{folder.Path("art"), ".*$"}));
    EXPECT_EQ(SplitBurnPattern(folder.Path("ART/").c_str()).pattern, ".*$");
    EXPECT_EQ(SplitBurnPattern(folder.Path("art/x.pvx").c_str()), (BurnPattern{folder.Path("art/"), "x\\.pvx$"}));
    EXPECT_EQ(SplitBurnPattern(folder.Path("art/../art/*.*").c_str()), (BurnPattern{folder.Path("art/"), ".*$"}));
    EXPECT_EQ(SplitBurnPattern("Z:\\x.pvx").directory, "Z:\\");
    EXPECT_EQ(SplitBurnPattern("DATA:art\\x.pvx").pattern, "x\\.pvx$");
}

} // namespace
