#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include <cxxabi.h>

// A function's name as it is written in the source; one that isn't mangled stays as it is.
inline std::string Demangle(const char* pName) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(abi::__cxa_demangle(pName, nullptr, nullptr, &status),
                                                           &std::free);
    return status == 0 && text ? text.get() : pName;
}
