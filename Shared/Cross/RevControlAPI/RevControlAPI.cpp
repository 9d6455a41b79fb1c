#include "Shared/Cross/RevControlAPI/RevControlAPI.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RevControlAPI/RevControlLocal.h"
#include "Shared/Cross/RevControlAPI/RevControlP4.h"

namespace {

constexpr const char* s_LocalPort = "local mode";

template <class Kind>
std::unique_ptr<RevControlAPI> Make(const char* pPort) {
    auto pControl = std::make_unique<Kind>();
    if (!pControl->Initialize(pPort))
        return nullptr;
    return pControl;
}

std::unique_ptr<RevControlAPI> MakeP4(const char* pPort) {
    auto pControl = Make<RevControlP4>(pPort);
    if (!pControl)
        dbPrintf("RevControlP4::Initialize failed\n.");
    return pControl;
}

std::unique_ptr<RevControlAPI> MakeLocal() {
    auto pControl = Make<RevControlLocal>(s_LocalPort);
    if (!pControl)
        dbPrintf("RevControlLocal::Initialize failed\n.");
    return pControl;
}

// Without a report: an artist without a server isn't to be bothered with it.
std::unique_ptr<RevControlAPI> MakeP4OrLocal(const char* pPort) {
    auto pControl = *pPort ? Make<RevControlP4>(pPort) : nullptr;
    return pControl ? std::move(pControl) : MakeLocal();
}

} // namespace

std::unique_ptr<RevControlAPI> RevControlAPI::Create(const char* pPort, int type) {
    const char* const pUsedPort = pPort ? pPort : "";
    switch (type) {
    case Type_P4:
        return MakeP4(pUsedPort);
    case Type_Local:
        return MakeLocal();
    case Type_P4OrLocal:
        return MakeP4OrLocal(pUsedPort);
    default:
        dbPrintf("Unknown RevisionControlType %i", type);
        dbBreak();
        return nullptr;
    }
}
