#include "Host/Gltf/Json.h"

#include <rapidjson/error/en.h>

#include <cmath>
#include <string>

namespace gltf {

namespace {

// glTF itself needs eight levels; user properties may nest a little more.
constexpr unsigned s_DeepestJson = 100;

// Hands the parser's events on to the document, and stops the parser where arrays and objects nest too deep.
class DepthLimit {
public:
    explicit DepthLimit(rapidjson::Document& document) : m_Document(document) {}

    bool IsExceeded() const { return m_Depth > s_DeepestJson; }

    bool Null() { return m_Document.Null(); }
    bool Bool(bool value) { return m_Document.Bool(value); }
    bool Int(int value) { return m_Document.Int(value); }
    bool Uint(unsigned value) { return m_Document.Uint(value); }
    bool Int64(int64_t value) { return m_Document.Int64(value); }
    bool Uint64(uint64_t value) { return m_Document.Uint64(value); }
    bool Double(double value) { return m_Document.Double(value); }
    bool RawNumber(const char* pText, rapidjson::SizeType size, bool copy) {
        return m_Document.RawNumber(pText, size, copy);
    }
    bool String(const char* pText, rapidjson::SizeType size, bool copy) { return m_Document.String(pText, size, copy); }
    bool Key(const char* pText, rapidjson::SizeType size, bool copy) { return m_Document.Key(pText, size, copy); }
    bool StartObject() { return Enter() && m_Document.StartObject(); }
    bool EndObject(rapidjson::SizeType count) {
        --m_Depth;
        return m_Document.EndObject(count);
    }
    bool StartArray() { return Enter() && m_Document.StartArray(); }
    bool EndArray(rapidjson::SizeType count) {
        --m_Depth;
        return m_Document.EndArray(count);
    }

private:
    bool Enter() { return ++m_Depth <= s_DeepestJson; }

    rapidjson::Document& m_Document;
    unsigned m_Depth = 0;
};

[[noreturn]] void FailType(const Place& place, std::string_view key, std::string_view wanted) {
    FailDamaged(place, Quoted(key) + " is not " + std::string(wanted));
}

[[noreturn]] void FailSyntax(const rapidjson::ParseResult& result) {
    FailDamaged({}, std::string("its JSON can't be read: ") + rapidjson::GetParseError_En(result.Code()) + " (byte " +
                        std::to_string(result.Offset()) + ")");
}

} // namespace

void ParseJson(std::span<char> text, rapidjson::Document& document) {
    bool tooDeep = false;
    rapidjson::ParseResult result;
    const auto generate = [&](rapidjson::Document& target) {
        DepthLimit limit(target);
        rapidjson::Reader reader;
        rapidjson::InsituStringStream stream(text.data());
        result = reader.Parse<rapidjson::kParseInsituFlag>(stream, limit);
        tooDeep = limit.IsExceeded();
        return !result.IsError();
    };
    document.Populate(generate);
    if (tooDeep)
        FailDamaged({}, "its JSON nests deeper than " + std::to_string(s_DeepestJson) + " levels");
    if (result.IsError())
        FailSyntax(result);
    if (!document.IsObject())
        FailDamaged({}, "its JSON is not an object");
}

const Json* FindMember(const Json& object, std::string_view key) {
    if (!object.IsObject())
        return nullptr;
    const Json name(rapidjson::StringRef(key.data(), key.size()));
    const auto found = object.FindMember(name);
    return found != object.MemberEnd() ? &found->value : nullptr;
}

const Json* FindArray(const Place& place, const Json& object, std::string_view key) {
    const Json* pValue = FindMember(object, key);
    if (pValue && !pValue->IsArray())
        FailType(place, key, "an array");
    return pValue;
}

const Json* FindObject(const Place& place, const Json& object, std::string_view key) {
    const Json* pValue = FindMember(object, key);
    if (pValue && !pValue->IsObject())
        FailType(place, key, "an object");
    return pValue;
}

bool ReadBool(const Place& place, const Json& object, std::string_view key, bool fallback) {
    const Json* pValue = FindMember(object, key);
    if (!pValue)
        return fallback;
    if (!pValue->IsBool())
        FailType(place, key, "true or false");
    return pValue->GetBool();
}

float ReadFloat(const Place& place, const Json& object, std::string_view key, float fallback) {
    const Json* pValue = FindMember(object, key);
    if (!pValue)
        return fallback;
    const std::optional<float> number = ToFloat(*pValue);
    if (!number)
        FailType(place, key, "a number");
    return *number;
}

std::string_view ReadString(const Place& place, const Json& object, std::string_view key) {
    const Json* pValue = FindMember(object, key);
    if (!pValue)
        return {};
    const std::optional<std::string_view> text = ToString(*pValue);
    if (!text)
        FailType(place, key, "a string");
    return *text;
}

uint64_t ReadSize(const Place& place, const Json& object, std::string_view key, uint64_t fallback) {
    const Json* pValue = FindMember(object, key);
    if (!pValue)
        return fallback;
    if (pValue->IsUint64())
        return pValue->GetUint64();
    // Some writers print whole numbers with a point.
    const double number = pValue->IsDouble() ? pValue->GetDouble() : -1.0;
    if (!(number >= 0.0 && number <= 9007199254740992.0) || number != std::floor(number))
        FailType(place, key, "a whole number of 0 or above");
    return static_cast<uint64_t>(number);
}

uint64_t ReadRequiredSize(const Place& place, const Json& object, std::string_view key) {
    if (!FindMember(object, key))
        FailDamaged(place, Quoted(key) + " is missing");
    return ReadSize(place, object, key, 0);
}

bool ReadFloats(const Place& place, const Json& object, std::string_view key, std::span<float> out) {
    const Json* pArray = FindArray(place, object, key);
    if (!pArray)
        return false;
    if (pArray->Size() != out.size())
        FailType(place, key, "an array of " + std::to_string(out.size()) + " numbers");
    for (rapidjson::SizeType i = 0; i < pArray->Size(); ++i) {
        const std::optional<float> number = ToFloat((*pArray)[i]);
        if (!number)
            FailType(place, key, "an array of numbers");
        out[i] = *number;
    }
    return true;
}

int32_t ToIndex(const Place& place, const Json& value, std::string_view key, size_t count) {
    if (!value.IsUint())
        FailType(place, key, "an index");
    if (value.GetUint() >= count || value.GetUint() > INT32_MAX)
        FailDamaged(place, Quoted(key) + " is " + std::to_string(value.GetUint()) + ", but the file has only " +
                               std::to_string(count) + " of them");
    return static_cast<int32_t>(value.GetUint());
}

int32_t ReadIndex(const Place& place, const Json& object, std::string_view key, size_t count) {
    const Json* pValue = FindMember(object, key);
    return pValue ? ToIndex(place, *pValue, key, count) : -1;
}

std::optional<float> ToFloat(const Json& value) {
    if (!value.IsNumber())
        return std::nullopt;
    const double number = value.GetDouble();
    if (!(std::abs(number) <= 3.4028234663852886e38))
        return std::nullopt;
    return static_cast<float>(number);
}

std::optional<std::string_view> ToString(const Json& value) {
    if (!value.IsString())
        return std::nullopt;
    const std::string_view text(value.GetString(), value.GetStringLength());
    return text.substr(0, text.find('\0'));
}

} // namespace gltf
