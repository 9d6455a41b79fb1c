#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Shared/Cross/RenderAnim/RenderAnimName.h"

namespace ra {

// Objects of one kind, which have a GetName, in the order of their file. Two may bear one name; the first of them is
// found by it. What the list gives is good as long as the object is in it.
template <class T>
class NamedList {
public:
    uint32_t GetCount() const { return static_cast<uint32_t>(m_pObjects.size()); }
    bool IsEmpty() const { return m_pObjects.empty(); }
    const T& operator[](uint32_t index) const { return *m_pObjects[index]; }
    T& operator[](uint32_t index) { return *m_pObjects[index]; }

    // Null without one.
    const T* Find(const Name& name) const {
        const auto it = m_Places.find(name);
        return it != m_Places.end() ? m_pObjects[it->second].get() : nullptr;
    }
    bool Has(const Name& name) const { return m_Places.contains(name); }

    // The object's name stays as it is from now on.
    T& Add(std::unique_ptr<T> pObject) {
        m_Places.try_emplace(pObject->GetName(), GetCount());
        return *m_pObjects.emplace_back(std::move(pObject));
    }
    void Clear() { *this = NamedList(); }
    // Leaves the list empty.
    std::vector<std::unique_ptr<T>> Take() {
        m_Places.clear();
        return std::exchange(m_pObjects, {});
    }

private:
    std::vector<std::unique_ptr<T>> m_pObjects;
    std::unordered_map<Name, uint32_t> m_Places; // only ever looked up
};

} // namespace ra
