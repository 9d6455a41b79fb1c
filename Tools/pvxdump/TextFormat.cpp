#include "Tools/pvxdump/TextFormat.h"

#include <cstdio>

#include <glm/gtc/type_ptr.hpp>

namespace TextFormat {

namespace {

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

} // namespace

std::string Count(uint64_t count) {
    std::string text = std::to_string(count);
    for (size_t place = text.size(); place > 3; place -= 3)
        text.insert(place - 3, 1, ',');
    return text;
}

std::string Count(uint64_t count, const char* pOne, const char* pMany) {
    return Count(count) + ' ' + (count == 1 ? pOne : pMany);
}

std::string Number(double value, int decimals) {
    char text[400]; // the largest float has 39 digits, the largest double 309
    std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    std::string number = text;
    if (number.find('.') != std::string::npos) {
        number.erase(number.find_last_not_of('0') + 1);
        if (number.back() == '.')
            number.pop_back();
    }
    return number == "-0" ? "0" : number;
}

std::string Numbers(std::span<const float> values, int decimals) {
    std::string text;
    for (const float value : values)
        text += (text.empty() ? "" : " ") + Number(static_cast<double>(value), decimals);
    return text;
}

std::string Vector(const glm::vec3& v) { return '(' + Numbers({glm::value_ptr(v), 3}) + ')'; }

std::string Name(std::string_view name) {
    std::string text;
    for (const char c : name)
        if (IsControl(c)) {
            char code[8];
            std::snprintf(code, sizeof(code), "\\x%02X", static_cast<unsigned char>(c));
            text += code;
        } else
            text += c;
    return text;
}

std::string Code(uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFF);
    for (const char c : text)
        if (c < 0x20 || c >= 0x7F) {
            char number[16];
            std::snprintf(number, sizeof(number), "0x%08X", code);
            return number;
        }
    return text;
}

} // namespace TextFormat
