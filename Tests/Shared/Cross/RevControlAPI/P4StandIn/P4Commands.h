#pragma once

#include "Tests/Shared/Cross/RevControlAPI/P4StandIn/P4State.h"

#include <string>
#include <vector>

// The answers of one command, printed as the program does under -s.
class P4Commands {
public:
    explicit P4Commands(P4State& state) : m_State(state) {}

    void Run(const std::string& command, std::vector<std::string> words);
    bool HasErrors() const { return m_HasErrors; }

private:
    void Info();
    void Edit(const std::string& path);
    void Add(const std::string& path);
    void Delete(const std::string& path);
    void Integrate(const std::string& from, const std::string& to);
    void Revert(const std::string& path);
    bool RevertOne(const P4Opened& opened);
    void Opened(const std::string& path);
    void FStat(const std::string& path);
    void Sync(const std::string& path);
    void SyncOne(P4File& file);
    void Changes();
    void MakeChange();
    void DeleteChange();

    // Takes -c NUMBER and single letters off the words.
    bool TakeOptions(std::vector<std::string>& words);
    bool HasOption(char letter) const { return m_Options.find(letter) != std::string::npos; }
    bool IsInChange(const P4Opened& opened) const;
    std::string NameChange(int number) const;
    // The name below the root; false, with the server's answer, when it lies elsewhere.
    bool ToName(const std::string& path, std::string& name);
    bool IsAlreadyOpened(const std::string& name, const std::string& action);
    void Open(const std::string& name, const std::string& action);
    std::string Depot(const std::string& name) const;
    std::filesystem::path Local(const std::string& name) const { return m_State.root + "/" + name; }
    std::filesystem::path Head(const std::string& name) const { return m_State.folder / "depot" / name; }

    void PrintInfo(const std::string& text, int level = 0);
    void PrintError(const std::string& text);

    P4State& m_State;
    std::string m_Options;
    std::string m_ChangeText;
    int m_Change = 0;
    bool m_HasChange = false;
    bool m_HasErrors = false;
};
