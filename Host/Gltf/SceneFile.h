#pragma once

#include "Host/Gltf/Json.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace gltf {

// Bytes of a file or of a decoded buffer. Shared by all who look into them.
class Bytes {
public:
    explicit Bytes(size_t size) : m_pData(std::make_unique_for_overwrite<std::byte[]>(size)), m_Size(size) {}

    std::span<std::byte> Get() { return {m_pData.get(), m_Size}; }
    std::span<const std::byte> Get() const { return {m_pData.get(), m_Size}; }

private:
    std::unique_ptr<std::byte[]> m_pData;
    size_t m_Size;
};

// What messages call a file or a folder: the last part of its path.
std::string NameOf(std::string path);

// Reads a whole file, which must not be longer than `longest`. Faults, with `place` and the file's name; without a
// place, which is the scene itself, with its whole path.
// `extra` more bytes, without content, are added behind it.
std::shared_ptr<Bytes> ReadFileBytes(const Place& place, const std::string& path, uint64_t longest, size_t extra = 0);

// A glTF file, read and parsed: its JSON, and the binary chunk that a .glb has behind it.
//
// .glb, little-endian:
//   uint32 magic "glTF", uint32 version (2), uint32 length of the file
//   chunks, each: uint32 length, uint32 type, data; the first is "JSON", "BIN\0" may be the second, others are skipped
class SceneFile {
public:
    // Reads by content, whatever the name says. Faults when the file can't be read, is no glTF 2.0 or is cut off.
    explicit SceneFile(const std::string& path);

    const Json& GetRoot() const { return m_Document; }
    // Of a list at the top of the scene; 0 when it has none.
    size_t CountOf(std::string_view list) const;
    // The folder of the file, with its final separator; empty for one without a folder.
    const std::string& GetFolder() const { return m_Folder; }
    // The full path, in the system's form, of a file that the scene names: by a full path, native or in the system's
    // form, or from the scene's folder on.
    std::string GetFullPath(std::string name) const;
    // The file's bytes, for those who keep looking into the binary chunk.
    const std::shared_ptr<const Bytes>& GetBytes() const { return m_pBytes; }
    // The binary chunk; empty without one.
    std::span<const std::byte> GetBinary() const { return m_Binary; }

private:
    void Open(std::span<std::byte> bytes);
    std::span<char> OpenBinary(std::span<std::byte> bytes);

    std::string m_Folder;
    std::shared_ptr<const Bytes> m_pBytes; // the strings of m_Document lie in it
    std::span<const std::byte> m_Binary;
    rapidjson::Document m_Document;
};

} // namespace gltf
