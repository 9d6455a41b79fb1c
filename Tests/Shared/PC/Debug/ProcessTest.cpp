#include "Shared/PC/Debug/Process.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(Process, StartedJustNow) {
    const time_t now = time(nullptr);
    // The system counts from its boot, whose time it rounds.
    EXPECT_LE(Process::GetStartTime(), now + 2);
    EXPECT_GT(Process::GetStartTime(), now - 600);
}

TEST(Process, TheEnvironmentMovesTheSettings) {
    unsetenv("PVX_CONFIG");
    EXPECT_EQ(Process::GetConfigFolder(), Process::GetExecutableFolder());
    setenv("PVX_CONFIG", "/etc/pvx", 1);
    EXPECT_EQ(Process::GetConfigFolder(), "/etc/pvx/");
    unsetenv("PVX_CONFIG");
}
