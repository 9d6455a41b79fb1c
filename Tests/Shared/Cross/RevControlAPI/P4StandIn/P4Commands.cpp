#include "Tests/Shared/Cross/RevControlAPI/P4StandIn/P4Commands.h"

#include <cstdio>
#include <iostream>
#include <iterator>
#include <map>

namespace fs = std::filesystem;

namespace {

constexpr fs::perms s_AnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

void SetWritable(const fs::path& path, bool writable) {
    std::error_code ignored;
    fs::permissions(path, writable ? fs::perms::owner_write : s_AnyWrite,
                    writable ? fs::perm_options::add : fs::perm_options::remove, ignored);
}

bool IsWritable(const fs::path& path) {
    return fs::exists(path) && (fs::status(path).permissions() & fs::perms::owner_write) != fs::perms::none;
}

std::string ReadAll(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// As the server leaves a file: for reading only.
void Fetch(const fs::path& head, const fs::path& local) {
    fs::create_directories(local.parent_path());
    fs::remove(local);
    fs::copy_file(head, local);
    SetWritable(local, false);
}

bool IsTree(const std::string& path) { return path.ends_with("..."); }

} // namespace

void P4Commands::Run(const std::string& command, std::vector<std::string> words) {
    if (!TakeOptions(words))
        return PrintError("Invalid changelist/client/label/date '@" + m_ChangeText + "'.");
    if (command == "info")
        return Info();
    if (command == "change")
        return HasOption('i') ? MakeChange() : DeleteChange();
    if (command == "changes")
        return Changes();
    if (words.empty() && command != "opened")
        return PrintError("Missing/wrong number of arguments.");
    if (command == "integrate")
        return Integrate(words[0], words.size() > 1 ? words[1] : "");
    static const std::map<std::string, void (P4Commands::*)(const std::string&)> s_OfOneFile = {
        {"opened", &P4Commands::Opened}, {"edit", &P4Commands::Edit},     {"add", &P4Commands::Add},
        {"delete", &P4Commands::Delete}, {"revert", &P4Commands::Revert}, {"fstat", &P4Commands::FStat},
        {"sync", &P4Commands::Sync}};
    if (const auto it = s_OfOneFile.find(command); it != s_OfOneFile.end())
        return (this->*it->second)(words.empty() ? "" : words[0]);
    PrintError("Unknown command.  Try 'p4 help' for info.");
}

bool P4Commands::TakeOptions(std::vector<std::string>& words) {
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

bool P4Commands::IsInChange(const P4Opened& opened) const { return !m_HasChange || opened.change == m_Change; }

std::string P4Commands::NameChange(int number) const {
    return number == 0 ? "default change" : "change " + std::to_string(number);
}

std::string P4Commands::Depot(const std::string& name) const { return "//depot/" + name; }

bool P4Commands::ToName(const std::string& path, std::string& name) {
    if (path.starts_with("//depot/"))
        name = path.substr(8);
    else if (path.starts_with(m_State.root + "/"))
        name = path.substr(m_State.root.size() + 1);
    else
        return PrintError("Path '" + path + "' is not under client's root '" + m_State.root + "'."), false;
    return true;
}

void P4Commands::PrintInfo(const std::string& text, int level) {
    std::cout << "info";
    if (level > 0)
        std::cout << level;
    std::cout << ": " << text << '\n';
}

void P4Commands::PrintError(const std::string& text) {
    std::cout << "error: " << text << '\n';
    m_HasErrors = true;
}

void P4Commands::Info() {
    PrintInfo("User name: " + m_State.user);
    PrintInfo("Client name: " + m_State.client);
    PrintInfo("Client root: " + m_State.root);
    PrintInfo("Server address: depot:1666");
}

void P4Commands::Open(const std::string& name, const std::string& action) {
    m_State.opened.push_back({name, action, m_Change});
    PrintInfo(Depot(name) + "#1 - opened for " + action);
    for (const P4Other& other : m_State.others)
        if (other.name == name)
            PrintInfo(Depot(name) + " - also opened by " + other.user + "@their-ws", 1);
}

bool P4Commands::IsAlreadyOpened(const std::string& name, const std::string& action) {
    P4Opened* pOpened = P4State::Find(m_State.opened, name);
    if (!pOpened)
        return false;
    if (pOpened->action == "branch" && action == "edit") {
        pOpened->action = "add";
        PrintInfo(Depot(name) + "#1 - reopened for add");
    } else if (pOpened->action != action)
        PrintInfo(Depot(name) + "#1 - can't " + action + " (already opened for " + pOpened->action + ")");
    else if (m_HasChange && pOpened->change != m_Change)
        PrintInfo(Depot(name) + "#1 - can't change from " + NameChange(pOpened->change) + " - use 'reopen'");
    else
        PrintInfo(Depot(name) + "#1 - currently opened for " + action);
    return true;
}

void P4Commands::Edit(const std::string& path) {
    std::string name;
    if (!ToName(path, name) || IsAlreadyOpened(name, "edit"))
        return;
    const P4File* pFile = P4State::Find(m_State.files, name);
    if (!pFile || pFile->headAction == "delete" || pFile->have == 0)
        return PrintError(path + " - file(s) not on client.");
    const P4Other* pOther = P4State::Find(m_State.others, name);
    if (pOther && pFile->type.ends_with("+l"))
        return PrintInfo(Depot(name) + " - can't edit exclusive file already opened");
    SetWritable(Local(name), true);
    Open(name, "edit");
}

void P4Commands::Add(const std::string& path) {
    std::string name;
    if (!ToName(path, name) || IsAlreadyOpened(name, "add"))
        return;
    const P4File* pFile = P4State::Find(m_State.files, name);
    if (pFile && pFile->headAction != "delete")
        return PrintInfo(Depot(name) + " - can't add existing file");
    if (!fs::exists(Local(name)))
        PrintInfo(path + " - missing, assuming text.");
    Open(name, "add");
}

void P4Commands::Delete(const std::string& path) {
    std::string name;
    if (!ToName(path, name) || IsAlreadyOpened(name, "delete"))
        return;
    const P4File* pFile = P4State::Find(m_State.files, name);
    if (!pFile || pFile->headAction == "delete")
        return PrintError(path + " - file(s) not on client.");
    fs::remove(Local(name));
    Open(name, "delete");
}

void P4Commands::Integrate(const std::string& from, const std::string& to) {
    std::string fromName;
    std::string toName;
    if (!ToName(from, fromName) || !ToName(to, toName))
        return;
    if (!P4State::Find(m_State.files, fromName))
        return PrintError(from + " - no such file(s).");
    if (P4State::Find(m_State.opened, toName))
        return PrintInfo(Depot(toName) + " - can't branch from " + Depot(fromName) + "#1 without -d or -Ds flag");
    if (P4State::Find(m_State.files, toName))
        return PrintError("All revision(s) already integrated.");
    Fetch(Head(fromName), Local(toName));
    m_State.opened.push_back({toName, "branch", m_Change});
    PrintInfo(Depot(toName) + "#1 - branch/sync from " + Depot(fromName) + "#1");
}

bool P4Commands::RevertOne(const P4Opened& opened) {
    const bool isNew = opened.action == "add" || opened.action == "branch";
    if (HasOption('a') && (isNew || ReadAll(Local(opened.name)) != ReadAll(Head(opened.name))))
        return false;
    const std::string was = Depot(opened.name) + (isNew ? "#none" : "#1") + " - was " + opened.action;
    if (opened.action == "add")
        PrintInfo(was + ", abandoned");
    else if (opened.action == "branch")
        PrintInfo(was + ", deleted");
    else
        PrintInfo(was + ", reverted");
    if (opened.action == "branch")
        fs::remove(Local(opened.name));
    else if (!isNew)
        Fetch(Head(opened.name), Local(opened.name));
    return true;
}

void P4Commands::Revert(const std::string& path) {
    std::string name;
    const bool all = path == "//...";
    if (!all && !ToName(path, name))
        return;
    bool found = false;
    std::erase_if(m_State.opened, [&](const P4Opened& opened) {
        if ((!all && opened.name != name) || !IsInChange(opened))
            return false;
        found = true;
        return RevertOne(opened);
    });
    if (!found)
        PrintError(path + (m_HasChange ? " - file(s) not opened in that changelist."
                                       : " - file(s) not opened on this client."));
}

void P4Commands::Opened(const std::string& path) {
    std::string name;
    if (!path.empty() && !ToName(path, name))
        return;
    bool found = false;
    for (const P4Opened& opened : m_State.opened) {
        if ((!name.empty() && opened.name != name) || !IsInChange(opened))
            continue;
        found = true;
        PrintInfo(Depot(opened.name) + "#1 - " + opened.action + " " + NameChange(opened.change) + " (text)");
    }
    if (!found)
        PrintError((path.empty() ? "File(s)" : path + " - file(s)") + " not opened on this client.");
}

void P4Commands::FStat(const std::string& path) {
    std::string name;
    if (!ToName(path, name))
        return;
    const P4File* pFile = P4State::Find(m_State.files, name);
    const P4Opened* pOpened = P4State::Find(m_State.opened, name);
    if (!pFile && !pOpened)
        return PrintError(path + " - no such file(s).");
    PrintInfo("depotFile " + Depot(name), 1);
    PrintInfo("clientFile " + Local(name).string(), 1);
    if (pFile) {
        PrintInfo("headAction " + pFile->headAction, 1);
        PrintInfo("headType " + pFile->type, 1);
        PrintInfo("headRev " + std::to_string(pFile->head), 1);
    }
    if (pOpened) {
        PrintInfo("action " + pOpened->action, 1);
        PrintInfo("change " + (pOpened->change ? std::to_string(pOpened->change) : "default"), 1);
    }
    int count = 0;
    for (const P4Other& other : m_State.others) {
        if (other.name != name)
            continue;
        const std::string number = std::to_string(count++);
        PrintInfo("otherOpen" + number + " " + other.user + "@their-ws", 2);
        PrintInfo("otherAction" + number + " " + other.action, 2);
        if (other.locked)
            PrintInfo("otherLock" + number + " " + other.user + "@their-ws", 2);
    }
    PrintInfo("", 1);
}

void P4Commands::SyncOne(P4File& file) {
    const fs::path local = Local(file.name);
    if (file.headAction == "delete") {
        fs::remove(local);
        PrintInfo(Depot(file.name) + "#" + std::to_string(file.head) + " - deleted as " + local.string());
    } else if (IsWritable(local))
        return PrintError("Can't clobber writable file " + local.string());
    else {
        const bool isNew = file.have == 0;
        Fetch(Head(file.name), local);
        PrintInfo(Depot(file.name) + "#" + std::to_string(file.head) + (isNew ? " - added as " : " - updating ") +
                  local.string());
    }
    file.have = file.head;
}

void P4Commands::Sync(const std::string& path) {
    std::string name;
    if (!ToName(path, name))
        return;
    const std::string folder = IsTree(name) ? name.substr(0, name.size() - 3) : "";
    bool found = false;
    bool old = false;
    for (P4File& file : m_State.files) {
        if (IsTree(name) ? !file.name.starts_with(folder) : file.name != name)
            continue;
        found = true;
        if (file.have == file.head)
            continue;
        old = true;
        SyncOne(file);
    }
    if (!found)
        PrintError(path + " - no such file(s).");
    else if (!old)
        PrintError(path + " - file(s) up-to-date.");
}

void P4Commands::Changes() {
    // Some releases mark each line of a description, others only the first of an answer.
    const bool marked = fs::exists(m_State.folder / "fault.marked");
    for (auto it = m_State.changes.rbegin(); it != m_State.changes.rend(); ++it) {
        PrintInfo("Change " + std::to_string(it->number) + " on 2003/05/17 by " + m_State.user + "@" + it->client +
                  " *pending*");
        for (const std::string& line : {std::string(), "\t" + it->description, std::string()})
            if (marked)
                PrintInfo(line);
            else
                std::cout << line << '\n';
    }
}

void P4Commands::MakeChange() {
    const std::string form{std::istreambuf_iterator<char>(std::cin), {}};
    P4Change change{.number = m_State.nextChange, .client = {}, .description = {}};
    std::string user;
    bool isNew = false;
    std::istringstream lines(form);
    for (std::string line; std::getline(lines, line);) {
        const size_t colon = line.find(": ");
        const std::string field = line.substr(0, colon);
        const std::string value = colon != std::string::npos ? line.substr(colon + 2) : "";
        if (field == "Change")
            isNew = value == "new";
        else if (field == "Client")
            change.client = value;
        else if (field == "User")
            user = value;
        else if (field == "Description")
            change.description = value;
        else if (field != "Status")
            return PrintError("Error in change specification.\nUnknown field name '" + field + "'.");
    }
    if (!isNew || change.client != m_State.client || user != m_State.user || change.description.empty())
        return PrintError("Error in change specification.\nMissing required field 'Description'.");
    m_State.changes.push_back(change);
    PrintInfo("Change " + std::to_string(m_State.nextChange++) + " created.");
}

void P4Commands::DeleteChange() {
    const auto count = std::ranges::count(m_State.opened, m_Change, &P4Opened::change);
    const std::string text = "Change " + m_ChangeText;
    if (count > 0)
        return PrintInfo(text + " has " + std::to_string(count) +
                         " open file(s) associated with it and can't be deleted.");
    std::erase_if(m_State.changes, [&](const P4Change& change) { return change.number == m_Change; });
    PrintInfo(text + " deleted.");
}
