#include "Shared/Cross/Memory/MMOverrides.h"

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Tests/Shared/Cross/Memory/PoolTesting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

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

// A process of its own with a "memory.ini" of its own, since the file is read once.
class MemoryIni : public testing::Test {
protected:
    // The process of its own runs the test from the start, with the folder of the one that started it.
    MemoryIni() {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        if (const char* const pFolder = getenv(s_FolderVariable)) {
            m_Folder = pFolder;
            return;
        }
        std::string name = (std::filesystem::temp_directory_path() / "pvx-memory-XXXXXX").string();
        m_Folder = mkdtemp(name.data());
        setenv(s_FolderVariable, m_Folder.c_str(), 1);
        setenv("PVX_CONFIG", m_Folder.c_str(), 1);
    }
    ~MemoryIni() override {
        unsetenv(s_FolderVariable);
        unsetenv("PVX_CONFIG");
        std::filesystem::remove_all(m_Folder);
        testing::FLAGS_gtest_death_test_style = "fast";
    }

    void Write(const char* pText) { std::ofstream(m_Folder / "memory.ini") << pText; }

    static MMMagic MagicOf(const char* pName, MMPoolKind kind) { return MMPoolGet(pName, kind).GetMagic(); }

    static constexpr const char* s_FolderVariable = "PVX_TEST_MEMORY_FOLDER";
    std::filesystem::path m_Folder;
};

TEST_F(MemoryIni, AllRecordsEveryPoolButExclusionsAndRegions) {
    Write("[overrides]\nALL=INFO\nOut=EXCLUDE\nOver=VMOVER\nUnder=VMUNDER\n");
    EXPECT_EXIT(
        {
            const bool right = MagicOf("Default", MMPoolKind::Heap) == MMMagic::Info &&
                               MagicOf("Strings", MMPoolKind::Heap) == MMMagic::Info &&
                               MagicOf("Any", MMPoolKind::Small) == MMMagic::Info &&
                               MagicOf("Out", MMPoolKind::Small) == MMMagic::Small &&
                               MagicOf("Area", MMPoolKind::Region) == MMMagic::Region &&
                               MagicOf("Over", MMPoolKind::Region) == MMMagic::VM &&
                               MagicOf("Under", MMPoolKind::Small) == MMMagic::VM;
            MMFree(MMPoolGet("Any"), MMAlloc(MMPoolGet("Any"), 10));
            MMAlloc(MMPoolGet("Area"), 100000);
            _exit(right ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(MemoryIni, TurnsASinglePoolIntoATrap) {
    Write("[overrides]\nNodes=VMOVER\n");
    EXPECT_DEATH(
        {
            volatile char* const pBlock = static_cast<char*>(MMAlloc(MMPoolGet("Nodes", MMPoolKind::Small), 24));
            pBlock[23] = 1;
            fputs("inside is fine\n", stderr);
            pBlock[24] = 1;
            _exit(0);
        },
        "inside is fine");
}

TEST_F(MemoryIni, NoneIsNoMistake) {
    EXPECT_EXIT(_exit(MagicOf("Nodes", MMPoolKind::Small) == MMMagic::Small ? 0 : 1), testing::ExitedWithCode(0), "");
}

} // namespace
