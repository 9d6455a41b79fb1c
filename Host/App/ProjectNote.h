#pragma once

#include <span>
#include <string>

// What a user is told when the pipeline configuration knows nothing of a scene: no pipeline.ini was found from the
// program's home upwards, it can't be used, or the scene or pictures of it lie in none of its projects. Empty when all
// is well. The scene's path is in the system's form and absolute, as those of its pictures should be; `home` is the
// native folder in which the search starts.
std::string FindProjectNote(const std::string& scene, std::span<const std::string> pictures, const std::string& home);
