#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

// Most shaders bear a material's name, in which points, colons and slashes are letters like others. Only the name of a
// shader file is translated as a path.
class ShaderTypeInfo : public Inv::ResourceTypeInfo {
public:
    // Null when there is no such file; a damaged one throws.
    using Loader = std::unique_ptr<Shader> (*)(const char* pName);

    const char* GetTypeName() const override { return "Shader"; }
    void TranslateName(std::string& outName, const char* pName) const override;
    // The shader that stands in for missing ones; where that is missing too, one in the colour of what is missing.
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char* pName) override;
    std::unique_ptr<Inv::NamedResource> Load(const char* pName) override;
    void Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource& resource, const char* pName, const char* pFrameName,
                uint32_t refCount) const override;

    // Of shader files. See ra::ResourceLoaders.
    static void SetLoaders(Loader pGeneric, Loader pFinal);
};

// What stands in for a shader that a mesh names and nobody has. One for all, in the inventory.
ShaderRef GetDefaultShader();
