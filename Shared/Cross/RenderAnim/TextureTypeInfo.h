#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/Assist/Inventory.h"

class Texture;

// Most textures come with the models that hold them. Their names are data paths without alias and extension: points
// in them belong to the name, and separators stay as they are. A name with an alias is a file's and translated as such.
class TextureTypeInfo : public Inv::ResourceTypeInfo {
public:
    // Null when there is no such file; a damaged one throws.
    using Loader = std::unique_ptr<Texture> (*)(const char* pName);

    const char* GetTypeName() const override { return "Texture"; }
    void TranslateName(std::string& outName, const char* pName) const override;
    // The texture that stands in for missing ones; where that is missing too, one pixel in a colour that nobody
    // overlooks.
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char* pName) override;
    std::unique_ptr<Inv::NamedResource> Load(const char* pName) override;
    void Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource& resource, const char* pName, const char* pFrameName,
                uint32_t refCount) const override;

    // See ra::ResourceLoaders.
    static void SetLoaders(Loader pGeneric, Loader pFinal);
};
