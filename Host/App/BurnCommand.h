#pragma once

#include "Host/App/CommandLine.h"
#include "Host/App/Messages.h"
#include "Host/Sdk/Listener.h"

#include <chrono>
#include <cstddef>
#include <string>

// What the host adds to the module's burn.

// A file that isn't there is refused ahead of the work: throws a HostError with status 2.
void CheckBurnInput(const BurnArguments& arguments);

// Counts, while it lives, what the burner says on the listener, which gets it at once. One at a time.
class BurnLines : public CharStream {
public:
    BurnLines();
    ~BurnLines() override;
    BurnLines(const BurnLines&) = delete;
    BurnLines& operator=(const BurnLines&) = delete;

    void puts(const char* pText) override;
    // Behind the burner's own count of files: what it took, and how much there is to look at.
    void PrintSummary(const BurnArguments& arguments, bool good, const Messages& messages) const;

private:
    CharStream* m_pListener;
    std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
    std::string m_Line; // as far as it has come
    size_t m_Warnings = 0;
    size_t m_Errors = 0;
};
