#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// The parameters of a target, for all plug-ins; each takes those that it knows.
struct BurnParams {
    uint32_t useDXTC = 0;    // compress textures in colours: 0, 1, 3 or 5
    bool mipMaps = true;     // textures with all their levels
    float lowDetail = 0.0f;  // share of the triangles that the low level keeps; 0 for no low level
    bool vertexCache = true; // order triangles and vertices for the hardware's caches
    bool burnInfo = false;   // who burned the file and when stands in it
};

// Which of them a plug-in knows.
enum BurnParamBit : uint32_t {
    BurnParam_UseDXTC = 1,
    BurnParam_MipMaps = 2,
    BurnParam_LowDetail = 4,
    BurnParam_VertexCache = 8,
    BurnParam_BurnInfo = 16,
};

enum class ParamResult { Taken, Unknown, BadValue };

// Name and value without regard to case. `expected` is what a value can be, for one that can't be used.
ParamResult TakeParam(BurnParams& params, uint32_t knownBits, const std::string& name, const std::string& value,
                      std::string& expected);
