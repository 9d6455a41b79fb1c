#include "Host/Sdk/Resources.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

template <class T>
struct Table {
    HINSTANCE handle;
    std::span<const T> entries;
};

// Made at first use, so that a module may register while it is being loaded.
template <class T>
std::vector<Table<T>>& GetTables() {
    static std::vector<Table<T>> s_Tables;
    return s_Tables;
}

template <class T, class Id>
const T* FindEntry(HINSTANCE handle, Id id) {
    for (const Table<T>& table : GetTables<T>()) {
        if (table.handle != handle)
            continue;
        const auto it = std::ranges::find(table.entries, id, &T::id);
        if (it != table.entries.end())
            return &*it;
    }
    return nullptr;
}

template <class T>
void RemoveTables(HINSTANCE handle) {
    std::erase_if(GetTables<T>(), [handle](const Table<T>& table) { return table.handle == handle; });
}

} // namespace

void RegisterStrings(HINSTANCE handle, std::span<const StringResource> strings) {
    GetTables<StringResource>().push_back({handle, strings});
}

void RegisterDialogs(HINSTANCE handle, std::span<const DialogTemplate> dialogs) {
    GetTables<DialogTemplate>().push_back({handle, dialogs});
}

void UnregisterResources(HINSTANCE handle) {
    RemoveTables<StringResource>(handle);
    RemoveTables<DialogTemplate>(handle);
}

int LoadString(HINSTANCE handle, unsigned id, std::span<char> buffer) {
    if (buffer.empty())
        return -1;
    buffer[0] = '\0';
    const StringResource* pString = FindEntry<StringResource>(handle, id);
    if (!pString)
        return -1;
    const size_t length = std::min(std::strlen(pString->pText), buffer.size() - 1);
    std::memcpy(buffer.data(), pString->pText, length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

const DialogTemplate* FindDialog(HINSTANCE handle, int id) { return FindEntry<DialogTemplate>(handle, id); }
