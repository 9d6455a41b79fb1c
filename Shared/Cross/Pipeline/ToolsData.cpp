#include "Shared/Cross/Pipeline/ToolsData.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/Pipeline/Pipeline.h"

namespace {

constexpr const char* s_Alias = "DATA";
constexpr const char* s_Id = "Tools Data";
constexpr int32_t s_Priority = 400;

} // namespace

bool ToolsData::Map() {
    const Pipeline* const pPipeline = Pipeline::Get();
    std::string folder;
    if (!pPipeline || !pPipeline->GetPath("Global", "ToolsData", folder)) {
        dbWarningf("PIPELINE -- 'ToolsData' not listed under [Global] in pipeline.ini");
        return false;
    }
    auto pSource =
        folder.size() < FilePath::MAXPATH ? FilePathHD::Create(folder.c_str(), ByteStream::Mode_Read) : nullptr;
    m_Mapped = pSource && FilePath::AddSource(s_Alias, s_Id, s_Priority, std::move(pSource));
    if (!m_Mapped)
        dbWarningf("PIPELINE -- Failed to map pipeline alias '%s', folder '%s'", s_Alias, folder.c_str());
    return m_Mapped;
}

void ToolsData::Unmap() {
    if (m_Mapped)
        FilePath::RemoveSource(s_Alias, s_Id);
    m_Mapped = false;
}
