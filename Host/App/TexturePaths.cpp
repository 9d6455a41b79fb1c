#include "Host/App/TexturePaths.h"

#include "Host/Scene/Scene.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"

#include <unordered_set>

namespace {

class Collector {
public:
    // With the materials inside of it, however deep.
    void AddMaterial(const Mtl* pMaterial) {
        std::vector<const Mtl*> ahead = {pMaterial};
        while (!ahead.empty()) {
            const Mtl* pNext = ahead.back();
            ahead.pop_back();
            if (!pNext || !m_Materials.insert(pNext).second)
                continue;
            for (int i = pNext->NumSubMtls(); i-- > 0;)
                ahead.push_back(pNext->GetSubMtl(i));
            if (pNext->ClassID() == DMTL_CLASS_ID)
                AddMaps(static_cast<const StdMat&>(*pNext));
        }
    }

    std::vector<std::string> TakePaths() { return std::move(m_Paths); }

private:
    void AddMaps(const StdMat& material) {
        for (int slot = 0; slot < NTEXMAPS; ++slot)
            if (material.MapEnabled(slot))
                AddMap(material.GetSubTexmap(slot));
    }

    void AddMap(const Texmap* pMap) {
        if (!pMap || pMap->ClassID() != BMTEX_CLASS_ID)
            return;
        const char* pPath = static_cast<const BitmapTex*>(pMap)->GetMapName();
        if (m_Known.insert(pPath).second)
            m_Paths.emplace_back(pPath);
    }

    std::unordered_set<const Mtl*> m_Materials; // this and the next are only ever looked up
    std::unordered_set<std::string> m_Known;
    std::vector<std::string> m_Paths;
};

} // namespace

std::vector<std::string> FindTexturePaths(const scene::Scene& scene) {
    Collector collector;
    for (const std::unique_ptr<scene::Node>& pNode : scene.GetNodes())
        collector.AddMaterial(pNode->GetMtl());
    return collector.TakePaths();
}
