#include "Shared/PC/Debug/Process.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(Process, StartedJustNow) {
    const time_t now = time(nullptr);
    // The system counts from its boot, whose time it rounds.
    EXPECT_LE(Process::GetStartTime(), now + 2);
    EXPECT_GT(Process::GetStartTime(), now - 600);
}

TEST(Process, OnlySomeNumbersAreOfLivingProcesses) {
    EXPECT_TRUE(Process::IsAlive(Process::GetId()));
    EXPECT_TRUE(Process::IsAlive(1)) << "somebody else's";
    EXPECT_FALSE(Process::IsAlive(0));
    EXPECT_FALSE(Process::IsAlive(0x7FFFFFFF)) << "beyond the system's highest";
    EXPECT_FALSE(Process::IsAlive(0xFFFFFFFF));
}

TEST(Process, TheEnvironmentMovesTheSettings) {
    unsetenv("PVX_CONFIG");
    EXPECT_EQ(Process::GetConfigFolder(), Process::GetExecutableFolder());
    setenv("PVX_CONFIG", "/etc/pvx", 1);
    EXPECT_EQ(Process::GetConfigFolder(), "/etc/pvx/");
    unsetenv("PVX_CONFIG");
}
