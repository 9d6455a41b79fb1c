#include "Shared/Cross/RevControlAPI/ChangelistPatterns.h"

#include "Shared/Cross/RevControlAPI/PatternLoader.h"

#include <charconv>
#include <string_view>

namespace {

bool ReadNumber(std::string_view text, int32_t& number) {
    int32_t value = 0;
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || pEnd != text.data() + text.size())
        return false;
    number = value;
    return true;
}

bool ReadGroup(const char* pPattern, const std::string& text, int32_t& number) {
    PatternMatchFunction* const pMatch = LoadPatternMatcher();
    char group[32]; // longer than any number
    return pMatch && pMatch(pPattern, text.c_str(), group, sizeof group) && ReadNumber(group, number);
}

} // namespace

bool ChangelistPatterns::ReadCreated(const std::string& text, int32_t& number) {
    return ReadGroup("Change ([0-9]+) created.", text, number);
}

bool ChangelistPatterns::ReadOpened(const std::string& text, int32_t& number) {
    return ReadGroup(".* change ([0-9]+).*", text, number);
}

bool ChangelistPatterns::ReadListed(const std::string& text, int32_t& number) {
    constexpr std::string_view s_Start = "Change ";
    constexpr std::string_view s_End = " on";
    const std::string_view line = text;
    if (!line.starts_with(s_Start))
        return false;
    const size_t end = line.find(' ', s_Start.size());
    return end != std::string_view::npos && line.substr(end).starts_with(s_End) &&
           ReadNumber(line.substr(s_Start.size(), end - s_Start.size()), number);
}
