#include "Shared_Tools/Burner/BurnerProcess.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Win32Util/ProgramFile.h"

#include <chrono>
#include <thread>

namespace {

using std::chrono::milliseconds;

constexpr const char* s_Module = "BurnerImp.exe";
constexpr const char* s_CopyStem = "Burner_";
constexpr const char* s_CopyExtension = ".exe";
constexpr milliseconds s_StartWait{500};
constexpr milliseconds s_StopWait{2000};
constexpr int s_DeleteTries = 10;
constexpr milliseconds s_DeletePause{100};

// How a wait for a process ends.
enum WaitResult : uint32_t { Wait_Ended = 0, Wait_Abandoned = 0x80, Wait_TimedOut = 0x102 };

// True once the user has chosen the module beside the host.
bool s_LocalBurn = false;
BurnerProcess::LocalQuestion s_pLocalQuestion = nullptr;

bool Exists(const std::string& path) { return OSFile::FileAttr(path.c_str()) != 0; }
bool IsFile(const std::string& path) { return (OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_FILE) != 0; }

// The system ends its texts with a line of their own.
std::string GetSystemText() {
    std::string text = OSFile::LastErrorText();
    if (text.size() > 2 && text[text.size() - 2] == '\r')
        text.resize(text.size() - 2);
    return text;
}

// Under the first free name, which it leaves in `to`. Several hosts in one folder look for one at the same time;
// whoever is late takes the next.
bool CopyUnderFreeName(const std::string& from, const std::string& folder, std::string& to) {
    for (uint32_t n = 0;; ++n) {
        to = folder + s_CopyStem + std::to_string(n) + s_CopyExtension;
        if (Exists(to))
            continue;
        const ProgramCopy copy = CopyProgram(from.c_str(), to.c_str());
        if (copy != ProgramCopy::NameTaken)
            return copy == ProgramCopy::Made;
    }
}

WaitResult WaitFor(ChildProcess& process, milliseconds limit) {
    return process.Wait(limit) ? Wait_Ended : Wait_TimedOut;
}

} // namespace

void BurnerProcess::SetLocalQuestion(LocalQuestion pQuestion) { s_pLocalQuestion = pQuestion; }

bool BurnerProcess::Start(const std::string& burnerPath) {
    m_ErrorText.clear();
    std::string hostFolder;
    if (!FindHostFolder(hostFolder) || !ChooseModule(burnerPath, hostFolder) || !Spawn(hostFolder))
        return false;
    return s_LocalBurn || WaitFor(m_Process, s_StartWait) != Wait_Ended;
}

bool BurnerProcess::FindHostFolder(std::string& folder) {
    folder = OSFile::FromNative(Process::GetExecutableFolder());
    if (!folder.empty())
        return true;
    m_ErrorText = GetSystemText();
    return false;
}

bool BurnerProcess::ChooseModule(const std::string& burnerPath, const std::string& hostFolder) {
    const std::string local = hostFolder + s_Module;
    if (Process::IsDebuggerAttached() && IsFile(local) && s_pLocalQuestion &&
        s_pLocalQuestion("Local Burn?", "Would you like to use the local BurnerImp.exe?")) {
        m_modulePath = local;
        s_LocalBurn = true;
    }
    if (!m_modulePath.empty())
        return true;
    const std::string source = (burnerPath + "\\" + s_Module).substr(0, FilePath::MAXPATH - 1);
    if (!Exists(source)) {
        m_ErrorText = std::string("Failed to locate the burner module: '") + s_Module + "'.";
        return false;
    }
    return CopyModule(source, hostFolder);
}

bool BurnerProcess::CopyModule(const std::string& source, const std::string& hostFolder) {
    m_Copied = CopyUnderFreeName(source, hostFolder, m_modulePath);
    if (!m_Copied) {
        m_ErrorText =
            "Failed to copy network file to local drive: src '" + source + "' -> dest '" + m_modulePath + "'.";
        m_modulePath.clear();
        return false;
    }
    OSFile::SetWritable(m_modulePath.c_str(), true);
    return true;
}

bool BurnerProcess::Spawn(const std::string& hostFolder) {
    dbAssertText(IsFile(m_modulePath), "( OSFile::FileAttr( m_modulePath.c_str() ) & OSFile::F_ATTRIBUTE_FILE ) != 0");
    ChildProcess::Settings settings;
    settings.program = m_modulePath;
    settings.workingFolder = hostFolder;
    settings.input = ChildProcess::Stream::None; // the terminal's keys are the host's
    if (s_LocalBurn)
        settings.arguments = {"-notrap", "-debug"};
    m_Started = m_Process.Start(settings);
    if (!m_Started)
        m_ErrorText = "Failed to spawn the Burner process";
    return m_Started;
}

void BurnerProcess::Stop() {
    if (m_Started) {
        // A process that only takes its time is left alone. It learns from its pipe that nobody listens any more.
        if (WaitFor(m_Process, s_StopWait) == Wait_Abandoned)
            m_Process.Kill();
        m_Started = false;
    }
    if (m_Copied)
        DeleteCopy();
    m_Copied = false;
    m_modulePath.clear();
}

void BurnerProcess::DeleteCopy() {
    for (int i = 0; i < s_DeleteTries && Exists(m_modulePath) && !OSFile::Delete(m_modulePath.c_str()); ++i)
        std::this_thread::sleep_for(s_DeletePause);
}

bool BurnerProcess::IsRunning() {
    if (!m_Started)
        return false;
    if (m_Process.IsRunning())
        return true;
    Stop();
    return false;
}
