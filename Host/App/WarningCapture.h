#pragma once

#include <string>

// Keeps the last warning of its lifetime, for an answer that doesn't say by itself what is wrong. One at a time.
class WarningCapture {
public:
    WarningCapture();
    ~WarningCapture();
    WarningCapture(const WarningCapture&) = delete;
    WarningCapture& operator=(const WarningCapture&) = delete;

    // Without the place in the source that warned; empty without a warning.
    const std::string& GetLast() const;
};
