#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/Assist/Inventory.h"

// Animations come with their models and are never loaded by themselves. Their names are no paths, so that slashes and
// points in them stay.
class AnimTypeInfo : public Inv::ResourceTypeInfo {
public:
    const char* GetTypeName() const override { return "Anim"; }
    void TranslateName(std::string& outName, const char* pName) const override;
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char*) override { return nullptr; }
    std::unique_ptr<Inv::NamedResource> Load(const char*) override { return nullptr; }
    void Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource& resource, const char* pName, const char* pFrameName,
                uint32_t refCount) const override;
};
