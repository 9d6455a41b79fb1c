#include "Shared_Tools/PVXExport/PVXFilename.h"

#include <algorithm>
#include <string_view>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Pipeline/Pipeline.h"

namespace {

// The pipeline's configuration for the length of one call.
class PipelineScope {
public:
    PipelineScope() : m_Initialised(Pipeline::Initialize(nullptr) == Pipeline::Result_Ok) {}
    ~PipelineScope() {
        if (m_Initialised)
            Pipeline::Shutdown();
    }
    PipelineScope(const PipelineScope&) = delete;
    PipelineScope& operator=(const PipelineScope&) = delete;

    const Pipeline* Get() const { return m_Initialised ? Pipeline::Get() : nullptr; }

private:
    bool m_Initialised;
};

// Puts the name's place below the source folder behind another prefix: that of the project's folder of the kind, or
// the given one.
bool MapFile(std::string& outFilename, const char* pSourceFilename, Pipeline::DataKind kind, const char* pPrefix) {
    outFilename.clear();
    dbAssertText(pSourceFilename, "sourceFilename");
    if (!pSourceFilename)
        return false;
    const PipelineScope scope;
    const Pipeline* pPipeline = scope.Get();
    const char* pProject = pPipeline ? pPipeline->FindProjectForFile(pSourceFilename, Pipeline::Kind_Source) : nullptr;
    if (!pProject)
        return false;
    const char* pSourceFolder = pPipeline->GetFolder(pProject, Pipeline::Kind_Source);
    const char* pFolder = pPipeline->GetFolder(pProject, kind);
    if (!pSourceFolder || !pFolder)
        return false;
    // The search has shown that the name starts with the folder, whatever its spelling.
    const std::string_view name = pSourceFilename;
    const std::string_view below = name.substr(std::min(std::string_view(pSourceFolder).size(), name.size()));
    outFilename.append(pPrefix ? pPrefix : pFolder).append(below);
    return true;
}

} // namespace

namespace PVXFilename {

bool MapToKind(std::string& outFilename, const char* pSourceFilename, uint32_t kind) {
    return MapFile(outFilename, pSourceFilename, static_cast<Pipeline::DataKind>(kind), nullptr);
}

bool MapToData(std::string& outFilename, const char* pSourceFilename) {
    return MapFile(outFilename, pSourceFilename, Pipeline::Kind_Final, "DATA:");
}

} // namespace PVXFilename
