#include "Shared_Tools/BurnerImp/BurnReport.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Win32Util/NamedPipe.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

constexpr size_t s_MaxText = 1000; // the other side takes no more than s_BurnerMaxString
constexpr size_t s_MuchToSend = 0x8000;

// Not within a character of several bytes.
void CutText(std::string& text) {
    if (text.size() <= s_MaxText)
        return;
    size_t end = s_MaxText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    text.resize(end);
}

BurnReport* s_pReport = nullptr;
std::string s_WarningSource;

// Without the place in the code, "stem/line:!", which is for developers.
std::string_view WithoutPlace(std::string_view line) {
    const size_t mark = line.find(":!");
    return mark != line.npos && line.find(' ') > mark ? line.substr(mark + 2) : line;
}

void TakeWarning(dbMessage message) {
    for (const char* pLine : message)
        s_pReport->AddWarning(s_WarningSource, std::string(WithoutPlace(pLine)));
}

} // namespace

void BurnReport::AddInfo(const std::string& source, const std::string& text) {
    BurnerMessageList messages;
    AddBurnerInfo(messages, source.c_str(), "%s", text.c_str());
    Append(std::move(messages));
}

void BurnReport::AddWarning(const std::string& source, const std::string& text) {
    BurnerMessageList messages;
    AddBurnerWarning(messages, source.c_str(), "%s", text.c_str());
    Append(std::move(messages));
}

void BurnReport::AddError(const std::string& source, const std::string& text) {
    BurnerMessageList messages;
    AddBurnerError(messages, source.c_str(), "%s", text.c_str());
    Append(std::move(messages));
}

void BurnReport::Append(BurnerMessageList&& messages) {
    for (BurnerMessage& message : messages) {
        CutText(message.text);
        m_Bytes += message.text.size();
        m_Messages.push_back(std::move(message));
    }
}

void BurnReport::Send() {
    if (m_Cut || m_Messages.empty() || (m_Bytes < s_MuchToSend && !m_Pipe.HasRoom()))
        return;
    m_Cut = !NamedPipeMsg::SendMsg(m_Pipe, BurnerUpdateMsg{.messages = Take()});
}

bool BurnReport::IsCut() {
    bool hasData = false;
    m_Cut = m_Cut || !m_Pipe.Peek(hasData);
    return m_Cut;
}

BurnerMessageList BurnReport::Take() {
    m_Bytes = 0;
    return std::exchange(m_Messages, {});
}

ReportedWarnings::ReportedWarnings(BurnReport& report, std::string source) {
    dbAssert(!s_pReport);
    s_pReport = &report;
    s_WarningSource = std::move(source);
    dbAddWarningSubscriber(TakeWarning);
}

ReportedWarnings::~ReportedWarnings() {
    dbRemoveWarningSubscriber(TakeWarning);
    s_pReport = nullptr;
}
