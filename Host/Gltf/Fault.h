#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gltf {

// What ends a load: one line for the user, `node "Arm_L": what is wrong; what to do`. Load puts the scene's file name
// in front of it.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A place in the file, for messages: its kind ("node", "accessor"), its index, and its name where it has one. The
// name is borrowed.
struct Place {
    std::string_view kind;
    size_t index = 0;
    std::string_view name = {};

    // `node "Arm_L"`, or `node 7` without a name. Control characters in the name are shown as '?', so that a message
    // stays one line.
    std::string GetText() const;
};

// Throws the fault `<place>: <what>; <advice>`.
[[noreturn]] void Fail(const Place& place, std::string_view what, std::string_view advice);
// The same for damage that only another export of the scene heals.
[[noreturn]] void FailDamaged(const Place& place, std::string_view what);

// `text` in double quotes, fit for one line of a message: without control characters, and cut if it is long.
std::string Quoted(std::string_view text);
// The same for what the user gave, and is to see whole.
std::string QuotedWhole(std::string_view text);

// `1 vertex hangs` or `7 vertices hang`.
std::string Counted(size_t count, std::string_view one, std::string_view several);

} // namespace gltf
