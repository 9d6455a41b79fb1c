#pragma once

#include <cstdint>
#include <string>

// The system's stack walker and its symbols.
namespace StackWalk {

// Fills in the caller's return addresses, innermost first, without the first `skip`; answers how many. 0 starts with
// an address in the caller.
uint32_t Capture(const void** ppAddresses, uint32_t room, uint32_t skip);

// What isn't known stays empty, or 0. False when not even the module is known.
bool Resolve(const void* pAddress, std::string& module, std::string& function, std::string& file, uint32_t& line);

} // namespace StackWalk
