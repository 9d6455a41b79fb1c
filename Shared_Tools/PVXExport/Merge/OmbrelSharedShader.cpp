#include "Shared_Tools/PVXExport/Merge/OmbrelSharedShader.h"

#include <string>
#include <unordered_set>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared_Tools/PVXExport/Merge/OmbrelTeamPattern.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"

namespace {

// Of a shared shader a writer stores nothing but the name; where the shader itself is wanted it must not be one.
class UnsharedScope {
public:
    explicit UnsharedScope(Shader& shader) : m_Shader(shader) { m_Shader.SetShared(false); }
    ~UnsharedScope() { m_Shader.SetShared(true); }
    UnsharedScope(const UnsharedScope&) = delete;
    UnsharedScope& operator=(const UnsharedScope&) = delete;

private:
    Shader& m_Shader;
};

} // namespace

namespace OmbrelSharedShader {

void MarkSharedTextures(RenderModel& model) {
    const ra::MeshGroup& meshes = *model.GetMeshGroup();
    for (uint32_t i = 0; i < meshes.GetShaderCount(); ++i) {
        const ShaderRef& shader = meshes.GetShader(i);
        shader->SetShared(IsSharedTextureName(shader->GetName()));
    }
}

bool ExportSharedTextures(const char* pMergedPath, const RenderModel& model) {
    std::string alias;
    std::string path;
    FilePathUtil::SplitAlias(pMergedPath, alias, path);
    path = Pipeline::GetFullPath(path.c_str());
    const char* const projectName = Pipeline::Get()->FindProjectForFile(path.c_str(), Pipeline::Kind_Generic);
    dbAssert(projectName);
    if (!projectName)
        return false;
    const ra::MeshGroup& meshes = *model.GetMeshGroup();
    std::unordered_set<const Inv::Resource*> done;
    for (uint32_t i = 0; i < meshes.GetShaderCount(); ++i) {
        const ShaderRef& shader = meshes.GetShader(i);
        if (!done.insert(shader.GetResource()).second || !shader->IsShared())
            continue;
        if (!OmbrelTeamPattern::ExportTeamPattern(projectName, shader->GetName()) ||
            !ExportSharedTexture(projectName, shader.GetData()))
            return false;
    }
    return true;
}

bool ExportSharedTexture(const char* pProject, Shader* pShader) {
    dbAssertText(pProject, "projectName");
    dbAssert(pShader);
    const char* const genericPath = pProject ? Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Generic) : nullptr;
    dbAssert(genericPath);
    if (!genericPath || !pShader)
        return false;
    const std::string file = std::string(genericPath) + "\\" + pShader->GetName() + ".qsh";
    MergeBurnWrite(file, "shared texture", [&](const char* pPath) {
        const UnsharedScope unshared(*pShader);
        ra::SaveSharedShader(pPath, *pShader);
    });
    return true;
}

} // namespace OmbrelSharedShader
