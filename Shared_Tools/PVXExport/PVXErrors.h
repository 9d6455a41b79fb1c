#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Host/Sdk/Types.h"

class Interface;

// The messages that an artist is meant to read: queued while an export runs, shown in one dialog at its end. Lines for
// developers go to the log instead. One export at a time has them, on the host's main thread.
class PVXErrors {
public:
    static void Create(HINSTANCE hInstance, Interface* pInterface);
    static void Destroy();
    static PVXErrors& Get(); // between Create and Destroy
    static bool Exists() { return s_pInstance != nullptr; }

    // Both queue a line, whatever its length, behind a prefix that lines the messages up.
    [[gnu::format(printf, 2, 3)]] void Error(const char* pFormat, ...);
    [[gnu::format(printf, 2, 3)]] void Warning(const char* pFormat, ...);

    // Modal to the host's main window; nothing is shown when nothing is queued.
    void ShowDialog() const;

    const std::vector<std::string>& GetMessages() const { return m_Messages; }
    int32_t GetErrorCount() const { return m_ErrorCount; }
    int32_t GetWarningCount() const { return m_WarningCount; }
    void Clear();

private:
    PVXErrors(HINSTANCE hInstance, Interface* pInterface) : m_hInstance(hInstance), m_Interface(pInterface) {}

    static std::unique_ptr<PVXErrors> s_pInstance;

    HINSTANCE m_hInstance;
    Interface* m_Interface;
    std::vector<std::string> m_Messages;
    int32_t m_ErrorCount = 0; // since the last Clear, as the one below
    int32_t m_WarningCount = 0;
};
