#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"
#include "Shared_Tools/Burner/Protocol/NamedPipeMsg.h"

#include <cstdint>
#include <string>

// The process and the pipe of the one job that can be in progress in a process. What fails is false with an error in
// the messages, and leaves none.
namespace BurnerSpawn {

constexpr const char* s_Source = "Burner"; // of its messages

// Starts the program, meets it on the pipe and sets it up.
bool StartBurner(const std::string& burnerPath, BurnerMessageList& messages);
// Ends both, the process first.
void StopBurner();
// The pipe of the job in progress, which is there after StartBurner.
NamedPipe& GetPipe();

// Hands the started burner its job. `pError` is what is said when that fails.
template <class T>
bool SendJob(const T& job, const char* pError, BurnerMessageList& messages) {
    if (NamedPipeMsg::SendMsg(GetPipe(), job))
        return true;
    AddBurnerError(messages, s_Source, "%s", pError);
    StopBurner();
    return false;
}

// See Burner::Update.
bool Update(bool& done, int32_t& result, BurnerMessageList& messages);

} // namespace BurnerSpawn
