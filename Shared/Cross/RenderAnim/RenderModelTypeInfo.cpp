#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"

#include <utility>

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Debug/RunOptions.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace {

constinit ra::ResourceLoaders<RenderModel> s_modelLoaders;
constinit bool s_loadingDefault = false;

// The model that stands in for missing ones may lack something itself; nothing stands in for that.
class DefaultLoad {
public:
    DefaultLoad() : m_Nested(std::exchange(s_loadingDefault, true)) {}
    ~DefaultLoad() { s_loadingDefault = m_Nested; }
    DefaultLoad(const DefaultLoad&) = delete;
    DefaultLoad& operator=(const DefaultLoad&) = delete;

    std::unique_ptr<RenderModel> Load() const {
        return m_Nested ? nullptr : s_modelLoaders.Load(RenderModelTypeInfo::MissingModel);
    }

private:
    bool m_Nested;
};

} // namespace

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::CreateDefault(const char*) { return DefaultLoad().Load(); }

std::unique_ptr<Inv::NamedResource> RenderModelTypeInfo::Load(const char* pName) {
    if (RunOptions::IsSet("nomodels"))
        if (std::unique_ptr<RenderModel> pMissing = DefaultLoad().Load())
            return pMissing;
    return s_modelLoaders.Load(pName);
}

void RenderModelTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName,
                                 const char* pFrameName, uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}

void RenderModelTypeInfo::SetGenericLoader(Loader pLoader) { s_modelLoaders.pGeneric = pLoader; }

void RenderModelTypeInfo::SetFinalLoader(Loader pLoader) { s_modelLoaders.pFinal = pLoader; }

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
