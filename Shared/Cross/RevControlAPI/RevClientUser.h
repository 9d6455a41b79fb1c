#pragma once

#include "Shared/Cross/RevControlAPI/ClientApi.h"

#include <cstddef>
#include <vector>

// Collects the answers of one command.
class RevClientUser : public ClientUser {
public:
    RevClientUser() = default;
    // With a form that the server may ask for.
    explicit RevClientUser(std::string input) : m_Input(std::move(input)) {}

    void InputData(std::string& data, Error& error) override;
    void OutputError(const char* pText) override;
    void OutputInfo(char level, const char* pText) override;
    void OutputText(const char* pText, int length) override;

    const std::vector<std::string>& GetInfos() const { return m_Infos; }
    const std::vector<std::string>& GetTexts() const { return m_Texts; }
    const std::vector<std::string>& GetErrors() const { return m_Errors; }
    bool HasErrors() const { return !m_Errors.empty(); }
    // Null when there is none.
    const std::string* GetFirstInfo() const { return m_Infos.empty() ? nullptr : m_Infos.data(); }
    const std::string* GetFirstError() const { return m_Errors.empty() ? nullptr : m_Errors.data(); }
    // False when the answer was longer than what is kept; its start is there.
    bool IsWhole() const { return m_Whole; }

private:
    void Keep(std::vector<std::string>& list, std::string_view text);

    std::string m_Input;
    std::vector<std::string> m_Infos;
    std::vector<std::string> m_Texts;
    std::vector<std::string> m_Errors;
    size_t m_Size = 0;
    bool m_Whole = true;
};
