#include "Shared_Tools/Burner/BurnerSpawn.h"

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/Win32Util/NamedPipe.h"
#include "Shared_Tools/Burner/BurnerProcess.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include <chrono>
#include <exception>
#include <iterator>
#include <memory>
#include <thread>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds s_PollInterval{50};
// A burner that says more in one job has gone wild.
constexpr size_t s_MaxMessages = 1000000;

// The process stands behind the pipe, so that it goes first.
std::unique_ptr<NamedPipe> s_pAsycnPipe;
std::unique_ptr<BurnerProcess> s_pBurnerProc;
size_t s_MessageCount = 0; // of the job in progress

constexpr const char* s_ReadError = "Failed to read a post burn request message from the burner";

// False, with the error.
bool Fail(BurnerMessageList& messages, const char* pText) {
    AddBurnerError(messages, BurnerSpawn::s_Source, "%s", pText);
    return false;
}

// False with an error: the given one, or that of a text too long.
template <class T>
bool Parse(const NamedPipeRawMsg& raw, T& msg, BurnerMessageList& messages, const char* pError) {
    try {
        return NamedPipeMsg::ParseMsg(raw, msg) || Fail(messages, pError);
    } catch (const std::exception& error) {
        return Fail(messages, error.what());
    }
}

void Append(BurnerMessageList& messages, BurnerMessageList& more) {
    messages.insert(messages.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

bool SetUp(NamedPipe& pipe, BurnerMessageList& messages) {
    const BurnerSetupMsg setup{.pipelinePath = Pipeline::IsInitialized() ? Pipeline::Get()->GetIniFile() : ""};
    if (!NamedPipeMsg::SendMsg(pipe, setup))
        return Fail(messages, "Failed to Send the Setup Message to the burner");
    constexpr const char* readError = "Failed to read a Message from the Burner Process";
    NamedPipeRawMsg raw;
    if (!NamedPipeMsg::ReadMsg(pipe, raw))
        return Fail(messages, readError);
    if (NamedPipeMsg::IsMsg<BurnerErrorMsg>(raw)) {
        BurnerErrorMsg errors;
        if (Parse(raw, errors, messages, readError))
            Append(messages, errors.messages);
        return false;
    }
    if (!NamedPipeMsg::IsMsg<BurnerReadyMsg>(raw))
        return Fail(messages, "Unknown message read from the burner");
    BurnerReadyMsg ready;
    return Parse(raw, ready, messages, readError);
}

bool Spawn(NamedPipe& pipe, BurnerProcess& process, const std::string& burnerPath, BurnerMessageList& messages) {
    if (!pipe.Open())
        return Fail(messages, "Failed to create Pipe for communication");
    if (!process.Start(burnerPath))
        return Fail(messages, process.GetErrorText().c_str());
    // There is no limit to this wait, but nobody comes any more when the process has ended.
    if (!pipe.Connect([&] { return process.IsRunning(); }))
        return Fail(messages, "Burner failed to connect to the Burner Process");
    return SetUp(pipe, messages);
}

// The messages of one list, unless the burner has gone wild.
bool TakeMessages(BurnerMessageList& messages, BurnerMessageList& more) {
    s_MessageCount += more.size();
    if (s_MessageCount > s_MaxMessages)
        return Fail(messages, "Too many messages from the burner");
    Append(messages, more);
    return true;
}

// One message of the job. False when the job is over because of it.
bool TakeMessage(const NamedPipeRawMsg& raw, bool& done, int32_t& result, BurnerMessageList& messages) {
    if (NamedPipeMsg::IsMsg<BurnerErrorMsg>(raw)) {
        BurnerErrorMsg errors;
        if (Parse(raw, errors, messages, s_ReadError))
            TakeMessages(messages, errors.messages);
        return false;
    }
    if (NamedPipeMsg::IsMsg<BurnerUpdateMsg>(raw)) {
        BurnerUpdateMsg update;
        return Parse(raw, update, messages, s_ReadError) && TakeMessages(messages, update.messages);
    }
    if (NamedPipeMsg::IsMsg<BurnerResultMsg>(raw)) {
        BurnerResultMsg end;
        if (!Parse(raw, end, messages, s_ReadError) || !TakeMessages(messages, end.messages))
            return false;
        result = end.result;
        BurnerSpawn::StopBurner();
        done = true;
        return true;
    }
    return Fail(messages, "Post burn Request message received is Unknown");
}

} // namespace

namespace BurnerSpawn {

bool StartBurner(const std::string& burnerPath, BurnerMessageList& messages) {
    if (s_pAsycnPipe || s_pBurnerProc)
        return Fail(messages, "Burn already in progress");
    auto pPipe = std::make_unique<NamedPipe>(s_BurnerPipeName, NamedPipe::Role::Server);
    auto pProcess = std::make_unique<BurnerProcess>();
    if (!Spawn(*pPipe, *pProcess, burnerPath, messages))
        return false;
    s_pAsycnPipe = std::move(pPipe);
    s_pBurnerProc = std::move(pProcess);
    s_MessageCount = 0;
    return true;
}

void StopBurner() {
    s_pBurnerProc.reset();
    s_pAsycnPipe.reset();
}

NamedPipe& GetPipe() { return *s_pAsycnPipe; }

bool Update(bool& done, int32_t& result, BurnerMessageList& messages) {
    done = false;
    result = 0;
    if (!s_pAsycnPipe || !s_pBurnerProc)
        return Fail(messages, "Asyncronous Burn not in progress");
    bool hasData = false;
    NamedPipeRawMsg raw;
    const bool alive = s_pAsycnPipe->Peek(hasData) && s_pBurnerProc->IsRunning();
    if (alive && !hasData) {
        std::this_thread::sleep_for(s_PollInterval);
        return true;
    }
    const bool isRead = alive && NamedPipeMsg::ReadMsg(*s_pAsycnPipe, raw);
    if (isRead ? TakeMessage(raw, done, result, messages) : Fail(messages, s_ReadError))
        return true;
    StopBurner();
    return false;
}

} // namespace BurnerSpawn
