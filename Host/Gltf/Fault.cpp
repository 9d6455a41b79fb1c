#include "Host/Gltf/Fault.h"

namespace gltf {

namespace {

// Names can be of any length in a file; a message can't.
constexpr size_t s_LongestQuote = 120;

} // namespace

std::string Quoted(std::string_view text) {
    if (text.size() <= s_LongestQuote)
        return QuotedWhole(text);
    return QuotedWhole(std::string(text.substr(0, s_LongestQuote)) + "...");
}

std::string QuotedWhole(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text)
        quoted += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
    return quoted + '"';
}

std::string Counted(size_t count, std::string_view one, std::string_view several) {
    return (std::to_string(count) + ' ').append(count == 1 ? one : several);
}

std::string Place::GetText() const {
    std::string text(kind);
    if (kind.empty())
        return text;
    return text + ' ' + (name.empty() ? std::to_string(index) : Quoted(name));
}

void Fail(const Place& place, std::string_view what, std::string_view advice) {
    std::string text = place.GetText();
    if (!text.empty())
        text += ": ";
    throw Fault(text.append(what).append("; ").append(advice));
}

void FailDamaged(const Place& place, std::string_view what) { Fail(place, what, "export the scene again"); }

} // namespace gltf
