#include "Shared/Cross/RenderAnim/Texture.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/RenderAnim/TextureTypeInfo.h"

Inv::ResourceTypeInfo& Texture::GetTypeInfo() {
    static TextureTypeInfo s_typeInfo;
    return s_typeInfo;
}

void TextureTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName,
                             const char* pFrameName, uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}
