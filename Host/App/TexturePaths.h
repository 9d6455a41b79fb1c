#pragma once

#include <string>
#include <vector>

namespace scene {
class Scene;
}

// The pictures that the scene's materials use, each once, in the order of the nodes.
std::vector<std::string> FindTexturePaths(const scene::Scene& scene);
