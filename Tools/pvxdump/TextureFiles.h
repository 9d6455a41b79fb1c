#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

class Texture;

// Writes textures as pictures into one folder: DDS for compressed ones, TGA for all others.
class TextureFiles {
public:
    // The native folder is made when it isn't there. Throws std::runtime_error when that fails.
    explicit TextureFiles(const std::string& folder);
    ~TextureFiles();
    TextureFiles(const TextureFiles&) = delete;
    TextureFiles& operator=(const TextureFiles&) = delete;

    // The name of the file in the folder. It comes from the texture's, and no two textures get the same. Throws
    // std::runtime_error for one that can't be written whole, of which nothing stays.
    std::string Write(const Texture& texture);

    // A file's name without extension, made of a name that may hold anything: it names no folder and hides nothing.
    static std::string MakeFileTitle(std::string_view name);

private:
    std::string MakeUnique(const std::string& title);

    std::string m_Native;
    std::string m_Root;                                   // the same folder as a path of ours, with a final backslash
    std::unordered_set<std::string> m_Taken;              // in lower case; only ever looked up
    std::unordered_map<std::string, uint32_t> m_LastUsed; // the number that a title took last
};
