#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class ByteStream;
struct lua_State;

// A configuration script and its values. One object is one state of the script language (Lua 5.0; what another release
// does otherwise is bridged in LuaBridge.h). Scripts get the base library and what is bound by hand: no files, no
// processes, no compiled code. A script that runs for too long or grows too large ends in an error.
//
// Tables are read and written by key, without the state's stack: there is a current table, at first the globals.
// A key that is a decimal number as a whole is that number, so "1" is the first element of a list, and no key can be a
// text of digits. An empty key and a number below 1 are the caller's mistake.
//
// A script's errors never leave this layer as exceptions: they are false, and a message. One thread at a time.
class LuaConfig {
public:
    enum ValueType : int {
        Type_Nil = 0,
        Type_Boolean = 1,
        Type_Number = 2,
        Type_String = 3,
        Type_Table = 4,
        Type_Function = 5,
        Type_UserData = 6,
        Type_Meta = 7, // the current table's metatable has a table under the key
    };

    // What scripts may use up, counted anew for each text that is run. Functions of metatables that reading and writing
    // entries calls go on with what is left.
    struct Limits {
        uint64_t instructions = 20'000'000;
        size_t memory = 64u << 20; // bytes of the whole state
        uint32_t milliseconds = 10'000;
    };

    // Where texts go to and come from. Without one, texts go to the log, there is nothing to import, and nobody
    // interrupts.
    struct Callbacks {
        std::function<void(const char* pText)> alert;  // of _ALERT
        std::function<void(const char* pText)> print;  // of print and _PRINT
        std::function<void(const char* pText)> report; // a script's errors, and what this layer has to say
        std::function<std::unique_ptr<ByteStream>(const char* pName)> import; // null when there is no such file
        std::function<bool()> interrupt; // asked every now and then; true ends the script with an error
    };

    // The name, which may be empty, leads the messages.
    explicit LuaConfig(const char* pName);
    LuaConfig(const char* pName, const Limits& limits);
    ~LuaConfig();
    LuaConfig(const LuaConfig&) = delete;
    LuaConfig& operator=(const LuaConfig&) = delete;

    const char* GetName() const { return m_Name.c_str(); }
    Callbacks& GetCallbacks() { return m_Callbacks; }

    // Of an entry of the current table; what its metatable's __index gives counts as its own.
    ValueType GetType(const char* pKey);

    // Enters the table of that key. One that is missing is made, and any other value replaced by it. False, with the
    // current table as before, when that can't be done.
    bool BeginTable(const char* pKey);
    // Back to the table from which this one was entered.
    void EndTable();

    // False, with `out` as before, unless the entry is of that type. A number is a string too; a string
    // ends at its first NUL.
    bool GetString(const char* pKey, std::string& out);
    bool GetNumber(const char* pKey, double& out);
    bool GetUnsigned(const char* pKey, uint32_t& out); // false for a negative number, too; fractions are cut
    bool GetBool(const char* pKey, bool& out);

    // False when the entry can't be written. To overwrite a function, user data or a Type_Meta is the caller's mistake;
    // the entry stays then.
    bool SetString(const char* pKey, const char* pValue);
    bool SetNumber(const char* pKey, double value);
    bool SetBool(const char* pKey, bool value);

    // Lets nobody write to the table of that key from now on: a script that tries gets an error. False for no table.
    bool SetReadOnly(const char* pKey);

    class Iterator;
    // The entries of the current table, in its own order. They are those of this moment, whatever is changed on the
    // way.
    Iterator Begin();
    Iterator End();

    // Runs a text. False, and a report, when it has an error.
    bool RunCommand(const char* pText);
    // Removes a global function or a variable. False, and a report, when there is none of that name.
    bool ClearFunction(const char* pName);
    bool ClearVariable(const char* pName);

    // For the other sources of this layer. The current table lies on top of the state's stack.
    struct Guard;
    lua_State* GetState() const { return m_pState; }
    Guard& GetGuard() { return *m_pGuard; }
    // The object to which a state belongs. Null for another's.
    static LuaConfig* FromState(lua_State* pState);
    // Loads a text and runs it, within the limits. A state without a name takes this one. False, and a report, when it
    // has an error.
    bool RunText(const std::string& text, const char* pName);
    // Calls what lies on the stack below its arguments, within the limits. Without its results an error is a report,
    // "error <what>", and false.
    bool Call(int arguments, int results, const char* pWhat);
    [[gnu::format(printf, 2, 3)]] void Report(const char* pFormat, ...) const;

    // As long as one lives, a function that a script has called works with the globals as the current table, on top of
    // its own stack.
    class CallScope {
    public:
        CallScope(LuaConfig& config, lua_State* pState);
        ~CallScope();
        CallScope(const CallScope&) = delete;
        CallScope& operator=(const CallScope&) = delete;

        // The value on top of the stack goes below the globals, as a result of the call.
        void PutBelow();
        // Takes the globals off the stack. False when they aren't where they were.
        bool Leave();

    private:
        LuaConfig& m_Config;
        lua_State* m_pBefore;
        int m_BottomBefore;
    };

private:
    bool CheckTable() const;
    void PushEntry(const char* pKey);
    bool CanStore(const char* pKey);
    bool StoreEntry(const char* pKey);
    bool Load(const std::string& text, const std::string& chunkName, const char* pWhat);
    std::string TakeError(int status);
    void PushGlobal(const char* pKey);
    bool ClearGlobal(const char* pKey);

    std::string m_Name;
    // Released in reverse order, after the state.
    Callbacks m_Callbacks;
    std::unique_ptr<Guard> m_pGuard;
    lua_State* m_pState = nullptr; // owned; closed by the destructor
    int m_Bottom = 1;              // where the outermost current table lies on the stack
};

// An entry of a table, as it was when the walk began.
class LuaConfig::Iterator {
public:
    // Of a key that is neither a text nor a number there is no text: asking for it is the caller's mistake. Longer ones
    // are cut to 128 characters.
    std::string Key() const;
    ValueType Type() const { return (*m_pEntries)[m_Index].type; }
    void Next() { ++m_Index; }
    // Whether Key gives the text under which the table can be asked for this very entry.
    bool HasPlainKey() const { return (*m_pEntries)[m_Index].isPlain; }
    bool operator==(const Iterator& other) const { return GetLeft() == other.GetLeft(); }

private:
    friend class LuaConfig;
    struct Entry {
        std::string key;
        ValueType keyType = Type_Nil;
        ValueType type = Type_Nil;
        bool isPlain = false;
    };

    size_t GetLeft() const { return m_pEntries ? m_pEntries->size() - m_Index : 0; }

    std::shared_ptr<const std::vector<Entry>> m_pEntries;
    size_t m_Index = 0;
};
