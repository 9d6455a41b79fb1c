#pragma once

#include <functional>
#include <string>
#include <string_view>

// What happens to the names in a set of folders, from the moment each was added, in the order in which it happened.
// The system queues an event before the call that causes it comes back, so whoever has emptied the queue knows all.
class FolderWatch {
public:
    struct Event {
        int folder;            // as Add gave it
        std::string_view name; // empty: the folder itself went, or moved, or events were lost
        bool isThere;          // created or moved in; otherwise deleted or moved out
        bool isWritten;        // its content changed; only with Contents
    };
    enum Scope { Names, Contents };

    FolderWatch() = default;
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // Opens the queue, unless it is open. False when the system has no more of them.
    bool Open();
    void Close();
    bool IsOpen() const { return m_Queue >= 0; }
    // A native path. Below 0 when the folder isn't one or can't be watched reliably, such as one on another machine.
    // A folder that is added again, under whatever path, gets the same number.
    int Add(const std::string& folder, Scope scope);
    // Tells of all that has happened since the last call. A callback doesn't close the watch.
    void Poll(const std::function<void(const Event&)>& callback);

private:
    int m_Queue = -1;
};
