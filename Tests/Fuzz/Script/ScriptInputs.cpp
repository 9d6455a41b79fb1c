#include "Tests/Fuzz/Script/ScriptInputs.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"
#include "Shared_Tools/Burner/Config/BurnScriptLoader.h"
#include "Shared_Tools/Burner/Config/ConfigWalk.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

namespace {

constexpr LuaConfig::Limits s_Limits{.instructions = 20'000, .memory = 1u << 20, .milliseconds = 1'000};

constexpr const char s_Base[] = "burn_version = 1 burn_targets = { { name = 'm', wildcard = '.*', targets = { { target "
                                "= 'obm', destination = 'DATA:', plugin = 'model' }, { target = 'x', destination = '', "
                                "plugin = 'copy' } } }, { name = 'r', targets = {} } } burn_params = { { name = 'm', "
                                "targets = { { target = 'obm', params = { { 'a', '1' }, { 'b', 2 } } } } } }";
constexpr const char s_Override[] = "burn_params = { { name = 'm', targets = { { target = 'obm', params = { { 'A', '5' "
                                    "}, { 'c', 'new' } } }, { target = 'none' } } } } -- [[ nested [[ ]] ]]";
constexpr const char s_Language[] =
    "t = { 'a', 2.5, true, { x = [[a [[b]] c]], ['9a'] = 1, [7] = 'q\\\\' } }\n"
    "for k, v in t do if k == 1 then u = v .. 'z' else w = { k, v } end end --[[ end ]]\n"
    "function f(...) return arg.n end n = f(1, 2) s = loadstring('return 1')() print(n, s)\n"
    "ro = setmetatable({}, { __index = t, __newindex = function(t, k) error(k) end })\n"
    "ok = pcall(function() ro.x = 1 end) c = coroutine.wrap(function() coroutine.yield(3) end)()\n";

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::abort();
}

std::vector<uint8_t> BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

void BeQuiet(LuaConfig& config) {
    config.GetCallbacks() = {.alert = [](const char*) {},
                             .print = [](const char*) {},
                             .report = [](const char*) {},
                             .import = {},
                             .interrupt = {}};
}

std::vector<uint8_t> MakeChunkSeed() {
    LuaConfig config("seed");
    config.RunCommand("t = { 1, 2, { x = 'text' } }");
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    LuaConfigSave::SaveToChunky(config, chunky);
    return {pStream->GetBuffer(), pStream->GetBuffer() + pStream->GetLength()};
}

// Asks for all that is there, and for what isn't.
void Walk(LuaConfig& config, int depth) {
    std::string text;
    double number = 0;
    for (LuaConfig::Iterator it = config.Begin(); it != config.End(); it.Next()) {
        // What leads back to the globals would have them walked once more at every depth.
        if (!it.HasPlainKey() || it.Key() == "_G")
            continue;
        const std::string key = it.Key();
        config.GetString(key.c_str(), text);
        config.GetNumber(key.c_str(), number);
        config.GetType((key + "x").c_str());
        if (depth < 4 && config.GetType(key.c_str()) == LuaConfig::Type_Table && config.BeginTable(key.c_str())) {
            Walk(config, depth + 1);
            config.EndTable();
        }
    }
}

void UseState(LuaConfig& config) {
    Walk(config, 0);
    for (const bool sorted : {false, true}) {
        const std::unique_ptr<RamStream> pSaved = MakeWriteStream();
        LuaConfigSave::SaveToStream(config, true, sorted, *pSaved);
    }
}

bool ReadLanguage(std::span<const uint8_t> input) {
    LuaConfig config("fuzz", s_Limits);
    BeQuiet(config);
    const bool loaded = LuaConfigSave::LoadFromStream(
        config, *MakeReadStream({reinterpret_cast<const char*>(input.data()), input.size()}));
    UseState(config);
    return loaded;
}

bool ReadChunk(std::span<const uint8_t> input) {
    LuaConfig config("fuzz", s_Limits);
    BeQuiet(config);
    const auto pStream = MakeReadStream({reinterpret_cast<const char*>(input.data()), input.size()});
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    const bool loaded = LuaConfigSave::LoadFromChunky(config, chunky);
    UseState(config);
    return loaded;
}

// What a configuration holds it can be written to, if its texts allow, and read back.
void UseConfig(BurnerConfig config) {
    ForEachParam(config, [&](BurnerConfig::TargetID id, BurnerConfig::Param param) {
        param.inherited = false;
        return config.SetParam(param, id);
    });
    if (!BurnScripts::CanWrite(config))
        return;
    const std::unique_ptr<RamStream> pWritten = MakeWriteStream();
    if (!BurnScripts::Write(config, *pWritten))
        Stop("a configuration can't be written");
    BurnerConfig again = config;
    if (!BurnScripts::Read(*MakeReadStream(BytesOf(*pWritten)), false, again, nullptr))
        Stop("a configuration that was written can't be read");
}

BurnerConfig ReadBase() {
    BurnerConfig config;
    BurnScripts::Read(*MakeReadStream(s_Base), true, config, nullptr);
    return config;
}

bool ReadBurnScript(std::span<const uint8_t> input, bool isBase) {
    static const BurnerConfig s_Parsed = ReadBase();
    BurnerConfig config = isBase ? BurnerConfig() : s_Parsed;
    BurnerMessageList messages;
    const bool read = BurnScripts::Read(*MakeReadStream({reinterpret_cast<const char*>(input.data()), input.size()}),
                                        isBase, config, &messages);
    if (!read && messages.empty())
        Stop("a script is refused without a reason");
    if (read)
        UseConfig(config);
    return read;
}

bool Read(FuzzedScript reader, std::span<const uint8_t> input) {
    switch (reader) {
    case FuzzedScript::Base:
        return ReadBurnScript(input, true);
    case FuzzedScript::Override:
        return ReadBurnScript(input, false);
    case FuzzedScript::Language:
        return ReadLanguage(input);
    default:
        return ReadChunk(input);
    }
}

} // namespace

std::vector<std::vector<uint8_t>> MakeScriptSeeds(FuzzedScript reader) {
    switch (reader) {
    case FuzzedScript::Base:
        return {BytesOf(std::string(s_Base))};
    case FuzzedScript::Override:
        return {BytesOf(std::string(s_Override))};
    case FuzzedScript::Language:
        return {BytesOf(std::string(s_Language))};
    default:
        return {MakeChunkSeed()};
    }
}

bool FeedScriptReader(FuzzedScript reader, std::span<const uint8_t> input) {
    // A save's assertions about brackets in strings are stepped over.
    dbSetThrowOnAssert(true);
    const dbNoThrowScope stepOver;
    try {
        return Read(reader, input);
    } catch (const Chunky::Exception&) {
        return false;
    } catch (const std::exception& exception) {
        Stop(exception.what());
    }
}
