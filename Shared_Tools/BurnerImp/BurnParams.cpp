#include "Shared_Tools/BurnerImp/BurnParams.h"

#include "Shared/Cross/Pipeline/TextUtil.h"

#include <charconv>

namespace {

bool TakeCompression(BurnParams& params, const std::string& value) {
    for (const uint32_t kind : {0u, 1u, 3u, 5u})
        if (value == std::to_string(kind)) {
            params.useDXTC = kind;
            return true;
        }
    return false;
}

bool TakeShare(BurnParams& params, const std::string& value) {
    const char* pEnd = value.data() + value.size();
    const auto [pRest, error] = std::from_chars(value.data(), pEnd, params.lowDetail);
    return error == std::errc() && pRest == pEnd && params.lowDetail >= 0.0f && params.lowDetail <= 1.0f;
}

template <bool BurnParams::*Field>
bool TakeBool(BurnParams& params, const std::string& value) {
    params.*Field = EqualNoCase(value, "true");
    return params.*Field || EqualNoCase(value, "false");
}

struct Known {
    BurnParamBit bit;
    const char* pName;
    const char* pExpected;
    bool (*pTake)(BurnParams& params, const std::string& value);
};

constexpr const char* s_BoolValues = "\"true\" or \"false\"";

constexpr Known s_Known[] = {
    {BurnParam_UseDXTC, "useDXTC", "0, 1, 3 or 5", TakeCompression},
    {BurnParam_MipMaps, "mipMaps", s_BoolValues, TakeBool<&BurnParams::mipMaps>},
    {BurnParam_LowDetail, "lowDetail", "a number from 0 to 1", TakeShare},
    {BurnParam_VertexCache, "vertexCache", s_BoolValues, TakeBool<&BurnParams::vertexCache>},
    {BurnParam_BurnInfo, "burnInfo", s_BoolValues, TakeBool<&BurnParams::burnInfo>},
};

} // namespace

ParamResult TakeParam(BurnParams& params, uint32_t knownBits, const std::string& name, const std::string& value,
                      std::string& expected) {
    for (const Known& known : s_Known) {
        if ((knownBits & known.bit) == 0 || !EqualNoCase(name, known.pName))
            continue;
        expected = known.pExpected;
        return known.pTake(params, value) ? ParamResult::Taken : ParamResult::BadValue;
    }
    return ParamResult::Unknown;
}
