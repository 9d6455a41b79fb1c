#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// Small glTF scenes, put together by hand.

inline std::string Bytes(const void* pData, size_t size) { return {static_cast<const char*>(pData), size}; }

inline std::string Word(uint32_t value) { return Bytes(&value, sizeof(value)); }

// A binary glTF of a JSON text and a buffer.
inline std::string MakeGlb(std::string json, std::string buffer) {
    json.resize((json.size() + 3) / 4 * 4, ' ');
    buffer.resize((buffer.size() + 3) / 4 * 4, '\0');
    const size_t length = 12 + 8 + json.size() + 8 + buffer.size();
    return "glTF" + Word(2) + Word(static_cast<uint32_t>(length)) + Word(static_cast<uint32_t>(json.size())) + "JSON" +
           json + Word(static_cast<uint32_t>(buffer.size())) + std::string("BIN\0", 4) + buffer;
}

// One mesh "Tile": a square of two triangles with a material "Clay", and a marker "Mark". What only this host knows of
// the mesh's node is given as JSON members, and so are other materials than "Clay" with all that they need.
inline std::string MakeTileScene(const std::string& hostMembers = "",
                                 const std::string& materials = R"("materials":[{"name":"Clay"}])") {
    const float positions[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const uint16_t indices[] = {0, 1, 2, 0, 2, 3};
    return MakeGlb(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0,1]}],
        "nodes":[{"name":"Tile","mesh":0,"extras":{"host":{)" +
                       hostMembers + R"(}}},{"name":"Mark","translation":[0,2,0]}],
        )" + materials +
                       R"(,
        "meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1,"material":0}]}],
        "accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3","min":[0,0,0],"max":[1,1,0]},
                     {"bufferView":1,"componentType":5123,"count":6,"type":"SCALAR"}],
        "bufferViews":[{"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":12}],
        "buffers":[{"byteLength":60}]})",
                   Bytes(positions, sizeof(positions)) + Bytes(indices, sizeof(indices)));
}

inline std::string MakeEmptyScene() {
    return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"name":"Mark"}]})";
}
