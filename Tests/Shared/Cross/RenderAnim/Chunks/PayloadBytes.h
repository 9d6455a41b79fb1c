#pragma once

#include <bit>
#include <initializer_list>
#include <string>
#include <string_view>

#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"

// Fields of a payload, typed by hand.
class PayloadBytes {
public:
    PayloadBytes& U8(uint8_t value) { return Add(std::string(1, static_cast<char>(value))); }
    PayloadBytes& U16(std::initializer_list<uint16_t> values) {
        for (const uint16_t value : values)
            Add({static_cast<char>(value), static_cast<char>(value >> 8)});
        return *this;
    }
    PayloadBytes& U32(uint32_t value) { return Add(ChunkBytes::Number(value)); }
    PayloadBytes& F32(std::initializer_list<float> values) {
        for (const float value : values)
            U32(std::bit_cast<uint32_t>(value));
        return *this;
    }
    PayloadBytes& Text(std::string_view text) { return U32(static_cast<uint32_t>(text.size())).Add(std::string(text)); }
    PayloadBytes& Add(const std::string& bytes) {
        m_Bytes += bytes;
        return *this;
    }
    const std::string& Get() const { return m_Bytes; }

private:
    std::string m_Bytes;
};

// Chunks with names.
inline std::string NamedData(std::string_view id, std::string_view name, const std::string& payload, uint32_t version) {
    return ChunkBytes::Header("DATA", id, version, static_cast<uint32_t>(payload.size()),
                              static_cast<uint32_t>(name.size()) + 1) +
           std::string(name) + '\0' + payload;
}
inline std::string NamedFolder(std::string_view id, std::string_view name, const std::string& children,
                               uint32_t version) {
    return ChunkBytes::Header("FOLD", id, version, static_cast<uint32_t>(children.size()),
                              static_cast<uint32_t>(name.size()) + 1) +
           std::string(name) + '\0' + children;
}
