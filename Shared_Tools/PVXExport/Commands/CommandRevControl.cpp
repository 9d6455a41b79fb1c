#include "Shared_Tools/PVXExport/Commands/CommandRevControl.h"

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"

#include <stdexcept>

namespace CommandRevControl {

void Fail(const char* pText) { throw std::runtime_error(pText); }

std::unique_ptr<RevControlAPI> Start(const char* pNoPortText) {
    char port[256] = {};
    if (!Pipeline::Get()->GetString("p4", "RevControlPort", port, sizeof port))
        Fail(pNoPortText);
    return RevControlAPI::Create(port, RevControlAPI::Type_P4OrLocal);
}

int32_t GetChangelist(RevControlAPI* pRevControl, const char* pFailText) {
    int32_t changelist = 0;
    if (!pRevControl || !pRevControl->FindOrCreateChangelist(s_ToolsChangelist, changelist))
        Fail(pFailText);
    return changelist;
}

} // namespace CommandRevControl
