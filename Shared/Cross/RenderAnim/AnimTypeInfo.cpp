#include "Shared/Cross/RenderAnim/AnimTypeInfo.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"

void AnimTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName, const char* pFrameName,
                          uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}
