#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/BurnerImp/BurnInfo.h"
#include "Shared_Tools/BurnerImp/BurnTextures.h"
#include "Shared_Tools/BurnerImp/MeshOptimise.h"

#include <set>
#include <stdexcept>

namespace {

constexpr uint32_t s_KnownParams =
    BurnParam_UseDXTC | BurnParam_MipMaps | BurnParam_LowDetail | BurnParam_VertexCache | BurnParam_BurnInfo;

// Each of the model's own meshes once, in the group's order.
std::vector<ra::Mesh*> GetOwnMeshes(const ra::MeshGroup& group) {
    std::vector<ra::Mesh*> meshes;
    std::set<const ra::Mesh*> known;
    for (uint32_t i = 0; i < group.GetMeshCount(); ++i) {
        ra::Mesh* pMesh = group.IsLocal(i) ? group.GetMesh(i).GetData() : nullptr;
        if (pMesh && known.insert(pMesh).second)
            meshes.push_back(pMesh);
    }
    return meshes;
}

void Prepare(const ra::MeshGroup& group, const BurnParams& params) {
    SetMipMaps(ra::CollectTextures(group), params.mipMaps);
    for (ra::Mesh* pMesh : GetOwnMeshes(group)) {
        MeshOptimise::AddLowLevel(*pMesh, params.lowDetail);
        for (uint32_t level = 0; params.vertexCache && level < ra::Mesh::Poly_Count; ++level)
            MeshOptimise::OrderForCaches(*pMesh, level);
    }
}

// The motion file lies beside the model, and so do what they become.
class ModelPlugin : public BurnPlugin {
public:
    const char* GetName() const override { return "model"; }
    const char* GetSourceExtension() const override { return ".pvx"; }
    std::vector<std::string> GetOutputExtensions(const BurnSource& source) const override {
        return HasMotionFile(source) ? std::vector<std::string>{".obm", ".obe"} : std::vector<std::string>{".obm"};
    }
    std::vector<std::string> GetSideFiles(const BurnSource& source) const override {
        return HasMotionFile(source) ? std::vector{GetMotionFile(source)} : std::vector<std::string>();
    }
    uint32_t GetKnownParams() const override { return s_KnownParams; }

    void Burn(const BurnSource& source, const BurnParams& params, std::span<ByteStream* const> outputs) const override {
        const bool withMotion = outputs.size() > 1;
        const std::unique_ptr<RenderModel> pModel = ra::LoadGeneric(source.alias.c_str(), withMotion);
        if (!pModel)
            throw std::runtime_error("the model makes no sense");
        if (const ra::MeshGroup* pGroup = pModel->GetMeshGroup())
            Prepare(*pGroup, params);
        Chunky model{ByteStreamAdapter(outputs[0])};
        if (params.burnInfo)
            WriteBurnInfo(model, source);
        if (!ra::SaveFinal(*pModel, model, params.useDXTC))
            throw std::runtime_error(ExplainUnconverted(ra::CollectTextures(*pModel->GetMeshGroup())));
        if (!withMotion)
            return;
        Chunky motion{ByteStreamAdapter(outputs[1])};
        if (params.burnInfo)
            WriteBurnInfo(motion, source);
        ra::SaveFinalMotion(*pModel, motion);
    }

private:
    static std::string GetMotionFile(const BurnSource& source) {
        std::string file = source.file;
        return FilePathUtil::SetExtension(file, ".ebp") ? file : std::string();
    }
    static bool HasMotionFile(const BurnSource& source) {
        return (OSFile::FileAttr(GetMotionFile(source).c_str()) & OSFile::F_ATTRIBUTE_FILE) != 0;
    }
};

} // namespace

const BurnPlugin& GetModelPlugin() {
    static const ModelPlugin s_Plugin;
    return s_Plugin;
}
