#pragma once

#include "Shared_Tools/Burner/Config/BurnerConfig.h"
#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class RevControlAPI;

// The name of a folder's script. A file's own is the file's whole name and ".burn".
inline constexpr char k_DefaultBurnFilename[] = "_default.burn";

// The burn configuration of files, from their scripts and back. What a file gets is told by a chain of scripts: that of
// the file itself, those of its folder and of the folders above it, up to the project's generic folder. The outermost
// one is the base, which names the targets; every other one changes parameters, and the nearest wins.
//
// File names are full names in the system's form. Pipeline is up. Nothing throws: what failed is false, with a message.
// A configuration that couldn't be loaded may be filled in part and is of no use.
class ConfigLoad {
public:
    // Of a file or a folder in a generic tree. The reasons of a failure, with the scripts' own, are appended to
    // `messages` as warnings. Bases are parsed once: a base that changes is seen by the next ConfigLoad.
    bool LoadConfig(const char* pFilename, BurnerConfig& config, BurnerMessageList& messages);
    // Writes the file's own script with all that differs from the level above, or takes the script away when nothing
    // does; first opened in that changelist, for editing, adding or deleting. `config` has its inherited flags put
    // right. The reason of a failure is in the log.
    bool SaveConfig(RevControlAPI& revControl, int32_t changelist, const char* pFilename, BurnerConfig& config);

    // When the chain's newest script was written, in the unit of OSFile::GetWriteTime. The reason of a failure is in
    // the log.
    static bool GetConfigTimestamp(const char* pFilename, int64_t& time);
    // The script of a file or a folder, whether it exists or not. False when `pFilename` is neither. The buffer has to
    // hold the name and k_DefaultBurnFilename; false, too, when it has no room for the backslash between them.
    static bool GetBurnFilename(const char* pFilename, char* pOut, size_t bufferSize);

    // One script by itself: in place of what `config` holds, or onto it. What they have to say is in the log and, if
    // asked for, appended to messages as warnings; not all of it is a failure.
    static bool ParseBaseConfig(const char* pPath, BurnerConfig& config, BurnerMessageList* pMessages = nullptr);
    static bool ParseOverrideConfig(const char* pPath, BurnerConfig& config, BurnerMessageList* pMessages = nullptr);

private:
    bool FoldScripts(const std::string& genericPath, const std::vector<std::string>& scripts, BurnerConfig& config,
                     BurnerMessageList& messages);
    bool ValidateAgainstParent(const char* pFilename, BurnerConfig& config);

    std::map<std::string, BurnerConfig> m_Bases; // by the project's generic folder
};
