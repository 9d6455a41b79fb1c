#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace scene {

// The user-property buffer of a node: keys with a text each. Keys are compared without regard to case (of ASCII
// letters); of equal keys the first counts.
class UserProperties {
public:
    void Add(std::string key, std::string value) { m_Items.push_back({std::move(key), std::move(value)}); }

    // Null when the key is missing. Good until the next Add.
    const std::string* Find(std::string_view key) const;

private:
    struct Item {
        std::string key;
        std::string value;
    };
    std::vector<Item> m_Items; // few, most often none
};

} // namespace scene
