#pragma once

#include <cstdint>
#include <string>

// Changelist numbers as the server's answers tell them. False when the text isn't such an answer.
namespace ChangelistPatterns {

// "Change 12 created."
bool ReadCreated(const std::string& text, int32_t& number);
// "//depot/x#1 - edit change 12 (text)"
bool ReadOpened(const std::string& text, int32_t& number);
// "Change 12 on 2003/01/31 by ..." at the start
bool ReadListed(const std::string& text, int32_t& number);

} // namespace ChangelistPatterns
