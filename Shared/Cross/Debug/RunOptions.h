#pragma once

// Switches of one run, by name: the words of "runoptions.cfg", which lies among the program's settings, and those of
// the command line. A word may have a "-" or "/" in front; case doesn't count. In the file a line that starts with ";"
// is a comment.
namespace RunOptions {

// The file and the command line are read when the first option is asked for.
bool IsSet(const char* pName);

} // namespace RunOptions
