#pragma once

#include "Host/Sdk/Listener.h"

#include <cstdio>
#include <functional>

// The script listener's stream on a file, for the calling thread and as long as it lives.
class Listener : public CharStream {
public:
    // `pOut` is borrowed. `beforeText`, which may be empty, runs ahead of each text.
    explicit Listener(std::FILE* pOut, std::function<void()> beforeText = {});
    // Ends a line that was left open.
    ~Listener() override;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void puts(const char* pText) override;
    // Ends a line that was left open, so that what comes next stands at a line's start.
    void EndLine();
    // As long as there was no text at all.
    bool IsUnused() const { return m_Unused; }

private:
    std::FILE* m_pOut;
    std::function<void()> m_BeforeText;
    CharStream* m_pBefore;
    bool m_LineOpen = false;
    bool m_Unused = true;
};
