// Stands in for the p4 program: p4-standin -s [-p PORT] COMMAND [WORD ...], with the state of a server in the folder
// that P4STANDIN names. A file in that folder makes something go wrong:
//
//   fault.down             no server
//   fault.drop             a number: so many commands lose the connection
//   fault.hang             a command that never answers
//   fault.break            a command that breaks off
//   fault.marked           long descriptions have a mark on each line
//   fault.say.COMMAND      is printed in place of the answer

#include "Tests/Shared/Cross/RevControlAPI/P4StandIn/P4Commands.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace {

constexpr int s_BrokenStatus = 3;

class Faults {
public:
    explicit Faults(std::filesystem::path folder) : m_Folder(std::move(folder)) {}

    bool Has(const std::string& kind) const { return std::filesystem::exists(Path(kind)); }
    std::string Get(const std::string& kind) const {
        std::ostringstream text;
        text << std::ifstream(Path(kind)).rdbuf();
        return text.str();
    }
    bool Is(const std::string& kind, const std::string& command) const { return Has(kind) && Get(kind) == command; }
    // Whether there was one left.
    bool TakeOne(const std::string& kind) const {
        const int count = Has(kind) ? std::stoi(Get(kind)) : 0;
        if (count > 0)
            std::ofstream(Path(kind)) << count - 1;
        return count > 0;
    }

private:
    std::filesystem::path Path(const std::string& kind) const { return m_Folder / ("fault." + kind); }

    std::filesystem::path m_Folder;
};

int LoseConnection(const std::string& reason) {
    std::cout << "error: Perforce client error:\n\t" << reason << "\nexit: 1\n";
    return 1;
}

int Answer(P4State& state, const std::string& command, const std::vector<std::string>& words) {
    P4Commands commands(state);
    commands.Run(command, words);
    state.Save();
    std::cout << "exit: " << (commands.HasErrors() ? 1 : 0) << '\n';
    return commands.HasErrors() ? 1 : 0;
}

void Log(const std::filesystem::path& folder, const std::vector<std::string>& words) {
    std::ofstream log(folder / "log", std::ios::app);
    for (size_t i = 0; i < words.size(); ++i)
        log << (i ? " " : "") << words[i];
    log << '\n';
}

} // namespace

int main(int count, char** ppWords) {
    const char* const pFolder = std::getenv("P4STANDIN");
    std::vector<std::string> words(ppWords + 1, ppWords + count);
    if (!pFolder || words.size() < 2 || words[0] != "-s") {
        std::cerr << "Perforce client error: invalid usage\n";
        return 2;
    }
    P4State state;
    state.folder = pFolder;
    state.Load();
    Log(state.folder, words);
    words.erase(words.begin());
    if (words[0] == "-p")
        words.erase(words.begin(), words.begin() + 2);
    const std::string command = words.empty() ? "" : words[0];

    const Faults faults(state.folder);
    if (faults.Has("down"))
        return LoseConnection("Connect to server failed; check $P4PORT.\n\tTCP connect to depot:1666 failed.");
    if (command != "info" && faults.TakeOne("drop"))
        return LoseConnection("Partner exited unexpectedly.");
    if (faults.Is("hang", command))
        std::this_thread::sleep_for(std::chrono::hours(1));
    if (faults.Is("break", command)) {
        std::cout << "info: //depot/x#1 - ope" << std::flush;
        return s_BrokenStatus;
    }
    if (faults.Has("say." + command)) {
        std::cout << faults.Get("say." + command);
        return 0;
    }
    words.erase(words.begin());
    return Answer(state, command, words);
}
