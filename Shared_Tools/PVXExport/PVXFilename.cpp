#include "Shared_Tools/PVXExport/PVXFilename.h"

#include <string_view>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Pipeline/Pipeline.h"

namespace {

// The pipeline's configuration for the length of one call.
class PipelineScope {
public:
    explicit PipelineScope(const char* pStartPath)
        : m_Initialised(Pipeline::Initialize(pStartPath) == Pipeline::Result_Ok) {}
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
bool MapFile(std::string& outFilename, const char* pSourceFilename, Pipeline::DataKind kind, const char* pPrefix,
             const char* pStartPath) {
    outFilename.clear();
    dbAssertText(pSourceFilename, "sourceFilename");
    if (!pSourceFilename)
        return false;
    const PipelineScope scope(pStartPath);
    const Pipeline* pPipeline = scope.Get();
    const char* pProject = pPipeline ? pPipeline->FindProjectForFile(pSourceFilename, Pipeline::Kind_Source) : nullptr;
    if (!pProject)
        return false;
    const char* pSourceFolder = pPipeline->GetFolder(pProject, Pipeline::Kind_Source);
    const char* pFolder = pPipeline->GetFolder(pProject, kind);
    if (!pSourceFolder || !pFolder)
        return false;
    // The search has shown that the full name starts with the folder, whatever its spelling.
    const std::string name = Pipeline::GetFullPath(pSourceFilename);
    outFilename.append(pPrefix ? pPrefix : pFolder).append(name, std::string_view(pSourceFolder).size());
    return true;
}

} // namespace

namespace PVXFilename {

bool MapToKind(std::string& outFilename, const char* pSourceFilename, uint32_t kind, const char* pStartPath) {
    return MapFile(outFilename, pSourceFilename, static_cast<Pipeline::DataKind>(kind), nullptr, pStartPath);
}

bool MapToData(std::string& outFilename, const char* pSourceFilename) {
    return MapFile(outFilename, pSourceFilename, Pipeline::Kind_Final, "DATA:", nullptr);
}

} // namespace PVXFilename
