#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

class BurnerConfig;
class ConfigLoad;
class RevControlAPI;

// Burns files: starts the burner program, hands it a job over the pipe and brings back what it says. One job at a time
// in a process; all calls are made on one thread. Nothing throws: what fails is false, with an error in the messages.
// A pipeline configuration (Pipeline) is up while a job is started.
//
// The changelist is the one in which outputs are opened, 0 for none. A file's argument is a file, a folder, or a path
// whose last component has * and ?.
class Burner {
public:
    // One instance a process. `pBurnerPath` is the folder of "BurnerImp.exe", in the system's form.
    static bool Init(const char* pBurnerPath);
    static void Shutdown();    // does nothing without one
    static Burner* Instance(); // null before Init

    // An instance of one's own, for a caller that burns besides.
    explicit Burner(const char* pBurnerPath);
    ~Burner();
    Burner(const Burner&) = delete;
    Burner& operator=(const Burner&) = delete;

    // What is burned of a file, from its scripts and back; see ConfigLoad, of which this holds one.
    bool LoadConfig(const char* pFilename, BurnerConfig& config, BurnerMessageList& messages);
    bool SaveConfig(RevControlAPI& revControl, int32_t changelist, const char* pFilename, BurnerConfig& config);

    // Each of these sees the job to its end. True when the burner answered with a result, which is not 0 when all was
    // burned or up to date. The flags are the burner's: burn what is up to date too; go into sub-directories; only say
    // what would be done; open outputs under revision control. Burn sends the third as false and the fourth as true.
    bool Burn(int32_t changelist, const char* pFile, bool flag0, bool flag1, int32_t& result,
              BurnerMessageList& messages);
    // Without splitting: a folder, and a regular expression of file names in it.
    bool BurnDirect(int32_t changelist, const char* pDirectory, const char* pPattern, bool flag0, bool flag1,
                    bool flag2, bool flag3, int32_t& result, BurnerMessageList& messages);
    // The option is kept and not sent.
    bool BurnFileList(int32_t changelist, std::span<const std::string> files, int32_t& result,
                      BurnerMessageList& messages, bool option);
    bool BurnUpdateFileList(int32_t changelist, std::span<const std::string> files, int32_t& result,
                            BurnerMessageList& messages);

    // These start a job and come back; Update sees it through.
    bool BurnAsync(int32_t changelist, const char* pFile, bool flag0, bool flag1, bool flag2, bool flag3,
                   BurnerMessageList& messages);
    bool BurnAsyncDirect(int32_t changelist, const char* pDirectory, const char* pPattern, bool flag0, bool flag1,
                         bool flag2, bool flag3, BurnerMessageList& messages);
    // One step of the job that goes on: takes one message, or pauses 50 ms when there is none. False when the job has
    // failed, which is then over; `done` when it has ended with `result`.
    bool Update(bool& done, int32_t& result, BurnerMessageList& messages);

private:
    std::string m_BurnerPath;
    std::unique_ptr<ConfigLoad> m_pConfigLoad;

    static std::unique_ptr<Burner> s_pBurner;
};
