#include "Shared/Cross/RenderAnim/MeshTypeInfo.h"

#include <algorithm>

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Util/Hash.h"

void MeshTypeInfo::TranslateName(std::string& outName, const char* pName) const {
    outName = pName;
    std::ranges::transform(outName, outName.begin(), ToLower);
}

void MeshTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName, const char* pFrameName,
                          uint32_t refCount) const {
    sink.Add({.type = Inv::DebugToolDumpInfo::ItemType::Mesh,
              .typeName = GetTypeName(),
              .name = pName,
              .frame = pFrameName,
              .refCount = refCount});
}
