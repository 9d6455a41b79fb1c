#pragma once

#include <string>

// The system's path of an output. Throws a HostError with status 2 when it has none, since a name in it holds a
// backslash or a colon.
std::string GetOutputPath(const std::string& nativePath);

// Throws a HostError with status 2 when a model written under this name would replace a file of another kind: one that
// isn't called .pvx, isn't empty and isn't a chunked file.
void RequireReplaceable(const std::string& nativePath);
