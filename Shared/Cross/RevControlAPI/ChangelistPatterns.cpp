#include "Shared/Cross/RevControlAPI/ChangelistPatterns.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RevControlAPI/Patterns/PatternMatcher.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/Module/SharedModule.h"

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

// Beside the program; a host that lies elsewhere finds it as it finds our other libraries. Null, with a line in the
// log, when it isn't there.
PatternMatchFunction* LoadMatcher() {
    static SharedModule s_Beside;
    static SharedModule s_ByName;
    if (s_Beside.Load(Process::GetExecutableFolder() + s_PatternModule))
        return reinterpret_cast<PatternMatchFunction*>(s_Beside.Find(s_PatternFunction));
    if (s_ByName.LoadByName(s_PatternModule))
        return reinterpret_cast<PatternMatchFunction*>(s_ByName.Find(s_PatternFunction));
    dbWarningf("REVCONTROL -- %s", s_Beside.GetError().c_str());
    return nullptr;
}

bool ReadGroup(const char* pPattern, const std::string& text, int32_t& number) {
    static PatternMatchFunction* const s_pMatch = LoadMatcher();
    char group[32]; // longer than any number
    return s_pMatch && s_pMatch(pPattern, text.c_str(), group, sizeof group) && ReadNumber(group, number);
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
