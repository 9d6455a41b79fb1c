#include "Shared/PC/Debug/CrashTrap.h"

#include "Shared/PC/Debug/CrashRecord.h"
#include "Shared/PC/Debug/Process.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

// From OnSignal on, only what is safe in a signal handler: no allocation, no lock, no buffered output.

namespace CrashTrap {

namespace {

constexpr int s_Signals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT};
constexpr size_t s_HandlerStackSize = size_t{256} * 1024; // callbacks run on it
constexpr uint64_t s_PageSize = 4096;
constexpr uint64_t s_MostStackSent = uint64_t{512} * 1024;
// How far above an exhausted stack's pointer its memory may begin: the largest single frame that is reckoned with.
constexpr uint64_t s_LargestFrame = uint64_t{8} * 1024 * 1024;
constexpr unsigned s_ReportSeconds = 60;
constexpr char s_Failure[] = "RecordExceptionInfo: error creating exception report\n";

CrashRecord* s_pRecord = nullptr;
void (*s_pBeforeReport)() = nullptr;
char s_ProgramPath[1024];

std::atomic<pid_t> s_CrashedThread = 0;
std::atomic<pid_t> s_GuardedThread = 0;
sigjmp_buf s_GuardReturn;

static_assert(std::atomic<pid_t>::is_always_lock_free);

[[noreturn]] void Die(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    std::raise(signal);
    _exit(128 + signal);
}

// Memory that may not be there is read by way of the system, which refuses where the processor would trap.
class SafeReader {
public:
    SafeReader() { m_Open = pipe2(m_Ends, O_CLOEXEC | O_NONBLOCK) == 0; }
    ~SafeReader() {
        if (!m_Open)
            return;
        close(m_Ends[0]);
        close(m_Ends[1]);
    }
    SafeReader(const SafeReader&) = delete;
    SafeReader& operator=(const SafeReader&) = delete;

    // All or nothing; at most a page, which every pipe has room for.
    bool Read(uint64_t address, void* pDest, size_t size) const {
        const auto wanted = static_cast<ssize_t>(size);
        // The bare call: a sanitizer that watches over the function would look at the memory first.
        return m_Open && syscall(SYS_write, m_Ends[1], address, size) == wanted &&
               read(m_Ends[0], pDest, size) == wanted;
    }

private:
    int m_Ends[2] = {-1, -1};
    bool m_Open = false;
};

uint64_t ToPageEnd(uint64_t address) { return s_PageSize - address % s_PageSize; }

void FillRegisters(CrashRegisters& to, const greg_t* pFrom) {
    const auto get = [=](int index) { return static_cast<uint64_t>(pFrom[index]); };
    to.rax = get(REG_RAX), to.rbx = get(REG_RBX), to.rcx = get(REG_RCX), to.rdx = get(REG_RDX);
    to.rsi = get(REG_RSI), to.rdi = get(REG_RDI), to.rbp = get(REG_RBP), to.rsp = get(REG_RSP);
    to.r8 = get(REG_R8), to.r9 = get(REG_R9), to.r10 = get(REG_R10), to.r11 = get(REG_R11);
    to.r12 = get(REG_R12), to.r13 = get(REG_R13), to.r14 = get(REG_R14), to.r15 = get(REG_R15);
    to.rip = get(REG_RIP), to.flags = get(REG_EFL);
    const uint64_t segments = get(REG_CSGSFS);
    to.cs = static_cast<uint16_t>(segments), to.gs = static_cast<uint16_t>(segments >> 16);
    to.fs = static_cast<uint16_t>(segments >> 32), to.ss = static_cast<uint16_t>(segments >> 48);
    // Not among what the system saves, and not changed by it either.
    asm volatile("mov %%ds, %0" : "=r"(to.ds));
    asm volatile("mov %%es, %0" : "=r"(to.es));
}

void FillRecord(CrashRecord& record, const siginfo_t& info, const ucontext_t& context) {
    constexpr greg_t s_WriteBit = 2; // of what the processor says of a page fault
    record.process = getpid();
    record.thread = gettid();
    record.signal = info.si_signo;
    record.code = info.si_code;
    record.address = reinterpret_cast<uint64_t>(info.si_addr);
    record.isWrite = (context.uc_mcontext.gregs[REG_ERR] & s_WriteBit) != 0;
    FillRegisters(record.registers, context.uc_mcontext.gregs);
    if (context.uc_mcontext.fpregs)
        std::memcpy(record.floatingPoint, context.uc_mcontext.fpregs, sizeof record.floatingPoint);
    static_assert(sizeof info == sizeof record.signalInfo);
    std::memcpy(record.signalInfo, &info, sizeof record.signalInfo);
}

void FillCode(CrashRecord& record, const SafeReader& reader) {
    const uint64_t start = record.registers.rip;
    const auto first = std::min<uint64_t>(ToPageEnd(start), CrashRecord::MaxCodeBytes);
    record.codeCount = 0;
    if (!reader.Read(start, record.codeBytes, first))
        return;
    record.codeCount = static_cast<uint32_t>(first);
    const uint64_t rest = CrashRecord::MaxCodeBytes - first;
    if (rest != 0 && reader.Read(start + first, record.codeBytes + first, rest))
        record.codeCount = CrashRecord::MaxCodeBytes;
}

bool Send(int socket, const void* pData, size_t size) {
    const char* pBytes = static_cast<const char*>(pData);
    while (size != 0) {
        const ssize_t sent = send(socket, pBytes, size, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        pBytes += sent;
        size -= static_cast<size_t>(sent);
    }
    return true;
}

bool SendBlock(int socket, CrashBlock::Kind kind, uint64_t address, const void* pData, size_t size) {
    const CrashBlock block = {.kind = kind, .size = static_cast<uint32_t>(size), .address = address};
    return Send(socket, &block, sizeof block) && Send(socket, pData, size);
}

void SendMaps(int socket) {
    const int file = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return;
    char piece[CrashBlock::MaxSize];
    ssize_t size = 0;
    while ((size = read(file, piece, sizeof piece)) > 0)
        if (!SendBlock(socket, CrashBlock::Kind_Maps, 0, piece, static_cast<size_t>(size)))
            break;
    close(file);
}

// From the stack's pointer upward, page by page. Where the pointer has left the stack, memory begins further up.
void SendStack(int socket, uint64_t start, const SafeReader& reader) {
    char piece[s_PageSize];
    uint64_t sent = 0;
    uint64_t skipped = 0;
    for (uint64_t address = start; sent < s_MostStackSent && address >= start;) {
        const uint64_t size = ToPageEnd(address);
        if (reader.Read(address, piece, size)) {
            if (!SendBlock(socket, CrashBlock::Kind_Stack, address, piece, size))
                return;
            sent += size;
        } else if (sent != 0 || (skipped += size) > s_LargestFrame) {
            return;
        }
        address += size;
    }
}

// The copy of the crashed process that becomes the reporting program.
[[noreturn]] void BecomeReporter(int socket) {
    std::signal(SIGALRM, SIG_DFL);
    alarm(s_ReportSeconds); // it must not keep a crashed process from ending
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (socket == s_CrashDescriptor)
        fcntl(socket, F_SETFD, 0);
    else
        dup2(socket, s_CrashDescriptor);
    close_range(s_CrashDescriptor + 1, ~0U, 0);
    char* arguments[] = {s_ProgramPath, nullptr};
    char* nothing[] = {nullptr};
    execve(s_ProgramPath, arguments, environ);
    if (errno == EFAULT) // the environment was hit, too
        execve(s_ProgramPath, arguments, nothing);
    if (write(STDERR_FILENO, s_Failure, sizeof s_Failure - 1) < 0)
        _exit(126);
    _exit(127);
}

void Report(CrashRecord& record) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    // The plain call: handlers that libraries have registered for a fork may wait for locks.
    const pid_t child = _Fork();
    if (child == 0)
        BecomeReporter(ends[1]);
    close(ends[1]);
    if (child > 0) {
        prctl(PR_SET_PTRACER, child); // where a process needs leave to look into another
        {
            const SafeReader reader;
            FillCode(record, reader);
            if (Send(ends[0], &record, sizeof record)) {
                SendMaps(ends[0]);
                SendStack(ends[0], record.registers.rsp, reader);
            }
        }
        shutdown(ends[0], SHUT_WR);
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    close(ends[0]);
}

void OnSignal(int signal, siginfo_t* pInfo, void* pContext) {
    const pid_t thread = gettid();
    if (s_GuardedThread == thread)
        siglongjmp(s_GuardReturn, 1);
    pid_t crashed = 0;
    if (!s_CrashedThread.compare_exchange_strong(crashed, thread)) {
        if (crashed == thread)
            Die(signal); // in here
        // One crash is told of; the thread that had it ends the process.
        for (;;)
            pause();
    }
    FillRecord(*s_pRecord, *pInfo, *static_cast<const ucontext_t*>(pContext));
    s_pBeforeReport();
    Report(*s_pRecord);
    Die(signal);
}

template <size_t Size>
void CopyText(char (&to)[Size], const std::string& from) {
    to[from.copy(to, Size - 1)] = '\0';
}

bool MakeHandlerStack() {
    void* pMemory =
        mmap(nullptr, s_HandlerStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (pMemory == MAP_FAILED)
        return false;
    const stack_t stack = {.ss_sp = pMemory, .ss_flags = 0, .ss_size = s_HandlerStackSize};
    return sigaltstack(&stack, nullptr) == 0;
}

} // namespace

bool Install(CrashRecord& record, void (*pBeforeReport)()) {
    record.size = sizeof record;
    CopyText(record.executable, Process::GetExecutablePath());
    CopyText(record.configFolder, Process::GetConfigFolder());
    CopyText(record.logFolder, Process::GetLogFolder());
    CopyText(s_ProgramPath, Process::GetExecutableFolder() + s_CrashProgram);
    if (!MakeHandlerStack())
        return false;
    s_pRecord = &record;
    s_pBeforeReport = pBeforeReport;
    struct sigaction action = {};
    action.sa_sigaction = OnSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    return std::ranges::all_of(s_Signals, [&](int signal) { return sigaction(signal, &action, nullptr) == 0; });
}

bool RunGuarded(void (*pFunction)(void* pUser), void* pUser) {
    if (sigsetjmp(s_GuardReturn, 1) != 0) {
        s_GuardedThread = 0;
        return false;
    }
    s_GuardedThread = gettid();
    pFunction(pUser);
    s_GuardedThread = 0;
    return true;
}

} // namespace CrashTrap
