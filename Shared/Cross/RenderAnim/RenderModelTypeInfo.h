#pragma once

#include <memory>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

class RenderModel;

// Models are loaded by name in the form that the tools load switch says.
class RenderModelTypeInfo : public Inv::ResourceTypeInfo {
public:
    // Null, with a line in the log, when the file can't be read.
    using Loader = std::unique_ptr<RenderModel> (*)(const char* pName);

    // The model that stands in for missing ones.
    static constexpr const char* MissingModel = "art/ebps/missingmodel";

    const char* GetTypeName() const override { return "Render Model"; }
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char* pName) override;
    // With the word "nomodels" every model is the one that stands in for missing ones, where there is such a one.
    std::unique_ptr<Inv::NamedResource> Load(const char* pName) override;
    void Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource& resource, const char* pName, const char* pFrameName,
                uint32_t refCount) const override;

    // File layouts lie above the model; the program that links one hands in its loader. Without one, loads give null.
    static void SetGenericLoader(Loader pLoader);
    static void SetFinalLoader(Loader pLoader);
};

namespace ra {

// Another model as a resource, looked for from the root, whatever frame is current. Empty when there is none.
RenderModelRef XRefLoad(const char* xrefFilename);

} // namespace ra
