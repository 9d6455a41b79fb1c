#pragma once

#include "Host/Sdk/Types.h"

#include <string>

class INode;

// The sets of file properties.
inline constexpr int PROPSET_SUMMARYINFO = 1;
inline constexpr int PROPSET_DOCSUMMARYINFO = 2;
inline constexpr int PROPSET_USERDEFINED = 4;

inline constexpr uint32_t PRSPEC_LPWSTR = 0;
inline constexpr uint32_t PRSPEC_PROPID = 1;

// How a file property is named: by a number for kind PRSPEC_PROPID, otherwise by a text.
struct PROPSPEC {
    uint32_t ulKind = PRSPEC_LPWSTR;
    uint32_t propid = 0;
    std::string name = {}; // UTF-8
};

// The type tags of a file property's value, and the member that each stands for.
inline constexpr uint16_t VT_I4 = 3;        // lVal
inline constexpr uint16_t VT_R4 = 4;        // fltVal
inline constexpr uint16_t VT_R8 = 5;        // dblVal
inline constexpr uint16_t VT_BOOL = 11;     // boolVal
inline constexpr uint16_t VT_LPSTR = 30;    // text
inline constexpr uint16_t VT_LPWSTR = 31;   // text, in UTF-8 all the same
inline constexpr uint16_t VT_FILETIME = 64; // filetime

struct PROPVARIANT {
    uint16_t vt = VT_I4;
    int32_t lVal = 0;
    float fltVal = 0.0f;
    double dblVal = 0.0;
    bool boolVal = false;
    uint64_t filetime = 0; // units of 100 ns since 1601-01-01
    std::string text = {};
};

// The host's main object, handed to a module for the time of one call.
class Interface {
public:
    virtual ~Interface();

    // Never null.
    virtual INode* GetRootNode() = 0;
    virtual Interval GetAnimRange() const = 0;

    // The owner of modal dialogs. May be null.
    virtual HWND GetMAXHWnd() const = 0;

    // File properties by set and index. Null outside 0..GetNumProperties(set)-1.
    virtual int GetNumProperties(int set) const = 0;
    virtual const PROPSPEC* GetPropertySpec(int set, int index) const = 0;
    virtual const PROPVARIANT* GetPropertyVariant(int set, int index) const = 0;
};
