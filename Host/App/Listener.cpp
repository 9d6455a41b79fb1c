#include "Host/App/Listener.h"

#include <cstring>

Listener::Listener(std::FILE* pOut, std::function<void()> beforeText)
    : m_pOut(pOut), m_BeforeText(std::move(beforeText)), m_pBefore(thread_locals().current_stdout) {
    thread_locals().current_stdout = this;
}

Listener::~Listener() {
    thread_locals().current_stdout = m_pBefore;
    EndLine();
}

void Listener::puts(const char* pText) {
    const size_t length = std::strlen(pText);
    if (length == 0)
        return;
    if (m_BeforeText)
        m_BeforeText();
    m_Unused = false;
    std::fwrite(pText, 1, length, m_pOut);
    m_LineOpen = pText[length - 1] != '\n';
    // Scripts are watched while they run, through pipes too.
    std::fflush(m_pOut);
}

void Listener::EndLine() {
    if (!m_LineOpen)
        return;
    std::fputc('\n', m_pOut);
    std::fflush(m_pOut);
    m_LineOpen = false;
}
