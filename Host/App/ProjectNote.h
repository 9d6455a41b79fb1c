#pragma once

#include <string>

// What a user is told when the pipeline configuration knows nothing of a scene: no pipeline.ini was found from the
// program's home upwards, it can't be used, or the scene lies in none of its projects. Empty when all is well. The
// scene's path is in the system's form and absolute; `home` is the native folder in which the search starts.
std::string FindProjectNote(const std::string& scene, const std::string& home);
