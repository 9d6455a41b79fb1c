#include "Shared_Tools/PVXExport/TextureLoad.h"

#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Files/TextureFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

// All textures without a name are one to the inventory, which knows textures by nothing else.
TextureRef Enter(std::unique_ptr<Texture> pTexture, const std::string& shortName) {
    TextureRef texture;
    if (shortName.empty() && texture.Find(""))
        return texture;
    pTexture->SetName(shortName.c_str());
    pTexture->NameImages();
    texture.Set(std::move(pTexture));
    return texture;
}

TextureRef LoadPicture(const char* pPath, const std::string& shortName) {
    std::unique_ptr<Texture> pTexture = ra::TextureLoadGeneric((std::string("Tool:") + pPath).c_str());
    if (!pTexture)
        return {};
    if (shortName.empty())
        dbWarningf("TEXTURES -- '%s': lies in no project's source folder, so the model has no name for it", pPath);
    return Enter(std::move(pTexture), shortName);
}

} // namespace

namespace TextureLoad {

TextureRef Load(ExportScene& scene, const char* pPath, bool warn) {
    // Asking the pipeline for a name costs more than looking at this.
    const auto known = scene.m_TextureOfFile.find(pPath);
    if (known != scene.m_TextureOfFile.end())
        return known->second;
    std::string shortName;
    if (!PVXUtil::TextureShortName(shortName, pPath)) {
        if (warn)
            PVXErrors::Get().Warning(
                "Unable to load texture '%s' - please ensure it is in the model 'Textures' folder!", pPath);
        return {};
    }
    TextureRef texture;
    // That one picture without a name is there says nothing of another.
    if (shortName.empty() || !texture.Find(shortName.c_str()))
        texture = LoadPicture(pPath, shortName);
    if (texture)
        scene.m_TextureOfFile.emplace(pPath, texture);
    else if (warn)
        PVXErrors::Get().Warning("Unable to load texture '%s'!", pPath);
    return texture;
}

} // namespace TextureLoad
