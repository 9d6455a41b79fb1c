#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace Inv {

// What a debug tool is shown of the warehouse's contents.
class DebugToolDumpInfo {
public:
    // Of the kinds of resources; a number that tools know is never used for another kind.
    enum class ItemType : uint32_t { Other = 0, Mesh = 5 };

    struct ResourceItem {
        ItemType type = ItemType::Other;
        std::string typeName;
        std::string name;
        std::string frame;
        uint32_t refCount = 0;
        std::string details = {}; // what its kind has to say, with commas between
    };

    void Add(ResourceItem item) { m_Items.push_back(std::move(item)); }
    // By kind, in the order of first use, and then by key.
    const std::vector<ResourceItem>& GetItems() const { return m_Items; }

private:
    std::vector<ResourceItem> m_Items;
};

} // namespace Inv
