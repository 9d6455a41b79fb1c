#pragma once

#include "Shared/Cross/Util/FourCC.h"

// "LCFG", data, named "LuaConfig Chunky": the text of the script, to the chunk's end.
constexpr uint32_t s_ScriptChunk = FourCC("LCFG");
constexpr uint32_t s_ScriptVersion = 1;
