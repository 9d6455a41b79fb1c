#pragma once

#include <functional>
#include <string>
#include <string_view>

// What happens to the names in a set of folders, from the moment each was added, in the order in which it happened.
// The system queues an event before the call that causes it comes back, so whoever has emptied the queue knows all.
class FolderWatch {
public:
    enum class What {
        There,   // the name was created or moved in
        Away,    // it was deleted or moved out
        Written, // its content changed, and whoever wrote it has closed it; only with Contents
        Moved,   // the folder itself got another place or name; it stays watched
        Gone,    // the folder itself was deleted, or taken out of the watch; its number isn't given again
        Lost,    // more happened than the system could queue
    };
    struct Event {
        int folder;            // as Add gave it; below 0 for what was lost
        std::string_view name; // empty for what isn't about a name: Moved, Gone and Lost
        What what;
        bool isFolder; // the name is a folder's
    };
    enum Scope { Names, Contents };

    FolderWatch() = default;
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // Opens the queue, unless it is open. False, with errno set, when the system has no more of them.
    bool Open();
    void Close();
    bool IsOpen() const { return m_Queue >= 0; }
    // For messages; below 0 when closed.
    int GetHandle() const { return m_Queue; }
    // A native path. Below 0, with errno set, when the folder isn't one or can't be watched reliably, such as one on
    // another machine (ENOTSUP). A folder that is added again, under whatever path, gets the same number. A link isn't
    // followed unless a slash ends the path.
    int Add(const std::string& folder, Scope scope);
    void Remove(int folder);
    // Tells of all that had happened by the time of the call. False, with errno set, when the system refuses. A
    // callback may add and remove folders, but doesn't close the watch.
    bool Poll(const std::function<void(const Event&)>& callback);

    // What lies in a folder right now, by native path. Links to folders are left out, as no watch goes through them.
    static void List(const std::string& folder, const std::function<void(std::string_view name, bool isFolder)>& tell);

private:
    int m_Queue = -1;
};
