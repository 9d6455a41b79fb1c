#pragma once

#include "Shared/PC/Debug/Process.h"
#include "Tests/Shared/Cross/RevControlAPI/P4StandIn/P4State.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <cstdlib>
#include <string>
#include <vector>

// A server with a small depot and a client's folder, for tests of all that opens files under revision control: the p4
// program is the stand-in as long as it lives. One at a time. Names are relative to the client's root, with slashes.
class P4Server {
public:
    P4Server() {
        m_Folder.MakeFolder("server/depot");
        m_Folder.MakeFolder("Client");
        P4State state = Load();
        state.root = m_Folder.Native("Client");
        state.Save();
        setenv("PVX_P4", (Process::GetExecutableFolder() + "p4-standin").c_str(), 1);
        setenv("P4STANDIN", m_Folder.Native("server").c_str(), 1);
    }
    ~P4Server() {
        for (const char* pName : {"PVX_P4", "PVX_P4_LIMIT", "P4STANDIN"})
            unsetenv(pName);
    }
    P4Server(const P4Server&) = delete;
    P4Server& operator=(const P4Server&) = delete;

    static constexpr const char* s_Port = "depot:1666";

    // Of a file in the client's folder, in the system's form.
    std::string Path(const std::string& name = "") const { return m_Folder.Path("Client" + Below(name)); }
    std::string Native(const std::string& name = "") const { return m_Folder.Native("Client" + Below(name)); }
    void Write(const std::string& name, const std::string& text) const { m_Folder.Write("Client/" + name, text); }
    std::string Read(const std::string& name) const { return m_Folder.Read("Client/" + name); }
    bool Has(const std::string& name) const { return m_Folder.Has("Client/" + name); }
    bool IsWritable(const std::string& name) const {
        return (OSFile::FileAttr(Path(name).c_str()) & OSFile::F_ATTRIBUTE_WRITABLE) != 0;
    }

    // In the depot and, unless told otherwise, in the client's folder for reading only.
    void Submit(const std::string& name, const std::string& text, bool synced = true,
                const std::string& type = "text") {
        m_Folder.Write("server/depot/" + name, text);
        if (synced) {
            Write(name, text);
            OSFile::SetWritable(Path(name).c_str(), false);
        }
        Change([&](P4State& state) { state.files.push_back({.name = name, .type = type, .have = synced ? 1 : 0}); });
    }
    // A further revision, by somebody else.
    void SubmitByOther(const std::string& name, const std::string& text) {
        m_Folder.Write("server/depot/" + name, text);
        Change([&](P4State& state) { ++P4State::Find(state.files, name)->head; });
    }
    void DeleteAtHead(const std::string& name) {
        Change([&](P4State& state) {
            P4File& file = *P4State::Find(state.files, name);
            file.headAction = "delete";
            ++file.head;
        });
    }
    void OpenByOther(const std::string& name, bool locked = false) {
        Change([&](P4State& state) { state.others.push_back({.name = name, .user = "bob", .locked = locked}); });
    }
    // For edit, without a command.
    void Open(const std::string& name, int change) {
        Change([&](P4State& state) { state.opened.push_back({name, "edit", change}); });
    }
    int MakeChange(const std::string& description) {
        int number = 0;
        Change([&](P4State& state) {
            number = state.nextChange++;
            state.changes.push_back({number, description});
        });
        return number;
    }
    P4State Load() const {
        P4State state;
        state.folder = m_Folder.Native("server");
        state.Load();
        return state;
    }
    // "edit 3", "add default"; empty for a file that isn't opened.
    std::string GetOpened(const std::string& name) const {
        P4State state = Load();
        const P4Opened* pOpened = P4State::Find(state.opened, name);
        if (!pOpened)
            return "";
        return pOpened->action + " " + (pOpened->change ? std::to_string(pOpened->change) : "default");
    }

    // See P4StandIn/Main.cpp.
    void SetFault(const std::string& kind, const std::string& value = "") const {
        m_Folder.Write("server/fault." + kind, value);
    }
    void ClearFault(const std::string& kind) const { m_Folder.Remove("server/fault." + kind); }
    void Say(const std::string& command, const std::string& lines) const { SetFault("say." + command, lines); }

    // The commands since the last call, each with its words, without the marks and the port, paths below the root.
    std::vector<std::string> TakeCommands() const {
        const std::string start = std::string("-s -p ") + s_Port + " ";
        std::vector<std::string> commands;
        std::istringstream log(m_Folder.Read("server/log"));
        for (std::string line; std::getline(log, line);) {
            for (size_t at; (at = line.find(Native() + "/")) != std::string::npos;)
                line.erase(at, Native().size() + 1);
            commands.push_back(line.starts_with(start) ? line.substr(start.size()) : line);
        }
        m_Folder.Remove("server/log");
        return commands;
    }

private:
    static std::string Below(const std::string& name) { return name.empty() ? "" : "/" + name; }
    template <class Function>
    void Change(Function change) {
        P4State state = Load();
        change(state);
        state.Save();
    }

    TempFolder m_Folder;
};
