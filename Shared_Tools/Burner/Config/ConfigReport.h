#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

// The source of what loading has to say.
inline constexpr char s_ConfigSource[] = "ConfigIO";

// What goes to the log under the tag of burn configurations, since nobody else wants to hear of it.
[[gnu::format(printf, 1, 2)]] void LogBurn(const char* pFormat, ...);

// The same for a script's parser, whose reader may want to hear.
class ConfigReport {
public:
    // Null for nobody.
    explicit ConfigReport(BurnerMessageList* pMessages) : m_pMessages(pMessages) {}
    // Always false, the answer of what failed.
    [[gnu::format(printf, 2, 3)]] bool Fail(const char* pFormat, ...) const;
    void Add(const char* pText) const;

private:
    BurnerMessageList* m_pMessages;
};
