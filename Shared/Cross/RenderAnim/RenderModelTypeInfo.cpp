#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace {

constexpr char s_MissingModel[] = "art/ebps/missingmodel";

constinit ra::ResourceLoaders<RenderModel> s_loaders;

} // namespace

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::CreateDefault(const char*) { return Load(s_MissingModel); }

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::Load(const char* pName) { return s_loaders.Load(pName); }

void RenderModelTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName,
                                 const char* pFrameName, uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}

void RenderModelTypeInfo::SetGenericLoader(Loader pLoader) { s_loaders.pGeneric = pLoader; }

void RenderModelTypeInfo::SetFinalLoader(Loader pLoader) { s_loaders.pFinal = pLoader; }

namespace ra {

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
