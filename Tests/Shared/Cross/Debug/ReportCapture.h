#pragma once

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

// For tests everywhere. Including it has failed assertions throw in the whole test program.
inline const bool s_TestsThrowOnAssert = (dbSetThrowOnAssert(true), true);

// Gathers all that is reported while it lives; one at a time.
class ReportCapture {
public:
    ReportCapture() {
        s_Warnings.clear();
        s_Errors.clear();
        dbAddWarningSubscriber(OnWarning);
        dbAddErrorSubscriber(OnError);
    }
    ~ReportCapture() {
        dbRemoveWarningSubscriber(OnWarning);
        dbRemoveErrorSubscriber(OnError);
    }
    ReportCapture(const ReportCapture&) = delete;
    ReportCapture& operator=(const ReportCapture&) = delete;

    // Line by line, each with its prefix.
    const std::vector<std::string>& GetWarnings() const { return s_Warnings; }
    const std::vector<std::string>& GetErrors() const { return s_Errors; }

    // How many lines hold the text.
    static size_t CountWarnings(std::string_view text) { return Count(s_Warnings, text); }
    static size_t CountErrors(std::string_view text) { return Count(s_Errors, text); }
    static bool HasWarning(std::string_view text) { return CountWarnings(text) != 0; }
    static bool HasError(std::string_view text) { return CountErrors(text) != 0; }
    static void Clear() {
        s_Warnings.clear();
        s_Errors.clear();
    }

private:
    static size_t Count(const std::vector<std::string>& lines, std::string_view text) {
        return static_cast<size_t>(std::ranges::count_if(
            lines, [&](const std::string& line) { return line.find(text) != std::string::npos; }));
    }
    static void OnWarning(dbMessage message) { s_Warnings.insert(s_Warnings.end(), message.begin(), message.end()); }
    static void OnError(dbMessage message) { s_Errors.insert(s_Errors.end(), message.begin(), message.end()); }

    static inline std::vector<std::string> s_Warnings;
    static inline std::vector<std::string> s_Errors;
};
