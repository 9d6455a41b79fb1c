#pragma once

#include "Host/Sdk/Value.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The script language as text: values in the notation in which Value::Print writes them, and calls.

// A fault in the text; what() says which and at which column, counted from 1.
class ScriptSyntaxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One call: a command and its arguments, separated by blanks.
struct ScriptCall {
    std::string command;
    std::vector<Value> arguments;
};

// Reads one line. Empty for a line that holds nothing but blanks and a comment. Throws ScriptSyntaxError.
std::optional<ScriptCall> ParseScriptLine(std::string_view line);

// Reads a text that is one value as a whole. Empty when it isn't one.
std::optional<Value> ParseScriptValue(std::string_view text);
