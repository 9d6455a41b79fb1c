#pragma once

#include <string>
#include <string_view>

// The words of a path in the system's form, put into the machine's form: absolute, single slashes, no dots. Nothing on
// disk is looked at but the current folder, and that only for a relative path. Dots are resolved in the text, as this
// form has it. False with errno set: ENOENT for no path at all, ENODEV for another drive or
// machine, EINVAL for a colon elsewhere, ENAMETOOLONG.
bool ToNativeText(std::string_view path, std::string& native);

// With every link on the way followed. Empty, with errno set, for a native path that leads nowhere.
std::string GetRealPath(const std::string& path);

// Empty, with errno set, when the current folder is gone.
std::string GetNativeCurrentFolder();
