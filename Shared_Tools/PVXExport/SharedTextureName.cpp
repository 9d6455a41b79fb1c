#include "Shared_Tools/PVXExport/SharedTextureName.h"

#include <algorithm>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Util/Hash.h"

namespace {

constexpr const char* s_ShareMark = "texture_share";

} // namespace

namespace OmbrelSharedShader {

bool IsSharedTextureName(const char* pName) {
    dbAssertText(pName, "name");
    std::string name = pName ? pName : "";
    std::ranges::transform(name, name.begin(), ToLower);
    return name.find(s_ShareMark) != std::string::npos;
}

} // namespace OmbrelSharedShader
