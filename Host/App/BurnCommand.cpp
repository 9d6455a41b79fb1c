#include "Host/App/BurnCommand.h"

#include "Host/App/PipelineScope.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <cstdio>

namespace {

std::string Count(size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

} // namespace

void CheckBurnInput(const BurnArguments& arguments) {
    const bool isPattern = arguments.file.find_first_of("*?") != std::string::npos;
    const std::string path = OSFile::FromNative(arguments.file);
    if (!isPattern && (path.empty() || OSFile::FileAttr(path.c_str()) == 0))
        throw HostError(2, arguments.file + ": there is no such file; name a file or a folder of a generic tree, or "
                                            "files by * and ?");
    const PipelineScope pipeline(arguments.file);
    PipelineScope::RequireInProject(arguments.file, Pipeline::Kind_Generic, "what is burned was merged or put there");
}

BurnLines::BurnLines() : m_pListener(thread_locals().current_stdout) { thread_locals().current_stdout = this; }

BurnLines::~BurnLines() { thread_locals().current_stdout = m_pListener; }

void BurnLines::puts(const char* pText) {
    if (m_pListener)
        m_pListener->puts(pText);
    for (; *pText; ++pText) {
        if (*pText != '\n') {
            m_Line += *pText;
            continue;
        }
        m_Warnings += m_Line.starts_with("Warning: ") ? 1 : 0;
        m_Errors += m_Line.starts_with("Error: ") ? 1 : 0;
        m_Line.clear();
    }
}

void BurnLines::PrintSummary(const BurnArguments& arguments, bool good, const Messages& messages) const {
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_Start;
    char time[32];
    std::snprintf(time, sizeof time, "%.1f s", seconds.count());
    messages.Print(good ? MessageKind::Note : MessageKind::Error,
                   arguments.file + ": " + (good ? "burned" : "the burn failed") + " after " + time + ", " +
                       Count(m_Errors, "error") + ", " + Count(m_Warnings, "warning"));
}
