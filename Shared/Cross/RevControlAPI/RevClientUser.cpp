#include "Shared/Cross/RevControlAPI/RevClientUser.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>

namespace {

// Half a million files at a hundred bytes and more each; a server that goes on for ever mustn't take all memory.
constexpr size_t s_MostAnswerBytes = size_t{64} << 20;
constexpr size_t s_LineCost = sizeof(std::string);

} // namespace

void RevClientUser::InputData(std::string& data, Error&) { data = m_Input; }

void RevClientUser::OutputError(const char* pText) {
    // However long the answer was, that it failed has to be seen.
    if (m_Errors.empty())
        m_Errors.emplace_back(pText);
    else
        Keep(m_Errors, pText);
}

void RevClientUser::OutputInfo(char, const char* pText) { Keep(m_Infos, pText); }

void RevClientUser::OutputText(const char* pText, int length) {
    Keep(m_Texts, {pText, static_cast<size_t>(std::max(length, 0))});
}

void RevClientUser::Keep(std::vector<std::string>& list, std::string_view text) {
    if (!m_Whole)
        return;
    m_Size += text.size() + s_LineCost;
    m_Whole = m_Size <= s_MostAnswerBytes;
    if (m_Whole)
        list.emplace_back(text);
    else
        dbWarningf("REVCONTROL -- an answer of more than %zu bytes; the rest is dropped", s_MostAnswerBytes);
}
