#pragma once

#include "Tests/Shared/Cross/RevControlAPI/P4StandIn/P4State.h"

#include <iostream>
#include <iterator>
#include <map>

// The answers of one command, printed as the program does under -s. It lives as long as the command.
class P4Commands {
public:
    explicit P4Commands(P4State& state) : m_State(state) {}

    void Run(const std::string& command, std::vector<std::string> words) {
        if (!TakeOptions(words))
            return PrintError("Invalid changelist/client/label/date '@" + m_ChangeText + "'.");
        const bool ofFiles = command != "info" && command != "change" && command != "changes";
        if (words.empty() && ofFiles && command != "opened")
            return PrintError("Missing/wrong number of arguments.");
        m_Path = words.empty() ? "" : words[0];
        m_Target = words.size() > 1 ? words[1] : "";
        if (ofFiles && !ToName(m_Path, m_Name))
            return;
        static const std::map<std::string, void (P4Commands::*)()> s_Commands = {
            {"info", &P4Commands::Info},       {"change", &P4Commands::Change},
            {"changes", &P4Commands::Changes}, {"opened", &P4Commands::Opened},
            {"edit", &P4Commands::Edit},       {"add", &P4Commands::Add},
            {"delete", &P4Commands::Delete},   {"integrate", &P4Commands::Integrate},
            {"revert", &P4Commands::Revert},   {"fstat", &P4Commands::FileStatus},
            {"sync", &P4Commands::Sync}};
        if (const auto it = s_Commands.find(command); it != s_Commands.end())
            return (this->*it->second)();
        PrintError("Unknown command.  Try 'p4 help' for info.");
    }
    bool HasErrors() const { return m_HasErrors; }

private:
    using Path = std::filesystem::path;

    // Takes -c NUMBER and single letters off the words.
    bool TakeOptions(std::vector<std::string>& words) {
        while (!words.empty() && words[0].starts_with('-')) {
            const std::string option = words[0];
            words.erase(words.begin());
            m_Options += option.substr(1);
            if ((option != "-c" && option != "-s" && option != "-d") || words.empty())
                continue;
            const std::string value = words[0];
            words.erase(words.begin());
            const bool isNumber = value.find_first_not_of("0123456789") == std::string::npos;
            if (option == "-s" || (!isNumber && value == m_State.client))
                continue;
            m_HasChange = true;
            m_ChangeText = value;
            m_Change = isNumber ? std::stoi(value) : 0;
            if (value != "default" && !m_State.FindChange(m_Change))
                return false;
        }
        return true;
    }
    bool HasOption(char letter) const { return m_Options.find(letter) != std::string::npos; }
    bool IsInChange(const P4Opened& opened) const { return !m_HasChange || opened.change == m_Change; }
    static std::string NameChange(int number) {
        return number == 0 ? "default change" : "change " + std::to_string(number);
    }

    // The name below the root; "..." at its end for all that begins so. False, with the server's answer, when it lies
    // elsewhere.
    bool ToName(const std::string& path, std::string& name) {
        if (path.empty() || path == "//...")
            name = "...";
        else if (path.starts_with("//depot/"))
            name = path.substr(8);
        else if (path.starts_with(m_State.root + "/"))
            name = path.substr(m_State.root.size() + 1);
        else
            return PrintError("Path '" + path + "' is not under client's root '" + m_State.root + "'."), false;
        return true;
    }
    bool IsMeant(const std::string& name) const {
        return m_Name.ends_with("...") ? name.starts_with(m_Name.substr(0, m_Name.size() - 3)) : name == m_Name;
    }
    static std::string Depot(const std::string& name) { return "//depot/" + name; }
    Path Local(const std::string& name) const { return m_State.root + "/" + name; }
    Path Head(const std::string& name) const { return m_State.folder / "depot" / name; }

    static void SetWritable(const Path& path, bool writable) {
        using std::filesystem::perms;
        const perms any = perms::owner_write | perms::group_write | perms::others_write;
        std::error_code ignored;
        permissions(path, writable ? perms::owner_write : any,
                    writable ? std::filesystem::perm_options::add : std::filesystem::perm_options::remove, ignored);
    }
    static bool IsWritable(const Path& path) {
        using std::filesystem::perms;
        return exists(path) && (status(path).permissions() & perms::owner_write) != perms::none;
    }
    static std::string ReadAll(const Path& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    // As the server leaves a file: for reading only.
    void Fetch(const std::string& from, const std::string& to) const {
        create_directories(Local(to).parent_path());
        std::filesystem::remove(Local(to));
        copy_file(Head(from), Local(to));
        SetWritable(Local(to), false);
    }

    static void PrintInfo(const std::string& text, int level = 0) {
        std::cout << "info" << (level > 0 ? std::to_string(level) : "") << ": " << text << '\n';
    }
    void PrintError(const std::string& text) {
        std::cout << "error: " << text << '\n';
        m_HasErrors = true;
    }

    void Info() {
        PrintInfo("User name: " + m_State.user);
        PrintInfo("Client name: " + m_State.client);
        PrintInfo("Server address: depot:1666");
    }

    void Open(const std::string& action) {
        m_State.opened.push_back({m_Name, action, m_Change});
        PrintInfo(Depot(m_Name) + "#1 - opened for " + action);
        if (const P4Other* pOther = P4State::Find(m_State.others, m_Name))
            PrintInfo(Depot(m_Name) + " - also opened by " + pOther->user + "@their-ws", 1);
    }
    bool IsAlreadyOpened(const std::string& action) {
        P4Opened* pOpened = P4State::Find(m_State.opened, m_Name);
        if (!pOpened)
            return false;
        const std::string file = Depot(m_Name) + "#1 - ";
        if (pOpened->action == "branch" && action == "edit") {
            pOpened->action = "add";
            PrintInfo(file + "reopened for add");
        } else if (pOpened->action != action)
            PrintInfo(file + "can't " + action + " (already opened for " + pOpened->action + ")");
        else if (m_HasChange && pOpened->change != m_Change)
            PrintInfo(file + "can't change from " + NameChange(pOpened->change) + " - use 'reopen'");
        else
            PrintInfo(file + "currently opened for " + action);
        return true;
    }

    void Edit() {
        if (IsAlreadyOpened("edit"))
            return;
        const P4File* pFile = P4State::Find(m_State.files, m_Name);
        if (!pFile || pFile->headAction == "delete" || pFile->have == 0)
            return PrintError(m_Path + " - file(s) not on client.");
        if (P4State::Find(m_State.others, m_Name) && pFile->type.ends_with("+l"))
            return PrintInfo(Depot(m_Name) + " - can't edit exclusive file already opened");
        SetWritable(Local(m_Name), true);
        Open("edit");
    }

    void Add() {
        if (IsAlreadyOpened("add"))
            return;
        const P4File* pFile = P4State::Find(m_State.files, m_Name);
        if (pFile && pFile->headAction != "delete")
            return PrintInfo(Depot(m_Name) + " - can't add existing file");
        if (!exists(Local(m_Name)))
            PrintInfo(m_Path + " - missing, assuming text.");
        Open("add");
    }

    void Delete() {
        if (IsAlreadyOpened("delete"))
            return;
        const P4File* pFile = P4State::Find(m_State.files, m_Name);
        if (!pFile || pFile->headAction == "delete")
            return PrintError(m_Path + " - file(s) not on client.");
        std::filesystem::remove(Local(m_Name));
        Open("delete");
    }

    void Integrate() {
        std::string target;
        if (!ToName(m_Target, target))
            return;
        if (!P4State::Find(m_State.files, m_Name))
            return PrintError(m_Path + " - no such file(s).");
        if (P4State::Find(m_State.opened, target))
            return PrintInfo(Depot(target) + " - can't branch from " + Depot(m_Name) + "#1 without -d or -Ds flag");
        if (P4State::Find(m_State.files, target))
            return PrintError("All revision(s) already integrated.");
        Fetch(m_Name, target);
        m_State.opened.push_back({target, "branch", m_Change});
        PrintInfo(Depot(target) + "#1 - branch/sync from " + Depot(m_Name) + "#1");
    }

    bool RevertOne(const P4Opened& opened) const {
        const auto& [name, action, change] = opened;
        const bool isNew = action == "add" || action == "branch";
        if (HasOption('a') && (isNew || ReadAll(Local(name)) != ReadAll(Head(name))))
            return false;
        PrintInfo(Depot(name) + (isNew ? "#none" : "#1") + " - was " + action +
                  (action == "add"      ? ", abandoned"
                   : action == "branch" ? ", deleted"
                                        : ", reverted"));
        if (action == "branch")
            std::filesystem::remove(Local(name));
        else if (!isNew)
            Fetch(name, name);
        return true;
    }
    void Revert() {
        bool found = false;
        std::erase_if(m_State.opened, [&](const P4Opened& opened) {
            if (!IsMeant(opened.name) || !IsInChange(opened))
                return false;
            found = true;
            return RevertOne(opened);
        });
        if (!found)
            PrintError(m_Path + " - file(s) not opened " + (m_HasChange ? "in that changelist." : "on this client."));
    }

    void Opened() {
        bool found = false;
        for (const P4Opened& opened : m_State.opened) {
            if (!IsMeant(opened.name) || !IsInChange(opened))
                continue;
            found = true;
            PrintInfo(Depot(opened.name) + "#1 - " + opened.action + " " + NameChange(opened.change) + " (text)");
        }
        if (!found)
            PrintError((m_Path.empty() ? "File(s)" : m_Path + " - file(s)") + " not opened on this client.");
    }

    void FileStatus() {
        const P4File* pFile = P4State::Find(m_State.files, m_Name);
        const P4Opened* pOpened = P4State::Find(m_State.opened, m_Name);
        if (!pFile && !pOpened)
            return PrintError(m_Path + " - no such file(s).");
        PrintInfo("depotFile " + Depot(m_Name), 1);
        PrintInfo("clientFile " + Local(m_Name).string(), 1);
        if (pFile) {
            PrintInfo("headAction " + pFile->headAction, 1);
            PrintInfo("headType " + pFile->type, 1);
            PrintInfo("headRev " + std::to_string(pFile->head), 1);
        }
        if (pOpened) {
            PrintInfo("action " + pOpened->action, 1);
            PrintInfo("change " + (pOpened->change ? std::to_string(pOpened->change) : "default"), 1);
        }
        if (const P4Other* pOther = P4State::Find(m_State.others, m_Name)) {
            PrintInfo("otherOpen0 " + pOther->user + "@their-ws", 2);
            PrintInfo("otherAction0 edit", 2);
            if (pOther->locked)
                PrintInfo("otherLock0 " + pOther->user + "@their-ws", 2);
        }
        PrintInfo("", 1);
    }

    void SyncOne(P4File& file) {
        const Path local = Local(file.name);
        const std::string revision = Depot(file.name) + "#" + std::to_string(file.head);
        if (file.headAction == "delete") {
            std::filesystem::remove(local);
            PrintInfo(revision + " - deleted as " + local.string());
        } else if (IsWritable(local))
            return PrintError("Can't clobber writable file " + local.string());
        else {
            Fetch(file.name, file.name);
            PrintInfo(revision + (file.have == 0 ? " - added as " : " - updating ") + local.string());
        }
        file.have = file.head;
    }
    void Sync() {
        bool found = false;
        bool old = false;
        for (P4File& file : m_State.files) {
            if (!IsMeant(file.name))
                continue;
            found = true;
            if (file.have == file.head)
                continue;
            old = true;
            SyncOne(file);
        }
        if (!old)
            PrintError(m_Path + (found ? " - file(s) up-to-date." : " - no such file(s)."));
    }

    void Changes() {
        // Some releases mark each line of a description, others only the first of an answer.
        const char* const pMark = exists(m_State.folder / "fault.marked") ? "info: " : "";
        for (auto it = m_State.changes.rbegin(); it != m_State.changes.rend(); ++it) {
            PrintInfo("Change " + std::to_string(it->number) + " on 2003/05/17 by " + m_State.user + "@" +
                      m_State.client + " *pending*");
            for (const std::string& line : {std::string(), "\t" + it->description, std::string()})
                std::cout << pMark << line << '\n';
        }
    }

    void Change() { return HasOption('i') ? MakeChange() : DeleteChange(); }
    void MakeChange() {
        std::map<std::string, std::string> fields;
        for (std::string line; std::getline(std::cin, line);)
            if (const size_t colon = line.find(": "); colon != std::string::npos)
                fields[line.substr(0, colon)] = line.substr(colon + 2);
        const std::string description = fields["Description"];
        fields.erase("Description");
        const std::map<std::string, std::string> wanted = {
            {"Change", "new"}, {"Client", m_State.client}, {"User", m_State.user}, {"Status", "new"}};
        if (fields != wanted || description.empty())
            return PrintError("Error in change specification.\nMissing required field 'Description'.");
        m_State.changes.push_back({m_State.nextChange, description});
        PrintInfo("Change " + std::to_string(m_State.nextChange++) + " created.");
    }
    void DeleteChange() {
        const auto count = std::ranges::count(m_State.opened, m_Change, &P4Opened::change);
        if (count > 0)
            return PrintInfo("Change " + m_ChangeText + " has " + std::to_string(count) +
                             " open file(s) associated with it and can't be deleted.");
        std::erase_if(m_State.changes, [&](const P4Change& change) { return change.number == m_Change; });
        PrintInfo("Change " + m_ChangeText + " deleted.");
    }

    P4State& m_State;
    std::string m_Path; // the first word that is no option
    std::string m_Name; // the same below the root
    std::string m_Target;
    std::string m_Options;
    std::string m_ChangeText;
    int m_Change = 0;
    bool m_HasChange = false;
    bool m_HasErrors = false;
};
