#pragma once

#include <string>
#include <string_view>

// Where the program is, as far as the system goes by it: a search for "pipeline.ini" starts there. Paths are in the
// machine's own form.
namespace ProgramPath {

// The program's file, or a file of the same name in the home folder, if there is one. Empty when the system doesn't
// tell.
std::string Get();

// The folder that takes the place of the program's own: the environment's PVXHOST_HOME. Set for this process, the
// modules it has loaded and the processes it starts; empty brings the program's own back.
void SetHome(std::string_view folder);
std::string GetHome();

} // namespace ProgramPath
