#pragma once

#include <cstdint>
#include <string>

// What the module of this folder offers: the source of an address, from the line tables of the file that holds it.
// It is a module of its own because the library that reads such tables is big and hardly ever needed.

// Changes only what it found out.
using SymbolReaderFunction = void(const void* pAddress, std::string& function, std::string& file, uint32_t& line);

constexpr char s_SymbolReaderModule[] = "libDebugSymbols.so";
constexpr char s_SymbolReaderFunction[] = "PvxReadSymbol";
