#pragma once

#include <string>

class ByteStream;
class LuaConfig;
struct lua_State;

// The script function import(name): runs another script in the same state. Where scripts come from is told by
// Callbacks::import; without it there is nothing to import.
namespace LuaImport {

void AddFunction(lua_State* pState);

// Imports from files, by full name or alias path, as Callbacks::import wants it. A relative name is taken from the
// folder, which ends with a backslash or a colon.
void SetFileImport(LuaConfig& config, const std::string& folder);

// Takes a script's text from a stream, block by block.
class Importer {
public:
    explicit Importer(ByteStream& stream) : m_Stream(stream) {}
    // All that the stream has left. False for more than a script may have.
    bool Read(std::string& text) const { return Read(text, s_BlockSize); }
    bool Read(std::string& text, size_t blockSize) const;

private:
    static constexpr size_t s_BlockSize = 4096;
    static constexpr size_t s_MaxText = 16u << 20;

    ByteStream& m_Stream;
};

} // namespace LuaImport
