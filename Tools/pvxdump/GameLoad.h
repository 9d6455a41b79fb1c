#pragma once

#include <memory>
#include <string>
#include <vector>

class Shader;
class RenderModel;

namespace ra {
class MeshGroup;
}

// A final model as the game has it: found by its name under "DATA" among the project's folders and the tools' data, and
// loaded with its motion file, its shaders and textures and the models that it refers to, on the device that draws
// nothing. One at a time; what the loading needs is up as long as it lives.
class GameLoad {
public:
    // The file, by its full path in the system's form, lies in a project's final folder. Throws std::runtime_error with
    // the reason, without the file's name, when it doesn't, or when it can't be loaded.
    explicit GameLoad(const std::string& path);
    ~GameLoad();
    GameLoad(const GameLoad&) = delete;
    GameLoad& operator=(const GameLoad&) = delete;

    // The name that it was loaded by.
    const std::string& GetName() const { return m_Name; }
    const RenderModel& GetModel() const;

    // What the model asks for and isn't there. For a shader and a mesh another one stands in, if there is one; the mesh
    // is at a place in the model's group.
    bool IsMissing(const Shader& shader) const;
    bool IsMeshMissing(const ra::MeshGroup& group, uint32_t index) const;
    // The names of textures that a shader asks for in vain: their channels have a colour that nobody overlooks.
    std::vector<std::string> GetMissingTextures(const Shader& shader) const;
    // What else the loading had to say, each line once.
    const std::vector<std::string>& GetWarnings() const;

private:
    struct Services;

    std::unique_ptr<Services> m_pServices; // outlive the model
    std::string m_Name;
    std::unique_ptr<RenderModel> m_pModel;
};
