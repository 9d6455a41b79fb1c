#pragma once

#include <functional>

class ByteStream;

namespace ra {

// Has a file written under the alias path; it takes its place when it is whole. False, with a line in the log, when
// that fails or `write` throws; what stood under the path is still there then, and nothing besides.
bool SaveFile(const char* pPath, const std::function<void(ByteStream&)>& write);

} // namespace ra
