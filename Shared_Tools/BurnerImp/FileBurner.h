#pragma once

#include "Shared_Tools/Burner/Config/BurnerConfig.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"
#include "Shared_Tools/BurnerImp/BurnJob.h"
#include "Shared_Tools/BurnerImp/BurnOutput.h"
#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include <cstddef>
#include <string>

class BurnReport;

// Files of a job by how they ended.
struct BurnCounts {
    size_t burned = 0; // one target at least, and none failed
    size_t upToDate = 0;
    size_t failed = 0;
    size_t unmatched = 0;
};

// Burns files by their configuration. The pipeline, the device and the inventory are up.
class FileBurner {
public:
    FileBurner(const BurnOptions& options, size_t fileCount, BurnReport& report);

    // Everything about the file goes to the report.
    void Burn(const std::string& file);
    const BurnCounts& GetCounts() const { return m_Counts; }

private:
    enum class Outcome { UpToDate, Burned, Failed };
    struct Target {
        const BurnPlugin* pPlugin = nullptr;
        BurnParams params;
        std::string name;
        std::string destination;
    };

    Outcome BurnMatching(const std::string& file, bool& matched);
    bool LoadConfig(const std::string& file, BurnerConfig& config, int64_t& scriptTime);
    Outcome BurnTargets(const BurnSource& source, const BurnerConfig& config, int64_t scriptTime, bool& matched);
    Outcome BurnTarget(const BurnSource& source, const BurnerConfig& config, BurnerConfig::TargetID id,
                       int64_t scriptTime);
    bool ReadTarget(const BurnSource& source, const BurnerConfig& config, BurnerConfig::TargetID id, Target& target);
    bool ReadParams(const BurnSource& source, const BurnerConfig& config, BurnerConfig::TargetID id, Target& target);
    bool ReadParam(const BurnSource& source, const BurnerConfig::Param& param, Target& target);
    void Write(const BurnSource& source, const Target& target, const std::vector<std::string>& outputs);
    void Say(const BurnSource& source, const Target& target, const std::string& text);

    const BurnOptions m_Options;
    const std::string m_FileCount;
    size_t m_FileNumber = 0;
    BurnReport& m_Report;
    ConfigLoad m_ConfigLoad;
    OutputControl m_Control;
    BurnCounts m_Counts;
};
