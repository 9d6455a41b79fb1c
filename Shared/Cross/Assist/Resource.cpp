#include "Shared/Cross/Assist/Inventory.h"

#include "Shared/Cross/Assist/Warehouse.h"
#include "Shared/Cross/Util/Hash.h"

#include <algorithm>
#include <string_view>

namespace Inv {

NamedResource::~NamedResource() {
    const dbNoThrowScope noThrow;
    dbAssertText(!m_InInventory, "dbBreak");
}

void NamedResource::SetName(const char* pName) {
    dbAssertText(!m_InInventory, "dbBreak");
    if (m_InInventory)
        return;
    m_HasName = pName;
    m_Name = pName ? pName : "";
}

void ResourceTypeInfo::TranslateName(std::string& outName, const char* pName) const {
    std::string_view name = pName;
    if (const size_t colon = name.rfind(':'); colon != std::string_view::npos)
        name.remove_prefix(colon + 1);
    outName = name;
    std::ranges::replace(outName, '\\', '/');
    // A dot in a folder's name is none of an extension.
    const size_t dot = outName.rfind('.');
    if (dot != std::string::npos && outName.find('/', dot) == std::string::npos)
        outName.erase(dot);
    std::ranges::transform(outName, outName.begin(), ToLower);
}

void ResourceTypeInfo::Destroy(std::unique_ptr<NamedResource> pData) { pData.reset(); }

Resource::Resource(std::unique_ptr<NamedResource> pData)
    : m_pName(pData ? pData->GetName() : nullptr), m_pData(std::move(pData)) {}

Resource::~Resource() {
    const dbNoThrowScope noThrow;
    WarehouseImp::ReportEnd(*this);
    dbAssertText(!m_pData, "m_pData == NULL");
}

} // namespace Inv
