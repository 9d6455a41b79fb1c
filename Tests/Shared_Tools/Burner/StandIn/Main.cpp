// Plays the burner for the tests of its client. What it does stands in the environment's BURNER_STANDIN, step by step,
// with semicolons between them; bytes are in hex, with blanks as one likes:
//
//     connect          meets the server on the pipe
//     read             takes a message and logs it as a line in hex
//     send BYTES       sends a message
//     flood BYTES      sends it until nobody takes it any more
//     sleep MS
//     exit STATUS      at once, with all that is open
//
// At the end it closes the pipe, which waits until all was taken. Its log is the file that BURNER_STANDIN_LOG names;
// the first line is the program's own file, the second its working folder.

#include "Shared/PC/Win32Util/NamedPipe.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include <unistd.h>

namespace {

std::string FromHex(std::istream& words) {
    std::string bytes;
    std::string digits;
    for (std::string word; words >> word;)
        digits += word;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

bool Send(NamedPipe& pipe, const std::string& bytes) {
    return pipe.Write(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

void Read(NamedPipe& pipe, std::ostream& log) {
    char piece[4096];
    uint32_t size = 0;
    for (bool more = true; more;) {
        if (!pipe.Read(piece, sizeof piece, size, more)) {
            log << "gone";
            break;
        }
        for (uint32_t i = 0; i < size; ++i) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(piece[i])));
            log << digits;
        }
    }
    log << std::endl;
}

void Play(NamedPipe& pipe, std::istream& words, std::ostream& log) {
    std::string verb;
    words >> verb;
    int number = 0;
    if (verb == "connect" && !(pipe.Open() && pipe.Connect()))
        log << "no server" << std::endl;
    else if (verb == "read")
        Read(pipe, log);
    else if (verb == "send")
        Send(pipe, FromHex(words));
    else if (verb == "flood")
        for (const std::string bytes = FromHex(words); Send(pipe, bytes);) {
        }
    else if (verb == "sleep" && words >> number)
        std::this_thread::sleep_for(std::chrono::milliseconds(number));
    else if (verb == "exit" && words >> number)
        _exit(number);
}

const char* GetSetting(const char* pName) {
    const char* pValue = std::getenv(pName);
    return pValue ? pValue : "";
}

} // namespace

int main(int argc, char** argv) {
    std::ofstream log(GetSetting("BURNER_STANDIN_LOG"));
    log << std::filesystem::read_symlink("/proc/self/exe").string() << std::endl
        << std::filesystem::current_path().string() << std::endl;
    for (int i = 1; i < argc; ++i)
        log << "argument " << argv[i] << std::endl;
    NamedPipe pipe("BurnerPipe", NamedPipe::Role::Client);
    std::istringstream steps(GetSetting("BURNER_STANDIN"));
    for (std::string step; std::getline(steps, step, ';');) {
        std::istringstream words(step);
        Play(pipe, words, log);
    }
    pipe.Close();
    log << "end" << std::endl;
    return 0;
}
