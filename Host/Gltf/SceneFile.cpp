#include "Host/Gltf/SceneFile.h"

#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Memory/OSMemory.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace gltf {

namespace {

constexpr uint32_t s_Magic = 0x46546c67;       // "glTF"
constexpr uint32_t s_JsonChunk = 0x4e4f534a;   // "JSON"
constexpr uint32_t s_BinaryChunk = 0x004e4942; // "BIN"
constexpr size_t s_HeaderSize = 12;
constexpr size_t s_ChunkHeaderSize = 8;

constexpr uint64_t s_LargeFile = 0x10000000;
constexpr uint64_t s_Growth = 12; // so many times a file's bytes the scene, the mesh in work and the model take at most

class OpenFile {
public:
    explicit OpenFile(const std::string& path) : m_Handle(OSFile::Open(path.c_str(), OSFile::Open_Read, true, false)) {}
    ~OpenFile() {
        if (m_Handle)
            OSFile::Close(m_Handle);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    OSFile::Handle Get() const { return m_Handle; }

private:
    OSFile::Handle m_Handle;
};

uint32_t ReadWord(std::span<const std::byte> bytes, size_t offset) {
    uint32_t word = 0;
    std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

[[noreturn]] void FailCut(uint64_t wanted, uint64_t there) {
    FailDamaged({},
                "the file is cut off: " + std::to_string(there) + " of " + std::to_string(wanted) + " bytes are there");
}

void CheckVersion(const Json& root) {
    const Place place{.kind = "asset"};
    const Json* pAsset = FindObject(place, root, "asset");
    if (!pAsset)
        Fail({}, "it has no \"asset\", so it is not glTF 2.0", "give a .gltf or .glb file");
    const std::string_view version = ReadString(place, *pAsset, "version");
    if (!version.starts_with("2."))
        Fail({}, "it is glTF version " + Quoted(version), "export it as glTF 2.0");
}

// The scene's own in full, as the machine has it: the slip may be in a folder's name. Of the files that the scene
// brings along, whose folder it knows, the name.
std::string ShownPath(const Place& place, const std::string& path) {
    if (!place.kind.empty())
        return Quoted(NameOf(path));
    const std::string native = OSFile::ToNative(path);
    return QuotedWhole(native.empty() ? path : native);
}

} // namespace

std::string NameOf(std::string path) {
    while (path.size() > 1 && (path.ends_with('/') || path.ends_with('\\')))
        path.pop_back();
    return path.substr(path.find_last_of("/\\:") + 1);
}

std::shared_ptr<Bytes> ReadFileBytes(const Place& place, const std::string& path, uint64_t longest, size_t extra) {
    if (OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY)
        Fail(place, ShownPath(place, path) + " is a folder", "give a file");
    const OpenFile file(path);
    if (!file.Get())
        Fail(place, "can't open " + ShownPath(place, path) + " (" + OSFile::LastErrorText() + ")",
             "check its name and place");
    const uint64_t size = std::min(OSFile::GetSize(file.Get()), longest);
    if (size > std::numeric_limits<uint32_t>::max() - extra)
        Fail(place, ShownPath(place, path) + " is larger than 4 GB", "split the scene");
    OSMemory::HeapExpect(std::min(size, s_LargeFile) * s_Growth);
    auto pBytes = std::make_shared<Bytes>(static_cast<size_t>(size) + extra);
    const auto wanted = static_cast<uint32_t>(size);
    if (OSFile::Read(file.Get(), pBytes->Get().data(), wanted) != wanted)
        Fail(place, "can't read " + ShownPath(place, path) + " (" + OSFile::LastErrorText() + ")", "check the disk");
    return pBytes;
}

SceneFile::SceneFile(const std::string& path) : m_Folder(path.substr(0, path.find_last_of("/\\:") + 1)) {
    // The parser wants a NUL behind the text, and a text file has no room for it.
    const std::shared_ptr<Bytes> pBytes = ReadFileBytes({}, path, std::numeric_limits<uint64_t>::max(), 1);
    pBytes->Get().back() = std::byte{0};
    m_pBytes = pBytes;
    Open(pBytes->Get());
    CheckVersion(m_Document);
}

size_t SceneFile::CountOf(std::string_view list) const {
    const Json* pList = FindArray({}, m_Document, list);
    return pList ? pList->Size() : 0;
}

std::string SceneFile::GetFullPath(std::string name) const {
    if (name.starts_with('/') && !name.starts_with("//"))
        return OSFile::FromNative(name);
    std::ranges::replace(name, '/', '\\');
    const bool isFull = name.starts_with('\\') || (name.size() > 1 && name[1] == ':');
    return isFull ? name : m_Folder + name;
}

void SceneFile::Open(std::span<std::byte> bytes) {
    const std::span<std::byte> content = bytes.first(bytes.size() - 1);
    if (content.size() >= sizeof s_Magic && ReadWord(content, 0) == s_Magic) {
        ParseJson(OpenBinary(content), m_Document);
        return;
    }
    std::span<char> text(reinterpret_cast<char*>(bytes.data()), bytes.size());
    if (content.size() >= 3 && std::memcmp(text.data(), "\xef\xbb\xbf", 3) == 0)
        text = text.subspan(3);
    const size_t first = std::string_view(text.data(), text.size()).find_first_not_of(" \t\r\n");
    if (first >= text.size() || text[first] != '{')
        Fail({}, "it is not glTF", "give a .gltf or .glb file");
    ParseJson(text, m_Document);
}

// Finds the chunks, and closes the JSON with a NUL. That lands in the header of the next chunk, which has been read by
// then, or in the byte behind the file.
std::span<char> SceneFile::OpenBinary(std::span<std::byte> bytes) {
    if (bytes.size() < s_HeaderSize + s_ChunkHeaderSize)
        FailCut(s_HeaderSize + s_ChunkHeaderSize, bytes.size());
    if (ReadWord(bytes, 4) != 2)
        Fail({}, "it is version " + std::to_string(ReadWord(bytes, 4)) + " of the binary form",
             "export it as glTF 2.0");
    const uint32_t length = ReadWord(bytes, 8);
    if (length > bytes.size())
        FailCut(length, bytes.size());
    std::span<char> json;
    for (uint64_t offset = s_HeaderSize; offset + s_ChunkHeaderSize <= length;) {
        const uint32_t size = ReadWord(bytes, static_cast<size_t>(offset));
        const uint32_t type = ReadWord(bytes, static_cast<size_t>(offset) + 4);
        offset += s_ChunkHeaderSize;
        if (size > length - offset)
            FailDamaged({}, "a chunk is longer than the file");
        const std::span<std::byte> data = bytes.subspan(static_cast<size_t>(offset), size);
        if (json.empty()) {
            if (type != s_JsonChunk || size == 0)
                FailDamaged({}, "its first chunk is not JSON");
            json = {reinterpret_cast<char*>(data.data()), data.size() + 1};
        } else if (type == s_BinaryChunk && m_Binary.empty()) {
            m_Binary = data;
        }
        offset += size;
    }
    if (json.empty())
        FailDamaged({}, "it has no JSON");
    json.back() = '\0';
    return json;
}

} // namespace gltf
