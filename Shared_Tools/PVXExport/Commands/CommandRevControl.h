// Revision control as the commands use it. What goes wrong is thrown as the text that the caller gives.
#pragma once

#include <cstdint>
#include <memory>

class RevControlAPI;

namespace CommandRevControl {

[[noreturn]] void Fail(const char* pText);

// At the server of the pipeline configuration that is up, or by the files' attributes.
std::unique_ptr<RevControlAPI> Start(const char* pNoPortText);

// The changelist that all tools share.
int32_t GetChangelist(RevControlAPI* pRevControl, const char* pFailText);

} // namespace CommandRevControl
