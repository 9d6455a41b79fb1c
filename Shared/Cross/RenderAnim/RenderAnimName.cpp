#include "Shared/Cross/RenderAnim/RenderAnimName.h"

namespace ra {

namespace {

// Never destroyed, so that names stay good in whatever goes at the end of the process.
Dictionary& GetDictionary() {
    static Dictionary& s_dictionary = *new Dictionary(true);
    return s_dictionary;
}

} // namespace

constinit const Name Name::INVALID;

Name::Name(const char* pText) {
    if (pText)
        GetDictionary().Intern(m_Key, pText);
}

bool Name::Find(const char* pText, Name& out) { return pText && GetDictionary().Find(pText, out.m_Key); }

const char* Name::GetText(uint32_t value) {
    return value == INVALID.GetValue() ? nullptr : GetDictionary().GetString(value);
}

} // namespace ra
