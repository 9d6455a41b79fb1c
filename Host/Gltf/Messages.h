#pragma once

#include "Host/Gltf/Fault.h"
#include "Host/Gltf/Json.h"
#include "Host/Gltf/Loader.h"

#include <functional>
#include <initializer_list>

namespace gltf {

// Passes on the warnings of one load, as lines that begin with the scene's file name.
class Messages {
public:
    Messages(std::string fileName, const WarningSink& sink) : m_FileName(std::move(fileName)), m_Sink(sink) {}

    void Warn(const Place& place, std::string_view what, std::string_view advice) const;
    // A fault that doesn't end the load.
    void Warn(const Fault& fault) const;
    // A line as it stands behind the file's name.
    std::string GetLine(std::string_view text) const { return m_FileName + ": " + std::string(text); }

private:
    std::string m_FileName;
    const WarningSink& m_Sink;
};

// A member that somebody knows how to read. `read` answers false for a value of the wrong type; `wanted` says what it
// would take.
struct MemberReader {
    std::string_view name;
    std::string_view wanted;
    std::function<bool(const Json&)> read;
};

// Reads the members of `object`, which stands under `path` ("extras.host") at the place. An object of the wrong type, a
// member of the wrong type and an unknown one are a warning each, and are left out.
void ReadMembers(const Messages& messages, const Place& place, std::string_view path, const Json& object,
                 std::initializer_list<MemberReader> readers);

// The `host` member of the `extras` of a node, material or camera; null when there is none.
const Json* FindHostExtras(const Json& object);

} // namespace gltf
