#include "Shared/Cross/RevControlAPI/PatternLoader.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Module/SharedModule.h"

namespace {

PatternMatchFunction* Load() {
    static SharedModule s_Module;
    if (s_Module.LoadOwn(s_PatternModule))
        return reinterpret_cast<PatternMatchFunction*>(s_Module.Find(s_PatternFunction));
    dbWarningf("REVCONTROL -- %s", s_Module.GetError().c_str());
    return nullptr;
}

} // namespace

PatternMatchFunction* LoadPatternMatcher() {
    static PatternMatchFunction* const s_pMatch = Load();
    return s_pMatch;
}
