#pragma once

#include "Host/Gltf/Fault.h"

#include <rapidjson/document.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace gltf {

using Json = rapidjson::Value;

// Parses `text` in place: the document's strings point into it, so it has to outlive the document, and its last byte
// must be a NUL, which isn't part of the text. Faults when it isn't JSON, isn't an object, or nests deeper than any
// real scene does, since both the parser and all who walk the result recurse.
void ParseJson(std::span<char> text, rapidjson::Document& document);

// The member's value; null when there is none, or `object` is no object.
const Json* FindMember(const Json& object, std::string_view key);
// The same for a member that has to be an array or an object; faults when it is there and is something else.
const Json* FindArray(const Place& place, const Json& object, std::string_view key);
const Json* FindObject(const Place& place, const Json& object, std::string_view key);

// Members of a known type. Absent ones give the fallback, those of another type a fault that names place and key.
bool ReadBool(const Place& place, const Json& object, std::string_view key, bool fallback);
float ReadFloat(const Place& place, const Json& object, std::string_view key, float fallback);
std::string_view ReadString(const Place& place, const Json& object, std::string_view key);
// Whole numbers, 0 or above.
uint64_t ReadSize(const Place& place, const Json& object, std::string_view key, uint64_t fallback);
uint64_t ReadRequiredSize(const Place& place, const Json& object, std::string_view key);
// Exactly `out.size()` numbers. False, with `out` untouched, when there is no such member.
bool ReadFloats(const Place& place, const Json& object, std::string_view key, std::span<float> out);
// An index into a list of `count` things; -1 when there is no such member.
int32_t ReadIndex(const Place& place, const Json& object, std::string_view key, size_t count);
int32_t ToIndex(const Place& place, const Json& value, std::string_view key, size_t count);

// A number as a finite float; nothing for other types and for numbers beyond a float.
std::optional<float> ToFloat(const Json& value);
// A string up to its first NUL; nothing for other types.
std::optional<std::string_view> ToString(const Json& value);

// A string that is the name of a choice. False, with `out` untouched, for all else.
template <typename T, size_t Size>
bool ReadChoice(const Json& value, const std::pair<std::string_view, T> (&choices)[Size], std::optional<T>& out) {
    const std::optional<std::string_view> text = ToString(value);
    for (const auto& [name, choice] : choices)
        if (text == name) {
            out = choice;
            return true;
        }
    return false;
}

} // namespace gltf
