#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace {

constexpr char s_MissingModel[] = "art/ebps/missingmodel";

struct LoadSwitch {
    bool generic = false;
    RenderModelTypeInfo::Loader pGenericLoader = nullptr;
    RenderModelTypeInfo::Loader pFinalLoader = nullptr;
};
constinit LoadSwitch s_loadSwitch;

} // namespace

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::CreateDefault(const char*) { return Load(s_MissingModel); }

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::Load(const char* pName) {
    const Loader pLoader = s_loadSwitch.generic ? s_loadSwitch.pGenericLoader : s_loadSwitch.pFinalLoader;
    return pLoader ? pLoader(pName) : nullptr;
}

void RenderModelTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName,
                                 const char* pFrameName, uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}

void RenderModelTypeInfo::SetGenericLoader(Loader pLoader) { s_loadSwitch.pGenericLoader = pLoader; }

void RenderModelTypeInfo::SetFinalLoader(Loader pLoader) { s_loadSwitch.pFinalLoader = pLoader; }

namespace ra {

void SetGenericLoad(bool on) { s_loadSwitch.generic = on; }

bool IsGenericLoad() { return s_loadSwitch.generic; }

RenderModelRef XRefLoad(const char* xrefFilename) {
    dbAssert(xrefFilename);
    if (!xrefFilename)
        return {};
    const Inv::RootFrameScope root;
    RenderModelRef model;
    model.Get(xrefFilename);
    return model;
}

} // namespace ra
