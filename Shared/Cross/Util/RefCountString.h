#pragma once

#include <memory>
#include <string>
#include <string_view>

// A text that never changes and that copies share. The empty one takes no memory.
class RefCountString {
public:
    RefCountString() = default;
    // Null stands for no text.
    explicit RefCountString(const char* pText) : RefCountString(std::string_view(pText ? pText : "")) {}
    explicit RefCountString(std::string_view text)
        : m_Text(text.empty() ? nullptr : std::make_shared<const std::string>(text)) {}

    // Never null; good as long as any copy lives.
    const char* GetText() const { return m_Text ? m_Text->c_str() : ""; }
    std::string_view GetView() const { return m_Text ? std::string_view(*m_Text) : std::string_view(); }
    size_t GetLength() const { return m_Text ? m_Text->size() : 0; }
    bool IsEmpty() const { return !m_Text; }

    friend bool operator==(const RefCountString& left, const RefCountString& right) {
        return left.m_Text == right.m_Text || left.GetView() == right.GetView();
    }
    friend bool operator==(const RefCountString& left, std::string_view right) { return left.GetView() == right; }

private:
    std::shared_ptr<const std::string> m_Text;
};
