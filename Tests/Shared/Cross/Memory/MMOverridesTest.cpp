#include "Shared/Cross/Memory/MMOverrides.h"

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Tests/Shared/Cross/Memory/PoolTesting.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <cstdlib>

namespace {

MMOverride Ask(const std::string& file, const char* pPool) {
    MMOverrides overrides;
    overrides.Read(file);
    return overrides.Get(pPool);
}

TEST(MMOverrides, Lines) {
    const struct {
        const char* pFile;
        MMOverride expected; // of the pool "Nodes"
    } s_Cases[] = {
        {"", MMOverride::None},
        {"[overrides]\nNodes=INFO\n", MMOverride::Info},
        {"[overrides]\r\n  Nodes = VMOVER  \r\n", MMOverride::OverWrite},
        {"[OVERRIDES]\nnodes=vmunder", MMOverride::UnderWrite},
        {"[overrides]\nALL=INFO\n", MMOverride::Info},
        {"[overrides]\nALL=INFO\nNodes=EXCLUDE\n", MMOverride::None},
        {"[overrides]\nNodes=EXCLUDE\nNodes=INFO\n", MMOverride::None},
        {"[overrides]\nALL=INFO\nNodes=VMOVER\n", MMOverride::OverWrite},
        {"[overrides]\nNodes=VMOVER\nNodes=INFO\n", MMOverride::OverWrite},
        {"[overrides]\n;Nodes=INFO\n", MMOverride::None},
        {"[overrides]\nNo;des=INFO\nNodes;=INFO\n", MMOverride::None},
        {"[overrides]\nNodes=WHATEVER\n=\nNodes\n", MMOverride::None},
        {"Nodes=INFO\n[other]\nNodes=INFO\n", MMOverride::None},
        {"[other]\nNodes=INFO\n[overrides]\nNodes=VMOVER\n[other]\nALL=INFO\n", MMOverride::OverWrite},
    };
    for (const auto& [pFile, expected] : s_Cases)
        EXPECT_EQ(Ask(pFile, "Nodes"), expected) << pFile;
}

TEST(MMOverrides, LimitsOfLinesAndSize) {
    std::string file = "[overrides]\n";
    for (int i = 0; i < 70; ++i)
        file += "Pool" + std::to_string(i) + "=INFO\nOut" + std::to_string(i) + "=EXCLUDE\n";
    EXPECT_EQ(Ask(file, "Pool63"), MMOverride::Info);
    EXPECT_EQ(Ask(file, "Pool64"), MMOverride::None);
    EXPECT_EQ(Ask("[overrides]\n" + std::string(8000, ';') + "\nNodes=INFO\n", "Nodes"), MMOverride::Info);
    EXPECT_EQ(Ask("[overrides]\n" + std::string(8192, ';') + "\nNodes=INFO\n", "Nodes"), MMOverride::None);
}

// The file is read once, so that a process of its own runs the test from the start, by the environment of this one.
TEST(MemoryIni, AllRecordsEveryPoolButExclusionsAndRegions) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const TempFolder folder;
    folder.Write("memory.ini", "[overrides]\nALL=INFO\nOut=EXCLUDE\nOver=VMOVER\nUnder=VMUNDER\n");
    setenv("PVX_CONFIG", folder.Native().c_str(), 0); // which that process finds set
    const auto magicOf = [](const char* pName, MMPoolKind kind) { return MMPoolGet(pName, kind).GetMagic(); };
    EXPECT_EXIT(
        {
            const bool right = magicOf("Default", MMPoolKind::Heap) == MMMagic::Info &&
                               magicOf("Strings", MMPoolKind::Heap) == MMMagic::Info &&
                               magicOf("Any", MMPoolKind::Small) == MMMagic::Info &&
                               magicOf("Out", MMPoolKind::Small) == MMMagic::Small &&
                               magicOf("Area", MMPoolKind::Region) == MMMagic::Region &&
                               magicOf("Over", MMPoolKind::Region) == MMMagic::VM &&
                               magicOf("Under", MMPoolKind::Small) == MMMagic::VM;
            MMFree(MMPoolGet("Any"), MMAlloc(MMPoolGet("Any"), 10));
            MMAlloc(MMPoolGet("Area"), 100000);
            std::filesystem::remove_all(folder.Native()); // that process has one of its own, too
            _exit(right ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    unsetenv("PVX_CONFIG");
    GTEST_FLAG_SET(death_test_style, "fast");
}

} // namespace
