#include "Shared/Cross/Assist/LeakReport.h"

#include "Shared/Cross/Debug/Log/LogFile.h"
#include "Shared/Cross/Debug/StackTrace.h"

#include <cstdio>
#include <string>

namespace Inv {

namespace {

template <class... Args>
std::string Format(const char* pFormat, Args... args) {
    char text[1024];
    std::snprintf(text, sizeof text, pFormat, args...);
    return text;
}

} // namespace

LeakReport::LeakReport() = default;

LeakReport::~LeakReport() = default;

bool LeakReport::OpenFile() {
    if (m_pFile || m_Failed)
        return !m_Failed;
    m_pFile = std::make_unique<LogFile>();
    m_Failed = !m_pFile->Open("InventoryLeaks", ".csv", true, false);
    if (m_Failed)
        return false;
    std::string header = "Inventory Item,";
    for (uint32_t i = 0; i < StackTrace::MaxFrames; ++i)
        header += Format("Stack%u,", i);
    return m_pFile->Write(header.c_str());
}

void LeakReport::Write(const char* pName, const StackTrace& trace) {
    if (!OpenFile())
        return;
    std::string line = Format("%s,", pName ? pName : "");
    for (uint32_t i = 0; i < trace.count; ++i) {
        StackFrame frame;
        dbResolveFrame(trace.addresses[i], frame);
        line += Format("%s : Line %u,", frame.file.c_str(), frame.line);
    }
    m_pFile->Write(line.c_str());
}

} // namespace Inv
