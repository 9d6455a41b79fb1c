#include "Host/Sdk/Primitive.h"

#include "Shared/Cross/Util/Hash.h"

#include <algorithm>
#include <string_view>

namespace {

// The latest registered first. Primitives are static objects of modules: a list through the objects themselves needs
// nothing to be constructed before them.
constinit Primitive* s_pFirst = nullptr;

} // namespace

Primitive::Primitive(const char* pName, Function function) : m_pName(pName), m_Function(function), m_pNext(s_pFirst) {
    s_pFirst = this;
}

Primitive::~Primitive() {
    Primitive** ppLink = &s_pFirst;
    while (*ppLink && *ppLink != this)
        ppLink = &(*ppLink)->m_pNext;
    if (*ppLink)
        *ppLink = m_pNext;
}

Value Primitive::Apply(std::span<const Value> arguments) const {
    return m_Function(arguments.data(), static_cast<int>(arguments.size()));
}

const Primitive* Primitive::Find(std::string_view name) {
    for (const Primitive* pEntry = s_pFirst; pEntry; pEntry = pEntry->m_pNext)
        if (std::ranges::equal(name, std::string_view(pEntry->m_pName), {}, ToLower, ToLower))
            return pEntry;
    return nullptr;
}

std::vector<const Primitive*> Primitive::GetAll() {
    std::vector<const Primitive*> all;
    for (const Primitive* pEntry = s_pFirst; pEntry; pEntry = pEntry->m_pNext)
        all.push_back(pEntry);
    std::ranges::stable_sort(all, [](const Primitive* pA, const Primitive* pB) {
        return std::string_view(pA->m_pName) < std::string_view(pB->m_pName);
    });
    return all;
}
