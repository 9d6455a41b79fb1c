#include "Shared/PC/Debug/Crash/CrashedProcess.h"

#include "Shared/PC/Debug/Crash/ExceptionName.h"
#include "Shared/PC/Debug/Crash/ModuleList.h"
#include "Shared/PC/Debug/Process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace {

constexpr const char* s_Maps = "5000-6000 r--p 00000000 fe:00 12   /bin/no such tool\n"
                               "6000-8000 r-xp 00001000 fe:00 12   /bin/no such tool\n"
                               "8000-9000 rw-p 00000000 00:00 0 \n"
                               "9000-a000 rw-p 00003000 fe:00 12   /bin/no such tool\n"
                               "b000-c000 r--s 00000000 fe:00 13   /share/data\n"
                               "what this is nobody knows\n"
                               "7ff000-800000 rw-p 00000000 00:00 0 [stack]\n";

CrashedProcess MakeProcess(int signal, int code, uint64_t address = 0, bool isLanguageException = false) {
    CrashRecord record = {};
    record.signal = signal;
    record.code = code;
    record.address = address;
    record.isLanguageException = isLanguageException;
    record.registers.rsp = 0x7ff000;
    return {record, s_Maps};
}

template <typename T>
std::string ToText(const T& value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

std::optional<CrashedProcess> Receive(const std::string& sent) {
    std::FILE* pFile = std::tmpfile();
    std::fwrite(sent.data(), 1, sent.size(), pFile);
    std::fflush(pFile);
    lseek(fileno(pFile), 0, SEEK_SET);
    auto process = CrashedProcess::Receive(fileno(pFile));
    std::fclose(pFile);
    return process;
}

std::vector<std::byte> MakeBytes(size_t size, uint8_t value) { return std::vector<std::byte>(size, std::byte{value}); }

} // namespace

TEST(CrashedProcess, KnowsWhatIsMapped) {
    const CrashedProcess process = MakeProcess(SIGSEGV, SEGV_MAPERR);
    ASSERT_EQ(process.GetMappings().size(), 6u);
    const Mapping* pMapping = process.FindMapping(0x6fff);
    ASSERT_TRUE(pMapping);
    EXPECT_EQ(pMapping->offset, 0x1000u);
    EXPECT_TRUE(pMapping->isReadable && pMapping->isExecutable && !pMapping->isWritable && !pMapping->isShared);
    EXPECT_TRUE(process.GetMappings()[4].isShared);
    for (const auto& [address, pName] :
         {std::pair(0x6123u, "no such tool"), {0x8123u, "Unknown"}, {0xa000u, "Unknown"}})
        EXPECT_EQ(process.GetModuleName(address), pName);
}

TEST(CrashedProcess, ReadsWordsOfItsStackAcrossPieces) {
    CrashedProcess process = MakeProcess(SIGSEGV, SEGV_MAPERR);
    process.AddStack(0x1000, MakeBytes(12, 0x11));
    process.AddStack(0x100c, MakeBytes(4, 0x22));
    process.AddStack(0x2000, MakeBytes(8, 0x33));
    uint64_t word = 0;
    EXPECT_TRUE(process.ReadWord(0x1008, word));
    EXPECT_EQ(word, 0x2222222211111111u);
    EXPECT_TRUE(process.ReadWord(0x2000, word));
    for (const uint64_t outside : {0xfffu, 0x1009u, 0x1010u, 0x2001u, 0x3000u})
        EXPECT_FALSE(process.ReadWord(outside, word)) << std::hex << outside;
}

TEST(CrashedProcess, ReceivesWhatWasSent) {
    CrashRecord record = {};
    record.size = sizeof record;
    record.process = 12;
    const CrashBlock maps = {.kind = CrashBlock::Kind_Maps, .size = 12, .address = 0};
    const CrashBlock stack = {.kind = CrashBlock::Kind_Stack, .size = 8, .address = 0x1000};
    const std::string sent = ToText(record) + ToText(maps) + "1000-2000 r " + ToText(stack) + "12345678";
    uint64_t word = 0;
    // Cut short, there is what there is.
    for (const size_t cut : {0, 1}) {
        const auto process = Receive(sent.substr(0, sent.size() - cut));
        ASSERT_TRUE(process);
        EXPECT_EQ(process->GetRecord().process, 12);
        EXPECT_EQ(process->GetMaps(), "1000-2000 r ");
        EXPECT_EQ(process->ReadWord(0x1000, word), cut == 0);
    }
    EXPECT_FALSE(Receive(sent.substr(0, sizeof record - 1)));
    ++record.size;
    EXPECT_FALSE(Receive(ToText(record))) << "of another build";
}

TEST(CrashedProcess, ADamagedRecordIsMended) {
    CrashRecord record;
    std::memset(&record, 0x7F, sizeof record);
    const CrashedProcess process(record, "");
    EXPECT_EQ(std::strlen(process.GetRecord().executable), sizeof record.executable - 1);
    EXPECT_EQ(process.GetRecord().fileCount, CrashRecord::MaxFiles);
    EXPECT_EQ(process.GetRecord().codeCount, CrashRecord::MaxCodeBytes);
}

TEST(ExceptionName, TheFirstThatFitsCounts) {
    const std::tuple<int, int, const char*> names[] = {
        {SIGBUS, BUS_ADRALN, "a Datatype Misalignment"},   {SIGBUS, BUS_ADRERR, "an In Page Error"},
        {SIGILL, ILL_PRVOPC, "a Privileged Instruction"},  {SIGILL, ILL_ILLOPN, "an Illegal Instruction"},
        {SIGFPE, FPE_INTDIV, "an Integer Divide by Zero"}, {SIGFPE, SI_TKILL, "Unknown exception type"},
        {SIGABRT, SI_TKILL, "a Noncontinuable Exception"}};
    for (const auto& [signal, code, pName] : names)
        EXPECT_STREQ(GetExceptionName(MakeProcess(signal, code)), pName);
    EXPECT_STREQ(GetExceptionName(MakeProcess(SIGABRT, SI_TKILL, 0, true)), "a C++ Exception");
}

TEST(ExceptionName, BelowTheStackIsAnOverflow) {
    EXPECT_STREQ(GetExceptionName(MakeProcess(SIGSEGV, SEGV_MAPERR, 0x7feff8)), "a Stack Overflow");
    // Into the stack itself is a matter of what was done there.
    EXPECT_STREQ(GetExceptionName(MakeProcess(SIGSEGV, SEGV_ACCERR, 0x7ff010)), "an Access Violation");
    EXPECT_STREQ(GetExceptionName(MakeProcess(SIGSEGV, SEGV_MAPERR, 0x700000)), "an Access Violation");
}

TEST(ExceptionName, AViolationHasAnAddress) {
    EXPECT_TRUE(IsAccessViolation(MakeProcess(SIGSEGV, SEGV_MAPERR, 16)));
    EXPECT_TRUE(IsAccessViolation(MakeProcess(SIGSEGV, SI_KERNEL)));
    EXPECT_FALSE(IsAccessViolation(MakeProcess(SIGSEGV, SI_USER, 16))) << "sent by another process";
    EXPECT_FALSE(IsAccessViolation(MakeProcess(SIGSEGV, SEGV_MAPERR, 0x7feff8))) << "the stack's end";
    EXPECT_FALSE(IsAccessViolation(MakeProcess(SIGBUS, BUS_ADRERR, 16)));
}

TEST(ModuleList, NamesEachFileWithCodeOnce) {
    const std::string own = "b00000-c00000 r-xp 00000000 fe:00 12   " + Process::GetExecutablePath() + "\n";
    const std::vector<CrashedModule> modules = ListModules(ParseMappings(s_Maps + own));
    ASSERT_EQ(modules.size(), 2u);
    EXPECT_EQ(modules[0].path, "/bin/no such tool");
    EXPECT_EQ(modules[0].start, 0x5000u);
    EXPECT_EQ(modules[0].size, 0x5000u);
    EXPECT_EQ(modules[0].fileTime, 0);
    EXPECT_EQ(modules[0].stamp, 0u);
    EXPECT_NE(modules[1].stamp, 0u);
    EXPECT_GT(modules[1].fileTime, 0);
}
