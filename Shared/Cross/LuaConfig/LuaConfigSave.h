#pragma once

#include <string>

class ByteStream;
class Chunky;
class LuaConfig;

// Scripts from streams and files, and a state's values back as a script. What is saved are booleans, numbers with up to
// five decimals, strings of up to 1023 characters, and tables of these; functions and what the language itself has
// among the globals are left out. A name is a full one or an alias path.
//
// With `indent` entries stand below their table by a tab each; with `sorted` they come in the order of their keys, and
// otherwise in the table's own. A save is whole or fails, with a report.
namespace LuaConfigSave {

// True if the script loaded and ran.
bool LoadFromStream(LuaConfig& config, ByteStream& stream);
bool LoadFromFile(LuaConfig& config, const char* pPath);

// The globals.
bool SaveToStream(LuaConfig& config, bool indent, bool sorted, ByteStream& stream);
bool SaveToFile(LuaConfig& config, bool indent, bool sorted, const char* pPath);
// One entry of the current table, whatever it is; one that isn't saved is nothing.
bool SaveTableToStream(LuaConfig& config, const char* pName, bool indent, bool sorted, ByteStream& stream);
// The same for a table, and for nothing else.
bool WriteTable(LuaConfig& config, const char* pName, bool indent, bool sorted, ByteStream& stream);

// As a chunk within the one that is open. Throws what the container throws.
bool SaveToChunky(LuaConfig& config, Chunky& chunky);
bool LoadFromChunky(LuaConfig& config, Chunky& chunky);

// Whether a string comes back from a save as it was: no line feeds in it and not longer than is saved, and when it has
// a backslash or a double quote, neither double brackets nor a bracket at its end.
bool SurvivesSave(const std::string& text);

} // namespace LuaConfigSave
