#pragma once

#include <string>

// Throws a HostError with status 2 when a model written under this name would replace a file of another kind: one that
// isn't called .pvx, isn't empty and isn't a chunked file.
void RequireReplaceable(const std::string& nativePath);
