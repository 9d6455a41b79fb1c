#include "Shared/Cross/Debug/Log/ProcessLog.h"

#include "Shared/Cross/Debug/Log/LogFileIOPort.h"
#include "Shared/Cross/Debug/db.h"

#include <memory>

namespace ProcessLog {

namespace {

void WriteMessage(dbMessage message);

// Takes its subscription back when it goes: a module that is unloaded with its log open must leave nothing behind.
class Subscription {
public:
    Subscription() {
        dbAddWarningSubscriber(WriteMessage);
        dbAddErrorSubscriber(WriteMessage);
    }
    ~Subscription() {
        dbRemoveWarningSubscriber(WriteMessage);
        dbRemoveErrorSubscriber(WriteMessage);
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
};

struct Log {
    LogFileIOPort port;
    std::unique_ptr<Subscription> pSubscription; // goes ahead of the port that it writes to
};

std::unique_ptr<Log> s_pLog;

void WriteMessage(dbMessage message) {
    for (const char* pLine : message)
        s_pLog->port.Write(pLine);
}

} // namespace

bool Open(const char* pPath, bool sendWithReport) {
    dbAssertText(pPath && *pPath, "name && strlen(name)");
    dbAssertText(!s_pLog, "!s_pLog");
    if (!pPath || !*pPath || s_pLog)
        return false;
    auto pLog = std::make_unique<Log>();
    if (!pLog->port.Open(pPath, sendWithReport)) {
        dbWarningf("LOG -- unable to make '%s'", pPath);
        return false;
    }
    s_pLog = std::move(pLog);
    s_pLog->pSubscription = std::make_unique<Subscription>();
    return true;
}

void Close(int status) {
    if (!s_pLog)
        return;
    s_pLog->pSubscription.reset();
    s_pLog->port.Close(status);
    s_pLog.reset();
}

bool IsOpen() { return static_cast<bool>(s_pLog); }

std::string GetPath() { return s_pLog ? s_pLog->port.GetPath() : std::string(); }

} // namespace ProcessLog
