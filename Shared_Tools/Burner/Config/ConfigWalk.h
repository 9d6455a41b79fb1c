#pragma once

#include "Shared_Tools/Burner/Config/BurnerConfig.h"

// Hands each target's id and each of its parameters, a copy, to a function that answers whether to go on. False when
// one of them didn't.
template <class Function>
bool ForEachParam(const BurnerConfig& config, Function visit) {
    for (uint32_t group = 0; group < config.GetGroupCount(); ++group) {
        const char* pGroup = config.GetGroupName(group);
        for (uint32_t target = 0; target < config.GetTargetCount(pGroup); ++target) {
            const BurnerConfig::TargetID id = config.GetTargetID(target, pGroup);
            BurnerConfig::Param param;
            for (uint32_t i = 0; config.GetParam(i, id, param); ++i)
                if (!visit(id, param))
                    return false;
        }
    }
    return true;
}
