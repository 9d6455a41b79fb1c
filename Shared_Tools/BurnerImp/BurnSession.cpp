#include "Shared_Tools/BurnerImp/BurnSession.h"

#include "Shared/PC/Win32Util/NamedPipe.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"
#include "Shared_Tools/BurnerImp/BurnJob.h"
#include "Shared_Tools/BurnerImp/BurnReport.h"
#include "Shared_Tools/BurnerImp/Services.h"

#include <cstdio>
#include <stdexcept>
#include <thread>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds s_ServerPause{20};

bool ConnectWithin(NamedPipe& pipe, milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!pipe.Open()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(s_ServerPause);
    }
    return pipe.Connect();
}

class LostServer {};

NamedPipeRawMsg Receive(NamedPipe& pipe) {
    NamedPipeRawMsg raw;
    if (NamedPipeMsg::ReadMsg(pipe, raw))
        return raw;
    bool hasData = false;
    if (!pipe.Peek(hasData))
        throw LostServer();
    throw std::runtime_error("a message came that is none");
}

template <class T>
T Parse(const NamedPipeRawMsg& raw, const char* pName) {
    T msg;
    bool good = false;
    std::string reason;
    try {
        good = NamedPipeMsg::ParseMsg(raw, msg);
    } catch (const std::exception& error) {
        reason = std::string(": ") + error.what();
    }
    if (!good)
        throw std::runtime_error(std::string("the ") + pName + " message is damaged" + reason);
    return msg;
}

void RequireSent(bool sent) {
    if (!sent)
        throw LostServer();
}

BurnerSetupMsg ReceiveSetup(NamedPipe& pipe) {
    const NamedPipeRawMsg raw = Receive(pipe);
    if (!NamedPipeMsg::IsMsg<BurnerSetupMsg>(raw))
        throw std::runtime_error("the first message has to be the setup");
    auto setup = Parse<BurnerSetupMsg>(raw, "setup");
    if (setup.setupValue != s_BurnerSetupValue)
        throw std::runtime_error("the setup has the value " + std::to_string(setup.setupValue) +
                                 ", this burner takes " + std::to_string(s_BurnerSetupValue));
    return setup;
}

bool BurnRequest(const BurnRequestMsg& request, BurnReport& report) {
    const BurnOptions options = MakeOptions(request);
    const std::vector<std::string> files = FindBurnFiles(request.directory, request.pattern, options.subfolders);
    if (files.empty())
        report.AddWarning(BurnReport::OwnSource,
                          "no file in '" + request.directory + "' matches '" + request.pattern + "'");
    return BurnFiles(files, options, report);
}

template <class T>
bool BurnList(const NamedPipeRawMsg& raw, BurnReport& report) {
    const T list = Parse<T>(raw, "file list");
    return BurnFiles(list.files, MakeListOptions(list.changelist), report);
}

bool BurnMessage(const NamedPipeRawMsg& raw, BurnReport& report) {
    if (NamedPipeMsg::IsMsg<BurnRequestMsg>(raw))
        return BurnRequest(Parse<BurnRequestMsg>(raw, "request"), report);
    if (NamedPipeMsg::IsMsg<BurnFileListMsg>(raw))
        return BurnList<BurnFileListMsg>(raw, report);
    if (NamedPipeMsg::IsMsg<BurnUpdateFileListMsg>(raw))
        return BurnList<BurnUpdateFileListMsg>(raw, report);
    throw std::runtime_error("the second message has to be a job");
}

void RunJob(NamedPipe& pipe) {
    const BurnerSetupMsg setup = ReceiveSetup(pipe);
    const BurnServices services(setup.pipelinePath);
    RequireSent(NamedPipeMsg::SendMsg(pipe, BurnerReadyMsg{.version = s_BurnerVersion}));
    BurnReport report(pipe);
    const bool good = BurnMessage(Receive(pipe), report);
    RequireSent(NamedPipeMsg::SendMsg(pipe, BurnerResultMsg{.result = good ? 1 : 0, .messages = report.Take()}));
}

void SendError(NamedPipe& pipe, const char* pText) {
    BurnerErrorMsg error;
    AddBurnerError(error.messages, BurnReport::OwnSource, "%.1000s", pText);
    NamedPipeMsg::SendMsg(pipe, error);
}

} // namespace

BurnStatus RunBurnSession(milliseconds serverWait) {
    NamedPipe pipe(s_BurnerPipeName, NamedPipe::Role::Client);
    if (!ConnectWithin(pipe, serverWait)) {
        std::fprintf(stderr, "BurnerImp: nobody offers the pipe \"%s\"; the burner is started by the tools\n",
                     s_BurnerPipeName);
        return Burn_NoServer;
    }
    try {
        RunJob(pipe);
        return Burn_Done;
    } catch (const LostServer&) {
    } catch (const std::exception& error) {
        SendError(pipe, error.what());
    }
    return Burn_Failed;
}
