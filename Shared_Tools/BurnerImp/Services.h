#pragma once

#include "Shared/Cross/Pipeline/ToolsData.h"

#include <string>

// What model classes need in the burner: the pipeline configuration, the aliases, the device that draws nothing and the
// inventory. One at a time.
class BurnServices {
public:
    // Throws std::runtime_error with what is missing; nothing stays up then.
    explicit BurnServices(const std::string& pipelineFile);
    ~BurnServices();
    BurnServices(const BurnServices&) = delete;
    BurnServices& operator=(const BurnServices&) = delete;

private:
    void Start(const std::string& pipelineFile);
    void Stop();

    ToolsData m_ToolsData;
};
