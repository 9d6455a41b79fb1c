#pragma once

#include <cstdint>
#include <string>

#include <nlohmann/json_fwd.hpp>

class Chunky;

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
