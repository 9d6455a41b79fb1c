#pragma once

#include <cstdint>
#include <string>

#include <nlohmann/json_fwd.hpp>

#include "Shared/Cross/Util/FourCC.h"

class Chunky;

// The top chunk of a saved script, data: its text, to the chunk's end.
constexpr uint32_t s_ScriptChunk = FourCC("LCFG");
constexpr uint32_t s_ScriptVersion = 1;

// A saved script. It is shown, never run.
struct ScriptContent {
    std::string name;
    uint32_t version = 0;
    std::string text;
};

// The next chunk is an "LCFG". Throws as Chunky does.
ScriptContent ReadScriptContent(Chunky& chunky);

void PrintScript(std::string& out, const ScriptContent& content);
nlohmann::json ToJson(const ScriptContent& content);
