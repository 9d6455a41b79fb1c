#pragma once

#include "Shared/PC/Win32Util/ChildProcess.h"

#include <string>

// The burner program as a child of this process: a private copy of its module, beside the host's program, so that the
// one on the network isn't held while it runs.
class BurnerProcess {
public:
    BurnerProcess() = default;
    ~BurnerProcess() { Stop(); }
    BurnerProcess(const BurnerProcess&) = delete;
    BurnerProcess& operator=(const BurnerProcess&) = delete;

    // `burnerPath` is the folder of the module. False when it can't be started, with the error text, and when it ends
    // within its first 500 ms, without one.
    bool Start(const std::string& burnerPath);
    // Waits up to 2 s for its end, and lets one that goes on by then go on. Deletes the copy.
    void Stop();
    // Stops what has ended.
    bool IsRunning();

    const std::string& GetErrorText() const { return m_ErrorText; }
    const std::string& GetModulePath() const { return m_modulePath; } // empty before Start and after Stop

    // Asked, with a title and a question, when a debugger is attached and there is a module beside the host's program;
    // true has that one run in place of the network's, for this process's life. Without it nobody is asked.
    using LocalQuestion = bool (*)(const char* pTitle, const char* pText);
    static void SetLocalQuestion(LocalQuestion pQuestion);

private:
    bool FindHostFolder(std::string& folder);
    bool ChooseModule(const std::string& burnerPath, const std::string& hostFolder);
    bool CopyModule(const std::string& source, const std::string& hostFolder);
    bool Spawn(const std::string& hostFolder);
    void DeleteCopy();

    std::string m_ErrorText;
    bool m_Copied = false;
    std::string m_modulePath;
    bool m_Started = false;
    ChildProcess m_Process;
};
