// Where a file of the source tree has its place in the project's other trees.
#pragma once

#include <cstdint>
#include <string>

namespace PVXFilename {

// The file in the project's folder of that kind of data. False, without a message, when the pipeline isn't configured
// or the file belongs to no project; the name is empty then. The configuration is looked for from the start path
// upwards; null stands for the program's own place.
bool MapToKind(std::string& outFilename, const char* pSourceFilename, uint32_t kind, const char* pStartPath = nullptr);
// The same as an alias path under "DATA".
bool MapToData(std::string& outFilename, const char* pSourceFilename);

} // namespace PVXFilename
