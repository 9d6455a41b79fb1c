#include "Shared/Cross/RevControlAPI/P4Program.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RevControlAPI/P4Answers.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Win32Util/ChildProcess.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr const char* s_ProgramVariable = "PVX_P4";
constexpr const char* s_LimitVariable = "PVX_P4_LIMIT";
// One large file over a slow line passes without a word.
constexpr double s_Limit = 300;
constexpr double s_LongestLimit = 7 * 24 * 3600;
// Who and where we are is told at once, or not at all.
constexpr Milliseconds s_InitLimit{60000};
// Many files may take their time, as long as they keep coming.
constexpr int s_TotalFactor = 12;

std::string GetProgram() {
    const char* pName = std::getenv(s_ProgramVariable);
    return pName && *pName ? pName : "p4";
}

double ReadLimit() {
    const char* pText = std::getenv(s_LimitVariable);
    if (!pText || !*pText)
        return s_Limit;
    const std::string_view text = pText;
    double value = 0;
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && pEnd == text.data() + text.size() && value > 0)
        return std::min(value, s_LongestLimit);
    dbWarningf("REVCONTROL -- %s is '%s', and has to be a number of seconds; %g are taken", s_LimitVariable, pText,
               s_Limit);
    return s_Limit;
}

Milliseconds GetLimit() { return Milliseconds(std::max<int64_t>(1, static_cast<int64_t>(ReadLimit() * 1000))); }

// A name that is no path of ours, as a place in the depot is none, stays.
std::string Translate(const ClientArgument& argument) {
    if (!argument.isFile || argument.text.empty())
        return argument.text;
    std::string native = OSFile::ToNative(argument.text);
    return native.empty() ? argument.text : native;
}

// What the program tells of the connection.
class InfoUser : public ClientUser {
public:
    void InputData(std::string&, Error&) override {}
    void OutputError(const char* pText) override {
        if (error.empty())
            error = pText;
    }
    void OutputInfo(char, const char* pText) override {
        TakeField(pText, "User name: ", user);
        TakeField(pText, "Client name: ", client);
    }
    void OutputText(const char*, int) override {}

    std::string user;
    std::string client;
    std::string error;

private:
    static void TakeField(std::string_view line, std::string_view name, std::string& value) {
        if (line.starts_with(name))
            value = line.substr(name.size());
    }
};

std::string TellLimit(Milliseconds limit) {
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%g", static_cast<double>(limit.count()) / 1000);
    return "within " + std::string(seconds) + " seconds (" + s_LimitVariable + "); it was ended";
}

// Why a command that was started isn't done; empty when it is.
std::string Judge(ChildProcess::Outcome outcome, ChildProcess& process, const P4Answers& answers, Milliseconds limit) {
    switch (outcome) {
    case ChildProcess::Outcome::Silent:
        return "no answer " + TellLimit(limit);
    case ChildProcess::Outcome::TooLong:
        return "not done " + TellLimit(limit * s_TotalFactor);
    case ChildProcess::Outcome::Refused:
    case ChildProcess::Outcome::Ended:
        break;
    }
    if (answers.HasExit())
        return "";
    return "broke off with exit status " + std::to_string(process.GetExitCode().value_or(-1));
}

} // namespace

void P4Program::Init(Error& error) {
    error.Clear();
    m_Dropped = false;
    m_Arguments.clear();
    InfoUser info;
    Execute("info", info, std::min(GetLimit(), s_InitLimit));
    m_User = info.user;
    m_Client = info.client;
    if (!info.error.empty())
        error.Set(info.error);
    else if (m_User.empty() || m_Client.empty())
        error.Set("'" + GetProgram() + " info' doesn't tell the names of user and client");
}

void P4Program::Final(Error& error) {
    error.Clear();
    m_Dropped = false;
}

void P4Program::SetArgv(std::span<const ClientArgument> arguments) {
    m_Arguments.clear();
    std::ranges::transform(arguments, std::back_inserter(m_Arguments), Translate);
}

void P4Program::Run(const char* pCommand, ClientUser& user) { Execute(pCommand, user, GetLimit()); }

void P4Program::Execute(const std::string& command, ClientUser& user, Milliseconds limit) {
    std::vector<std::string> words = {"-s"};
    if (!m_Port.empty())
        words.insert(words.end(), {"-p", m_Port});
    words.push_back(command);
    words.insert(words.end(), m_Arguments.begin(), m_Arguments.end());
    std::string input;
    Error inputError;
    // The program takes a form from its input only when told so.
    if (std::ranges::find(m_Arguments, "-i") != m_Arguments.end())
        user.InputData(input, inputError);
    m_Arguments.clear();

    P4Answers answers(user);
    const std::string reason = Execute(words, input, answers, limit);
    answers.Finish();
    m_Dropped = !reason.empty() || answers.IsConnectionLost();
    if (reason.empty())
        return;
    const std::string text = GetProgram() + " " + command + ": " + reason;
    dbWarningf("REVCONTROL -- %s", text.c_str());
    user.OutputError(text.c_str());
}

// Why it failed; empty if it didn't.
std::string P4Program::Execute(const std::vector<std::string>& words, const std::string& input, P4Answers& answers,
                               Milliseconds limit) const {
    using Stream = ChildProcess::Stream;
    ChildProcess process;
    if (!process.Start({.program = GetProgram(),
                        .arguments = words,
                        .workingFolder = {},
                        .input = input.empty() ? Stream::None : Stream::Pipe,
                        .output = Stream::Pipe,
                        .error = Stream::Pipe}))
        return "can't be run (" + process.GetError() + "); install it, or name it in the environment's " +
               s_ProgramVariable;
    const auto onOutput = [&](std::string_view piece) { return answers.AddOutput(piece), true; };
    const auto onError = [&](std::string_view piece) { return answers.AddError(piece), true; };
    const auto outcome = process.Exchange(input, onOutput, onError, {limit, limit * s_TotalFactor});
    std::string reason = Judge(outcome, process, answers, limit);
    if (outcome != ChildProcess::Outcome::Ended)
        process.Kill();
    return reason;
}
