#include "Shared/PC/Win32Util/ChildProcess.h"

#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Win32Util/ChildPipes_posix.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// How long a child may go unnoticed that has ended while another still holds its pipes.
constexpr milliseconds s_WaitSlice{50};
constexpr milliseconds s_KillLimit{2000}; // a killed process ends at once, unless the machine is in trouble
constexpr std::chrono::microseconds s_FirstNap{100};
constexpr std::chrono::microseconds s_LongestNap{10000};
constexpr int s_PiecesAtOnce = 64;
constexpr int s_UnknownExitCode = -1;
constexpr int s_SignalBase = 128;

// Children that outlived their objects: whoever starts the next one clears them away.
class Orphans {
public:
    void Add(pid_t id) {
        const std::lock_guard lock(m_Mutex);
        m_Ids.push_back(id);
    }
    void Clear() {
        const std::lock_guard lock(m_Mutex);
        std::erase_if(m_Ids, [](pid_t id) { return waitpid(id, nullptr, WNOHANG) != 0; });
    }

private:
    std::mutex m_Mutex;
    std::vector<pid_t> m_Ids;
};

Orphans& GetOrphans() {
    static Orphans s_Orphans;
    return s_Orphans;
}

// A group of its own, and the signals that it would have without this process: a host that ignores the one of broken
// pipes would pass that on.
class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&m_Value);
        sigset_t none;
        sigemptyset(&none);
        sigset_t pipes;
        sigemptyset(&pipes);
        sigaddset(&pipes, SIGPIPE);
        posix_spawnattr_setsigmask(&m_Value, &none);
        posix_spawnattr_setsigdefault(&m_Value, &pipes);
        posix_spawnattr_setpgroup(&m_Value, 0);
        posix_spawnattr_setflags(&m_Value, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_Value); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    const posix_spawnattr_t* Get() const { return &m_Value; }

private:
    posix_spawnattr_t m_Value{};
};

class Actions {
public:
    Actions() { posix_spawn_file_actions_init(&m_Value); }
    ~Actions() { posix_spawn_file_actions_destroy(&m_Value); }
    Actions(const Actions&) = delete;
    Actions& operator=(const Actions&) = delete;

    void SetStream(int stream, ChildProcess::Stream kind, int pipeEnd) {
        if (kind == ChildProcess::Stream::None)
            posix_spawn_file_actions_addopen(&m_Value, stream, "/dev/null",
                                             stream == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0);
        else if (kind == ChildProcess::Stream::Pipe)
            posix_spawn_file_actions_adddup2(&m_Value, pipeEnd, stream);
    }
    void SetFolder(const std::string& folder) {
        if (!folder.empty())
            posix_spawn_file_actions_addchdir_np(&m_Value, folder.c_str());
    }
    void CloseRest() { posix_spawn_file_actions_addclosefrom_np(&m_Value, STDERR_FILENO + 1); }
    const posix_spawn_file_actions_t* Get() const { return &m_Value; }

private:
    posix_spawn_file_actions_t m_Value{};
};

bool IsBareName(const std::string& program) { return program.find_first_of("/\\:") == std::string::npos; }

// The machine's form; false, with the reason, for a path that leads nowhere.
bool Translate(const std::string& path, std::string& native, std::string& error) {
    native = OSFile::ToNative(path);
    if (native.empty())
        error = path + ": " + OSFile::LastErrorText();
    return !native.empty();
}

// None given is none to translate. One that isn't there is told apart here, since the system's own answer would be the
// same as for a program that isn't there.
bool TranslateFolder(const std::string& path, std::string& native, std::string& error) {
    if (path.empty())
        return true;
    if ((OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY) == 0) {
        error = path + ": no such folder";
        return false;
    }
    return Translate(path, native, error);
}

// 0, or the number of what went wrong.
int Spawn(std::string& program, const std::vector<std::string>& arguments, const Actions& actions, pid_t& id) {
    // The interface wants pointers to what it doesn't change.
    std::vector<char*> words = {program.data()};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    const Attributes attributes;
    return posix_spawnp(&id, program.c_str(), actions.Get(), attributes.Get(), words.data(), environ);
}

int ExitCodeOf(const siginfo_t& info) {
    return info.si_code == CLD_EXITED ? info.si_status : s_SignalBase + info.si_status;
}

// Hands on what is there, up to an amount, so that the caller can look at its limits. False when the receiver has had
// enough.
bool Drain(ChildPipe& pipe, const ChildProcess::Receiver& receiver, bool& anything) {
    char piece[0x4000];
    for (int i = 0; i < s_PiecesAtOnce && pipe.IsOpen(); ++i) {
        const size_t size = pipe.Read(piece, sizeof piece);
        if (size == 0)
            return true;
        anything = true;
        if (receiver && !receiver({piece, size}))
            return false;
    }
    return true;
}

} // namespace

struct ChildProcess::Pipes {
    ChildPipe input;
    ChildPipe output;
    ChildPipe error;

    // For the streams that are to be pipes, with the child's ends in the other object. False with errno set.
    bool Make(const Settings& settings, Pipes& childEnds) {
        if ((settings.input == Stream::Pipe && !ChildPipe::Make(childEnds.input, input)) ||
            (settings.output == Stream::Pipe && !ChildPipe::Make(output, childEnds.output)) ||
            (settings.error == Stream::Pipe && !ChildPipe::Make(error, childEnds.error)))
            return false;
        for (ChildPipe* pEnd : {&input, &output, &error})
            pEnd->DontBlock();
        return true;
    }
    bool IsAnyOpen() const { return input.IsOpen() || output.IsOpen() || error.IsOpen(); }
    // Until something can be read or written, or the time is over.
    void Wait(milliseconds limit, bool wantsToWrite) const {
        std::array<pollfd, 3> ends = {
            {{output.Get(), POLLIN, 0}, {error.Get(), POLLIN, 0}, {wantsToWrite ? input.Get() : -1, POLLOUT, 0}}};
        poll(ends.data(), ends.size(), static_cast<int>(limit.count()));
    }
};

ChildProcess::ChildProcess() = default;

ChildProcess::~ChildProcess() { Release(); }

void ChildProcess::Release() {
    m_pPipes.reset();
    if (m_Id == 0)
        return;
    if (waitpid(m_Id, nullptr, WNOHANG) == 0)
        GetOrphans().Add(m_Id);
    m_Id = 0;
}

bool ChildProcess::Start(const Settings& settings) {
    Release();
    GetOrphans().Clear();
    m_ExitCode.reset();
    m_Error.clear();
    std::string program = settings.program;
    std::string folder;
    if ((!IsBareName(program) && !Translate(settings.program, program, m_Error)) ||
        !TranslateFolder(settings.workingFolder, folder, m_Error))
        return false;

    auto pPipes = std::make_unique<Pipes>();
    Pipes childEnds;
    if (!pPipes->Make(settings, childEnds)) {
        m_Error = std::generic_category().message(errno);
        return false;
    }
    Actions actions;
    actions.SetStream(STDIN_FILENO, settings.input, childEnds.input.Get());
    actions.SetStream(STDOUT_FILENO, settings.output, childEnds.output.Get());
    actions.SetStream(STDERR_FILENO, settings.error, childEnds.error.Get());
    actions.SetFolder(folder);
    actions.CloseRest();
    pid_t id = 0;
    if (const int error = Spawn(program, settings.arguments, actions, id); error != 0) {
        m_Error = settings.program + ": " + std::generic_category().message(error);
        return false;
    }
    m_Id = id;
    m_pPipes = std::move(pPipes);
    return true;
}

// Whether it has ended, or there is none.
bool ChildProcess::SeeEnd() {
    if (m_Id == 0 || m_ExitCode)
        return true;
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(m_Id), &info, WEXITED | WNOHANG | WNOWAIT) != 0) {
        // The host has children cleared away unseen: there is nothing more to learn about this one.
        m_ExitCode = s_UnknownExitCode;
        m_Id = 0;
        return true;
    }
    if (info.si_pid == 0)
        return false;
    m_ExitCode = ExitCodeOf(info);
    return true;
}

bool ChildProcess::IsRunning() { return !SeeEnd(); }

std::optional<int> ChildProcess::GetExitCode() {
    SeeEnd();
    return m_ExitCode;
}

bool ChildProcess::Wait(milliseconds limit) {
    const auto end = Clock::now() + limit;
    for (auto nap = s_FirstNap; !SeeEnd(); nap = std::min(nap * 2, s_LongestNap)) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now());
        if (left.count() <= 0)
            return false;
        std::this_thread::sleep_for(std::min(nap, left));
    }
    return true;
}

void ChildProcess::Kill() {
    if (m_Id == 0)
        return;
    kill(-m_Id, SIGKILL);
    Wait(s_KillLimit);
}

ChildProcess::Outcome ChildProcess::Exchange(std::string_view input, const Receiver& onOutput, const Receiver& onError,
                                             const Limits& limits) {
    if (!m_pPipes)
        m_pPipes = std::make_unique<Pipes>();
    Pipes& pipes = *m_pPipes;
    const auto end = Clock::now() + limits.total;
    auto silenceEnd = Clock::now() + limits.silence;
    for (;;) {
        // Asked ahead of reading: what a child wrote before it ended is then seen.
        const bool ended = SeeEnd();
        bool anything = false;
        if (pipes.input.IsOpen()) {
            const size_t size = pipes.input.Write(input);
            input.remove_prefix(size);
            anything = size > 0;
            if (input.empty())
                pipes.input.Close();
        }
        if (!Drain(pipes.output, onOutput, anything) || !Drain(pipes.error, onError, anything))
            return Outcome::Refused;
        if (ended && !anything)
            break;
        const auto now = Clock::now();
        if (anything)
            silenceEnd = now + limits.silence;
        if (now >= end)
            return Outcome::TooLong;
        if (now >= silenceEnd)
            return Outcome::Silent;
        const auto left = std::chrono::ceil<milliseconds>(std::min(end, silenceEnd) - now);
        if (anything)
            continue;
        if (pipes.IsAnyOpen())
            pipes.Wait(std::min(left, s_WaitSlice), !input.empty());
        else
            Wait(std::min(left, s_WaitSlice));
    }
    m_pPipes.reset();
    return Outcome::Ended;
}
