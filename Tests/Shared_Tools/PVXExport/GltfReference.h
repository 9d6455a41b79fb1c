#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <nlohmann/json.hpp>

// A glTF file in the making: its JSON, and the buffer that its accessors read.
struct GltfFile {
    nlohmann::json json = {{"asset", {{"version", "2.0"}}}};
    std::vector<std::byte> buffer;

    // Adds a list of numbers and gives the accessor that reads it. Component types as in the file: 5126 for floats,
    // 5122 for normalized shorts, 5121 for bytes, 5123 for shorts.
    size_t Add(const std::vector<double>& values, const std::string& type, int componentType = 5126);
    // Writes NAME.gltf and NAME.bin into the folder.
    void Write(const std::string& folder, const std::string& name);
};

// Evaluates a glTF file straight by that format's rules, in its own axes with columns for vectors, and shares nothing
// with the host: what the exported file holds is compared with it. For files as tests make them: nothing is checked,
// one buffer, no sparse accessors.
class GltfReference {
public:
    // `clip` below 0 for the rest pose.
    explicit GltfReference(const GltfFile& file, int clip = -1);

    // From the node's space to the world's.
    glm::dmat4 GetWorld(size_t node, double seconds) const;
    // The vertices of the node's first primitive in the world.
    std::vector<glm::dvec3> GetVertices(size_t node, double seconds) const;

private:
    using Elements = std::vector<std::vector<double>>;

    Elements Read(size_t accessor) const;
    // What the clip says of a node's "translation", "rotation" or "scale"; `rest` where it says nothing.
    std::vector<double> Evaluate(size_t node, const char* pPath, double seconds, std::vector<double> rest) const;
    glm::dmat4 GetLocal(size_t node, double seconds) const;

    const GltfFile& m_File;
    int m_Clip;
    std::vector<int> m_Parents;
};
