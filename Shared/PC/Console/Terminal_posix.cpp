#include "Shared/PC/Console/Terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Terminal {

namespace {

constexpr int s_DefaultWidth = 80;

int Descriptor(Stream stream) {
    switch (stream) {
    case Stream::Input:
        return STDIN_FILENO;
    case Stream::Output:
        return STDOUT_FILENO;
    case Stream::Error:
        break;
    }
    return STDERR_FILENO;
}

} // namespace

bool IsTerminal(Stream stream) { return isatty(Descriptor(stream)) == 1; }

bool WantsColour(Stream stream) {
    return IsTerminal(stream) && GetVariable("NO_COLOR").empty() && GetVariable("TERM") != "dumb";
}

int GetWidth(Stream stream) {
    winsize size{};
    if (ioctl(Descriptor(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return s_DefaultWidth;
    return size.ws_col;
}

std::string GetVariable(const char* pName) {
    const char* pValue = std::getenv(pName);
    return pValue ? pValue : "";
}

} // namespace Terminal
