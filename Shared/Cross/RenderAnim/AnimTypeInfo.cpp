#include "Shared/Cross/RenderAnim/AnimTypeInfo.h"

#include <algorithm>

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Util/Hash.h"

void AnimTypeInfo::TranslateName(std::string& outName, const char* pName) const {
    outName = pName;
    std::ranges::transform(outName, outName.begin(), ToLower);
}

void AnimTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName, const char* pFrameName,
                          uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}
