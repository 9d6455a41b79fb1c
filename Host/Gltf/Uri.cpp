#include "Host/Gltf/Uri.h"

#include <array>
#include <cstdint>

namespace gltf {

namespace {

constexpr std::string_view s_DataScheme = "data:";
constexpr std::string_view s_Base64Mark = ";base64";
constexpr uint8_t s_NoDigit = 0xff;

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

constexpr std::array<uint8_t, 256> MakeBase64Digits() {
    std::array<uint8_t, 256> digits{};
    digits.fill(s_NoDigit);
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (size_t i = 0; i < alphabet.size(); ++i)
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<uint8_t>(i);
    return digits;
}

constexpr std::array<uint8_t, 256> s_Base64Digits = MakeBase64Digits();

} // namespace

std::string DecodePercent(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
        if (low < 0) {
            decoded += text[i];
            continue;
        }
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return decoded;
}

bool IsDataUri(std::string_view uri) { return uri.starts_with(s_DataScheme); }

std::optional<DataUri> SplitDataUri(std::string_view uri) {
    const size_t comma = uri.find(',');
    if (!IsDataUri(uri) || comma == std::string_view::npos)
        return std::nullopt;
    std::string_view header = uri.substr(s_DataScheme.size(), comma - s_DataScheme.size());
    if (!header.ends_with(s_Base64Mark))
        return std::nullopt;
    header.remove_suffix(s_Base64Mark.size());
    return DataUri{.mimeType = header.substr(0, header.find(';')), .base64 = uri.substr(comma + 1)};
}

std::optional<std::vector<std::byte>> DecodeBase64(std::string_view text) {
    while (text.ends_with('='))
        text.remove_suffix(1);
    // One digit alone is less than a byte.
    if (text.size() % 4 == 1)
        return std::nullopt;
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const char c : text) {
        const uint8_t digit = s_Base64Digits[static_cast<unsigned char>(c)];
        if (digit == s_NoDigit)
            return std::nullopt;
        bits = (bits << 6) | digit;
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes.push_back(static_cast<std::byte>(bits >> bitCount));
        }
    }
    return bytes;
}

std::optional<std::string> ResolveFileUri(std::string_view folder, std::string_view uri) {
    const std::string name = DecodePercent(uri);
    if (name.empty() || name.front() == '/' || name.front() == '\\' || name.find('\0') != std::string::npos)
        return std::nullopt;
    // A colon ahead of the first separator ends a scheme or a drive.
    const size_t colon = name.find(':');
    if (colon != std::string::npos && colon < name.find_first_of("/\\"))
        return std::nullopt;
    std::string path(folder);
    return path += name;
}

} // namespace gltf
