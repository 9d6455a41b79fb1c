#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// What the stand-in server knows, kept in a folder between its runs, which may belong to tests that look into it:
//
//   server       one record a line, fields apart by tabs, the kind ahead (see Save)
//   depot/       the head revisions, by their names below the client's root
//   log          the commands that were run, a line each, words apart by blanks
//   fault.KIND   what goes wrong (see Main.cpp)
//
// Names of files are relative to the client's root.

struct P4File {
    std::string name;
    int head = 1;
    std::string headAction = "add";
    std::string type = "text"; // "+l" at its end: opened by one user at a time
    int have = 0;              // the revision in the client's folder, 0 for none
};

struct P4Opened {
    std::string name;
    std::string action; // edit, add, branch, delete
    int change = 0;     // 0 for the default changelist
};

struct P4Other { // opened by somebody else
    std::string name;
    std::string user;
    bool locked = false;
};

struct P4Change { // pending
    int number = 0;
    std::string description; // of one line
};

struct P4State {
    std::filesystem::path folder;
    std::string root; // the client's, without a slash at its end
    std::string client = "art-ws";
    std::string user = "artist";
    int nextChange = 1;
    std::vector<P4File> files;
    std::vector<P4Opened> opened;
    std::vector<P4Other> others;
    std::vector<P4Change> changes;

    template <class Record>
    static Record* Find(std::vector<Record>& records, const std::string& name) {
        const auto it = std::ranges::find(records, name, &Record::name);
        return it != records.end() ? &*it : nullptr;
    }
    P4Change* FindChange(int number) {
        const auto it = std::ranges::find(changes, number, &P4Change::number);
        return it != changes.end() ? &*it : nullptr;
    }

    void Load() {
        std::ifstream stream(folder / "server");
        for (std::string line; std::getline(stream, line);) {
            std::vector<std::string> f;
            std::istringstream fields(line);
            for (std::string field; std::getline(fields, field, '\t');)
                f.push_back(field);
            if (f.size() == 5 && f[0] == "client") {
                root = f[1];
                client = f[2];
                user = f[3];
                nextChange = std::stoi(f[4]);
            } else if (f.size() == 6 && f[0] == "file")
                files.push_back({f[1], std::stoi(f[2]), f[3], f[4], std::stoi(f[5])});
            else if (f.size() == 4 && f[0] == "opened")
                opened.push_back({f[1], f[2], std::stoi(f[3])});
            else if (f.size() == 4 && f[0] == "other")
                others.push_back({f[1], f[2], f[3] == "1"});
            else if (f.size() == 3 && f[0] == "change")
                changes.push_back({std::stoi(f[1]), f[2]});
        }
    }
    void Save() const {
        std::ofstream stream(folder / "server");
        stream << "client\t" << root << '\t' << client << '\t' << user << '\t' << nextChange << '\n';
        for (const P4File& f : files)
            stream << "file\t" << f.name << '\t' << f.head << '\t' << f.headAction << '\t' << f.type << '\t' << f.have
                   << '\n';
        for (const P4Opened& o : opened)
            stream << "opened\t" << o.name << '\t' << o.action << '\t' << o.change << '\n';
        for (const P4Other& o : others)
            stream << "other\t" << o.name << '\t' << o.user << '\t' << (o.locked ? 1 : 0) << '\n';
        for (const P4Change& c : changes)
            stream << "change\t" << c.number << '\t' << c.description << '\n';
    }
};
