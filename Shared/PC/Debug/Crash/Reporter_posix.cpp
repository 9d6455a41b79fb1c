#include "Shared/PC/Debug/Crash/Reporter.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace {

constexpr char s_ConfigName[] = "bugreport.ini";

void AppendOption(std::string& line, const char* pOption, const std::string& value) {
    if (!value.empty())
        line.append(pOption).append(value);
}

void AppendQuoted(std::string& line, const std::string& text) {
    line += '"';
    for (const char c : text) {
        if (c == '"')
            line += '\\';
        line += c;
    }
    line += '"';
}

} // namespace

std::string BuildReporterCommandLine(const ReporterCall& call) {
    std::string line = '"' + call.folder + call.file + "\" " + std::to_string(call.process) + " \"" + call.executable +
                       "\" \"" + call.reason + '"';
    if (!call.furtherText.empty())
        line += " -i \"" + call.furtherText + '"';
    AppendOption(line, " -v ", call.version);
    AppendOption(line, " -l ", call.language);
    AppendOption(line, " -c ", call.config);
    if (!call.isCrash)
        line += " -m";
    for (const std::string& text : call.texts) {
        line += " -t ";
        AppendQuoted(line, text);
    }
    for (const ReporterFile& file : call.files) {
        line += file.deleteAfter ? " -fd " : " -f ";
        AppendQuoted(line, file.name);
    }
    return line;
}

std::vector<std::string> SplitCommandLine(const std::string& line) {
    std::vector<std::string> words;
    bool isInWord = false;
    bool isQuoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const bool isEscaped = line[i] == '\\' && i + 1 < line.size() && line[i + 1] == '"';
        if (line[i] == ' ' && !isQuoted) {
            isInWord = false;
            continue;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        if (isEscaped)
            words.back() += line[++i];
        else if (line[i] == '"')
            isQuoted = !isQuoted;
        else
            words.back() += line[i];
    }
    return words;
}

std::string FindReporterConfig(const std::string& configFolder, const std::string& executable) {
    const auto exists = [](const std::string& path) { return access(path.c_str(), R_OK) == 0; };
    if (std::string path = configFolder + s_ConfigName; exists(path))
        return path;
    for (size_t slash = executable.rfind('/'); slash != std::string::npos;) {
        std::string path = executable.substr(0, slash + 1) + s_ConfigName;
        if (exists(path))
            return path;
        slash = slash == 0 ? std::string::npos : executable.rfind('/', slash - 1);
    }
    return {};
}

bool StartDetached(const std::vector<std::string>& words) {
    if (words.empty())
        return false;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = 0;
    const int error = posix_spawn(&process, arguments[0], &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0;
}
