#include "Tests/Host/App/ChildProgram.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A file for one of the child's streams; it has no name, and goes when it is closed.
class StreamFile {
public:
    StreamFile() {
        std::string path = (std::filesystem::temp_directory_path() / "pvxhost-stream-XXXXXX").string();
        m_File = mkstemp(path.data());
        if (m_File < 0)
            throw std::runtime_error("no temporary file");
        unlink(path.c_str());
    }
    ~StreamFile() { close(m_File); }
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;

    void Fill(const std::string& text) const {
        if (write(m_File, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            throw std::runtime_error("temporary file can't be written");
        lseek(m_File, 0, SEEK_SET);
    }

    std::string Read() const {
        lseek(m_File, 0, SEEK_SET);
        std::string text;
        std::array<char, 4096> block;
        for (ssize_t count = 0; (count = read(m_File, block.data(), block.size())) > 0;)
            text.append(block.data(), static_cast<size_t>(count));
        return text;
    }

    int m_File = -1;
};

[[noreturn]] void BecomeProgram(const std::string& path, const std::vector<std::string>& words,
                                const std::vector<std::string>& variables) {
    // What whoever runs the tests has set for pvxhost isn't meant for this.
    for (const char* pName : {"PVXHOST_HOME", "PVXHOST_MODULE"})
        unsetenv(pName);
    for (const std::string& variable : variables) {
        const size_t equals = variable.find('=');
        setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
    std::vector<char*> arguments{const_cast<char*>(path.c_str())};
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(path.c_str(), arguments.data());
    _exit(127);
}

} // namespace

ProgramResult RunProgram(const std::string& name, const std::vector<std::string>& words,
                         const std::vector<std::string>& variables, const std::string& input, size_t fileLimit) {
    const std::string path = std::string(PVX_PROGRAM_FOLDER) + "/" + name;
    const StreamFile in, out, err;
    in.Fill(input);
    const pid_t child = fork();
    if (child == 0) {
        dup2(in.m_File, STDIN_FILENO);
        dup2(out.m_File, STDOUT_FILENO);
        dup2(err.m_File, STDERR_FILENO);
        if (const rlimit limit{fileLimit, fileLimit}; fileLimit != 0)
            setrlimit(RLIMIT_FSIZE, &limit);
        BecomeProgram(path, words, variables);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        throw std::runtime_error("can't run " + path);
    return {
        .status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), .out = out.Read(), .err = err.Read()};
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}
