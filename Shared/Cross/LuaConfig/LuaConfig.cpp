#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include "Shared/Cross/Debug/db.h"

std::string LuaConfig::Iterator::Key() const {
    const Entry& entry = (*m_pEntries)[m_Index];
    const auto keytype = entry.keyType;
    dbAssertText(keytype == Type_String || keytype == Type_Number, "keytype == LUA_TSTRING || keytype == LUA_TNUMBER");
    return entry.key;
}
