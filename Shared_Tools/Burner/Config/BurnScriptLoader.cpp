#include "Shared_Tools/Burner/Config/BurnScriptLoader.h"

#include "Shared/PC/Module/SharedModule.h"
#include "Shared_Tools/Burner/Config/ConfigReport.h"
#include "Shared_Tools/Burner/Config/Scripts/BurnScripts.h"

namespace {

// Null, with a report, when there is no such module.
template <class Function>
Function* Find(const char* pFunction, BurnerMessageList* pMessages) {
    static SharedModule s_Module;
    static const bool s_Loaded = s_Module.LoadOwn(s_BurnScriptModule);
    if (!s_Loaded)
        ConfigReport(pMessages).Fail("%s", s_Module.GetError().c_str());
    return reinterpret_cast<Function*>(s_Module.Find(pFunction));
}

} // namespace

bool BurnScripts::Read(ByteStream& stream, bool isBase, BurnerConfig& config, BurnerMessageList* pMessages) {
    auto* const pRead = Find<ReadBurnScriptFunction>(s_ReadBurnScript, pMessages);
    return pRead && pRead(stream, isBase, config, pMessages);
}

bool BurnScripts::Write(const BurnerConfig& config, ByteStream& stream) {
    auto* const pWrite = Find<WriteBurnScriptFunction>(s_WriteBurnScript, nullptr);
    return pWrite && pWrite(config, stream);
}

bool BurnScripts::CanWrite(const BurnerConfig& config) {
    auto* const pCanWrite = Find<CanWriteBurnScriptFunction>(s_CanWriteBurnScript, nullptr);
    return pCanWrite && pCanWrite(config);
}
