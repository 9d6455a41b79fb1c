#include "Shared/PC/Debug/Crash/CoreFile.h"

#include "Shared/PC/Debug/Crash/CrashedProcess.h"
#include "Shared/PC/Debug/Crash/StoppedProcess.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <elf.h>
#include <signal.h>
#include <sys/procfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

volatile uint64_t s_Mark = 0; // in memory that is no file's

// A process that waits, taken for a crashed one.
class CoreFileTest : public testing::Test {
protected:
    CoreFileTest() {
        s_Mark = 0x1122334455667788;
        m_Child = fork();
        if (m_Child == 0)
            for (;;)
                pause();
        s_Mark = 0;
        m_Record.process = m_Child;
        m_Record.thread = m_Child;
        m_Record.signal = SIGSEGV;
        m_Record.registers.rip = 0x1234;
        m_Record.registers.rsp = reinterpret_cast<uint64_t>(__builtin_frame_address(0));
    }
    ~CoreFileTest() override {
        kill(m_Child, SIGKILL);
        waitpid(m_Child, nullptr, 0);
    }

    bool Write(const char* pName = "dump", uint64_t mostBytes = 16 * 1024 * 1024) {
        const std::string maps = m_Folder.Read("/proc/" + std::to_string(m_Child) + "/maps");
        const StoppedProcess stopped(m_Child);
        const bool written = WriteCoreFile(m_Folder.Native(pName), {m_Record, maps}, stopped, mostBytes);
        m_File = m_Folder.Read(pName);
        return written;
    }

    template <typename T>
    T Get(uint64_t position) const {
        T value = {};
        EXPECT_EQ(m_File.copy(reinterpret_cast<char*>(&value), sizeof value, position), sizeof value);
        return value;
    }
    std::vector<Elf64_Phdr> GetSegments() const {
        const auto header = Get<Elf64_Ehdr>(0);
        std::vector<Elf64_Phdr> segments;
        for (uint64_t i = 0; i < header.e_phnum; ++i)
            segments.push_back(Get<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr)));
        return segments;
    }
    // Where the memory of the address lies in the file; 0 if it isn't there.
    uint64_t Locate(uint64_t address) const {
        for (const Elf64_Phdr& segment : GetSegments())
            if (segment.p_type == PT_LOAD && segment.p_vaddr <= address && address < segment.p_vaddr + segment.p_filesz)
                return segment.p_offset + (address - segment.p_vaddr);
        return 0;
    }

    const TempFolder m_Folder;
    pid_t m_Child;
    CrashRecord m_Record = {};
    std::string m_File;
};

} // namespace

TEST_F(CoreFileTest, HoldsTheMemoryThatIsNoFiles) {
    ASSERT_TRUE(Write());
    EXPECT_TRUE(m_File.starts_with(ELFMAG));
    const uint64_t mark = Locate(reinterpret_cast<uint64_t>(&s_Mark));
    ASSERT_NE(mark, 0u);
    EXPECT_EQ(Get<uint64_t>(mark), 0x1122334455667788u);
    // Code is in the program's file.
    EXPECT_EQ(Locate(reinterpret_cast<uint64_t>(&getpid)), 0u);
    const auto permissions = std::filesystem::status(m_Folder.Native("dump")).permissions();
    EXPECT_EQ(permissions, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(CoreFileTest, NotesStartWithTheCrashedThread) {
    ASSERT_TRUE(Write());
    const std::vector<Elf64_Phdr> segments = GetSegments();
    ASSERT_EQ(segments[0].p_type, static_cast<uint32_t>(PT_NOTE));
    std::vector<uint32_t> types;
    for (uint64_t at = segments[0].p_offset; at < segments[0].p_offset + segments[0].p_filesz;) {
        const auto note = Get<Elf64_Nhdr>(at);
        at += sizeof note + 8;
        if (note.n_type == NT_PRSTATUS) {
            const auto status = Get<elf_prstatus>(at);
            EXPECT_EQ(status.pr_pid, m_Child);
            EXPECT_EQ(status.pr_cursig, SIGSEGV);
            constexpr size_t s_Rip = 16;
            EXPECT_EQ(status.pr_reg[s_Rip], 0x1234u);
        }
        types.push_back(note.n_type);
        at += (note.n_descsz + 3) / 4 * 4;
    }
    EXPECT_EQ(types, (std::vector<uint32_t>{NT_PRSTATUS, NT_PRPSINFO, NT_SIGINFO, NT_AUXV, NT_FILE, NT_PRFPREG}));
}

TEST_F(CoreFileTest, StaysWithinItsBound) {
    constexpr uint64_t s_Bound = 512 * 1024;
    ASSERT_TRUE(Write("dump", s_Bound));
    uint64_t taken = 0;
    for (const Elf64_Phdr& segment : GetSegments())
        if (segment.p_type == PT_LOAD)
            taken += segment.p_filesz;
    EXPECT_GT(taken, 0u);
    EXPECT_LE(taken, s_Bound);
    EXPECT_NE(Locate(m_Record.registers.rsp), 0u) << "the stack comes first";
}

TEST_F(CoreFileTest, FailuresLeaveNothing) {
    EXPECT_FALSE(Write("none/dump"));
    kill(m_Child, SIGKILL);
    waitpid(m_Child, nullptr, 0);
    EXPECT_FALSE(Write());
    EXPECT_FALSE(m_Folder.Has("dump"));
}
