#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"

#include <string>

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Files/TextureFile.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureTypeInfo.h"

namespace ra {

namespace {

bool IsFile(const std::string& path) { return FilePath::GetType(path.c_str()) == FilePath::Type_File; }

// The chunk file of a texture's name; a name with an alias is a file's already.
std::string FindTextureFile(const char* pName, const char* pAlias) {
    if (FilePathUtil::HasAlias(pName))
        return pName;
    const std::string path = std::string(pAlias) + ":" + pName + ".rtx";
    return IsFile(path) ? path : std::string();
}

// Where there is no chunk file, the picture of that name does.
std::unique_ptr<Texture> LoadTextureGeneric(const char* pName) {
    std::string path = FindTextureFile(pName, "GENERIC");
    if (path.empty())
        path = FindTextureFile(pName, "DATA");
    return TextureLoadGeneric(path.empty() ? pName : path.c_str());
}

std::unique_ptr<Texture> LoadTextureFinal(const char* pName) {
    const std::string path = FindTextureFile(pName, "DATA");
    return TextureLoadFinal(path.empty() ? pName : path.c_str());
}

} // namespace

void InstallResourceLoaders() {
    TextureTypeInfo::SetLoaders(LoadTextureGeneric, LoadTextureFinal);
    ShaderTypeInfo::SetLoaders(LoadSharedShaderGeneric, LoadSharedShaderFinal);
}

} // namespace ra
