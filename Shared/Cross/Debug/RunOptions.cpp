#include "Shared/Cross/Debug/RunOptions.h"

#include "Shared/PC/Debug/Process.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string Normalise(std::string word) {
    word.erase(0, std::min(word.find_first_not_of("-/"), word.size()));
    std::ranges::transform(word, word.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return word;
}

void AddWords(std::vector<std::string>& options, const std::string& line) {
    std::istringstream words(line);
    for (std::string word; words >> word;)
        options.push_back(Normalise(word));
}

std::vector<std::string> ReadOptions() {
    std::vector<std::string> options;
    std::ifstream file(Process::GetConfigFolder() + "runoptions.cfg");
    for (std::string line; std::getline(file, line);)
        if (!line.starts_with(';'))
            AddWords(options, line);
    AddWords(options, Process::GetCommandLine());
    return options;
}

} // namespace

bool RunOptions::IsSet(const char* pName) {
    static const std::vector<std::string> s_Options = ReadOptions();
    return std::ranges::find(s_Options, Normalise(pName)) != s_Options.end();
}
