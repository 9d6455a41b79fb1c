#pragma once

#include "Shared/Cross/Pipeline/Pipeline.h"

#include <string>

// The pipeline configuration that a file belongs to, up as long as this lives; for what a command has to know ahead of
// the module, which brings it up for itself.
class PipelineScope {
public:
    // Throws a HostError with status 2 and the reason when there is none that can be used.
    explicit PipelineScope(const std::string& nativeFile);
    ~PipelineScope() { Pipeline::Shutdown(); }
    PipelineScope(const PipelineScope&) = delete;
    PipelineScope& operator=(const PipelineScope&) = delete;

    // The same for a file that lies in no project's folder of that kind. `advice` is what to do then.
    static void RequireInProject(const std::string& nativeFile, Pipeline::DataKind kind, const char* pAdvice);
};
