#include "Host/Gltf/Textures.h"

#include "Host/Gltf/Accessor.h"
#include "Host/Gltf/Leftovers.h"
#include "Host/Gltf/Uri.h"
#include "Host/Sdk/Material.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>
#include <array>
#include <utility>

namespace gltf {

namespace {

// Values of a glTF sampler.
constexpr uint64_t s_Nearest = 9728;
constexpr uint64_t s_FirstMipMapped = 9984;
constexpr uint64_t s_LastMipMapped = 9987;
constexpr uint64_t s_ClampToEdge = 33071;
constexpr uint64_t s_MirroredRepeat = 33648;

constexpr std::array<std::string_view, 6> s_NamedInPlace = {".tga", ".dds", ".jpg", ".jpeg", ".bmp", ".bw"};

std::string GetExtension(std::string_view name) {
    const size_t dot = name.find_last_of("./\\");
    if (dot == std::string_view::npos || name[dot] != '.')
        return {};
    std::string extension(name.substr(dot));
    std::ranges::transform(extension, extension.begin(), ToLower);
    return extension;
}

std::string_view GetStem(std::string_view name) {
    name.remove_prefix(name.find_last_of("/\\:") + 1);
    return name.substr(0, name.find_last_of('.'));
}

// Whether a scene of the other kind lies there under the same name, which unpacks into the same folder.
bool HasTwin(const std::string& path) {
    const std::string twin = path.substr(0, path.find_last_of('.')) + (GetExtension(path) == ".glb" ? ".gltf" : ".glb");
    return (OSFile::FileAttr(twin.c_str()) & OSFile::F_ATTRIBUTE_FILE) != 0;
}

// Names of files end at 255 bytes; this leaves room for numbers and extensions.
constexpr size_t s_LongestFileName = 120;

// The exporter's paths have at most 260 bytes with the alias "Tool:" in front.
constexpr size_t s_LongestTexturePath = 260 - 5;

// The uncompressed pixels of the largest PNG, with 16 bits a channel, and something for what stands around them.
constexpr uint64_t s_LargestImageFile = uint64_t{4096} * 4096 * 8 + (1 << 20);

// As much of an image as shows its kind: bytes, and characters of base64.
constexpr size_t s_StartBytes = 3;
constexpr size_t s_StartDigits = 4;

// A name as part of a path: characters that separate or that no file system takes become '_'. A long one is cut, not
// within a character.
std::string ToFileName(std::string_view name) {
    if (name.size() > s_LongestFileName) {
        size_t end = s_LongestFileName;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xc0) == 0x80)
            --end;
        name = name.substr(0, end);
    }
    std::string safe(name);
    for (char& c : safe)
        if (static_cast<unsigned char>(c) < 0x20 || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
            c = '_';
    return safe;
}

int GetTiling(uint64_t wrap, int repeat, int mirror) {
    if (wrap == s_ClampToEdge)
        return 0;
    return wrap == s_MirroredRepeat ? mirror : repeat;
}

int GetFilter(uint64_t minFilter, uint64_t magFilter) {
    const uint64_t filter = minFilter ? minFilter : magFilter;
    if (filter == s_Nearest)
        return FILTER_NADA;
    return filter >= s_FirstMipMapped && filter <= s_LastMipMapped ? FILTER_PYR : FILTER_SAT;
}

} // namespace

// The bytes of an image, and whoever keeps them.
struct Textures::ImageBytes {
    std::span<const std::byte> bytes;
    std::shared_ptr<const Bytes> pFile;
    std::vector<std::byte> decoded;
};

Textures::Textures(const SceneFile& file, const std::string& path, BufferStore& buffers, const Messages& messages)
    : m_File(file), m_Path(path), m_Buffers(buffers), m_Messages(messages) {
    ReadImages(path);
    if (const Json* pTextures = FindArray({}, file.GetRoot(), "textures"))
        for (const Json& texture : pTextures->GetArray())
            ReadTexture(texture);
}

void Textures::ReadImages(const std::string& path) {
    const Json* pImages = FindArray({}, m_File.GetRoot(), "images");
    if (!pImages)
        return;
    m_UnpackFolder = m_File.GetFolder() + std::string(GetStem(path)) + ".textures\\";
    UniqueNames names;
    for (const Json& image : pImages->GetArray())
        m_Images.push_back(ReadImage(image, m_Images.size(), names));
}

Textures::Image Textures::ReadImage(const Json& json, size_t index, UniqueNames& names) {
    Place place{.kind = "image", .index = index};
    place.name = ReadString(place, json, "name");
    const std::string_view uri = ReadString(place, json, "uri");
    const bool isFile = !uri.empty() && !IsDataUri(uri);
    const std::string file = isFile ? DecodePercent(uri) : std::string();
    Image image{.name = std::string(place.name.empty() ? GetStem(file) : place.name), .path = {}};
    if (isFile && std::ranges::count(s_NamedInPlace, GetExtension(file))) {
        image.path = GetFile(json);
        image.isUnpacked = true;
        if (image.path.empty())
            m_Messages.Warn(place, Quoted(uri) + " is not a file beside the scene", "it has no texture; put it there");
        return image;
    }
    const bool isJpeg = FindKind(place, json) == ImageKind::Jpeg;
    image.path = m_UnpackFolder + names.Make(ToFileName(image.name), "image") + (isJpeg ? ".jpg" : ".tga");
    return image;
}

// The file that holds the image, unless that is the scene itself. Empty too when the scene names none that could be.
std::string Textures::GetFile(const Json& json) const {
    std::string_view uri = ReadString({}, json, "uri");
    const Json* pViews = FindArray({}, m_File.GetRoot(), "bufferViews");
    const Json* pBuffers = FindArray({}, m_File.GetRoot(), "buffers");
    const int32_t view = uri.empty() ? ReadIndex({}, json, "bufferView", pViews ? pViews->Size() : 0) : -1;
    if (view >= 0) {
        const int32_t buffer =
            ReadIndex({}, (*pViews)[static_cast<uint32_t>(view)], "buffer", pBuffers ? pBuffers->Size() : 0);
        if (buffer >= 0)
            uri = ReadString({}, (*pBuffers)[static_cast<uint32_t>(buffer)], "uri");
    }
    std::string path = IsDataUri(uri) ? "" : ResolveFileUri(m_File.GetFolder(), uri).value_or("");
    std::ranges::replace(path, '/', '\\');
    return path;
}

// By content; by what the scene says when the image can't be looked into. What is wrong with it, Unpack tells.
ImageKind Textures::FindKind(const Place& place, const Json& json) {
    try {
        const ImageKind kind = GetImageKind(GetBytes(place, json, true).bytes);
        if (kind != ImageKind::Other)
            return kind;
    } catch (const Fault&) {
    }
    std::string_view mimeType = ReadString(place, json, "mimeType");
    if (const std::optional<DataUri> data = SplitDataUri(ReadString(place, json, "uri")))
        mimeType = data->mimeType;
    return mimeType == "image/jpeg" ? ImageKind::Jpeg : ImageKind::Other;
}

Textures::ImageBytes Textures::GetBytes(const Place& place, const Json& json, bool startAlone) {
    ImageBytes image;
    const std::string_view uri = ReadString(place, json, "uri");
    if (uri.empty()) {
        const uint64_t view = ReadRequiredSize(place, json, "bufferView");
        image.bytes = m_Buffers.GetView(m_File, place, static_cast<size_t>(view)).bytes;
        return image;
    }
    if (IsDataUri(uri)) {
        const std::optional<DataUri> data = SplitDataUri(uri);
        const size_t digits = startAlone ? s_StartDigits : std::string_view::npos;
        std::optional<std::vector<std::byte>> decoded =
            data ? DecodeBase64(data->base64.substr(0, digits)) : std::nullopt;
        if (!decoded)
            FailDamaged(place, "its data is not base64");
        image.decoded = *std::move(decoded);
        image.bytes = image.decoded;
        return image;
    }
    const std::string file = GetFile(json);
    if (file.empty())
        Fail(place, Quoted(uri) + " is not a file beside the scene", "it has no texture; put it there");
    image.pFile = ReadFileBytes(place, file, startAlone ? s_StartBytes : s_LargestImageFile + 1);
    image.bytes = image.pFile->Get();
    if (image.bytes.size() > s_LargestImageFile)
        Fail(place, Quoted(uri) + " is larger than any picture of 4096 by 4096 pixels", "give a smaller one");
    return image;
}

void Textures::Unpack(size_t texture) {
    const int32_t source = m_Sources[texture];
    if (source < 0)
        return;
    Image& image = m_Images[static_cast<size_t>(source)];
    const Place place{.kind = "image", .index = static_cast<size_t>(source), .name = image.name};
    if (image.path.size() > s_LongestTexturePath)
        Fail(place, "the path of its file has " + std::to_string(image.path.size()) + " bytes",
             "a texture's path holds at most " + std::to_string(s_LongestTexturePath) +
                 ": give its folders shorter names");
    if (image.isUnpacked)
        return;
    image.isUnpacked = true;
    if (!std::exchange(m_IsPrepared, true)) {
        RemoveLeftovers(m_UnpackFolder);
        m_HasTwin = HasTwin(m_Path);
    }
    const Json& json = (*FindMember(m_File.GetRoot(), "images"))[static_cast<rapidjson::SizeType>(source)];
    try {
        // What a twin has unpacked would pass for this scene's.
        if (const std::array files = {m_Path, GetFile(json)}; m_HasTwin || !IsNewerThan(image.path, files))
            UnpackImage(place, GetBytes(place, json, false).bytes, image.path);
    } catch (const Fault& fault) {
        m_Messages.Warn(fault);
    }
}

void Textures::ReadTexture(const Json& json) {
    const Place place{.kind = "texture", .index = m_Textures.size()};
    const Json* pSamplers = FindArray({}, m_File.GetRoot(), "samplers");
    const int32_t source = ReadIndex(place, json, "source", m_Images.size());
    const int32_t sampler = ReadIndex(place, json, "sampler", pSamplers ? pSamplers->Size() : 0);
    TextureInfo info{.name = {}, .path = {}, .tiling = U_WRAP | V_WRAP, .filter = FILTER_SAT};
    if (source >= 0) {
        info.name = m_Images[static_cast<size_t>(source)].name;
        info.path = m_Images[static_cast<size_t>(source)].path;
    }
    if (sampler >= 0) {
        const Json& settings = (*pSamplers)[static_cast<rapidjson::SizeType>(sampler)];
        const Place samplerPlace{.kind = "sampler", .index = static_cast<size_t>(sampler)};
        info.tiling = GetTiling(ReadSize(samplerPlace, settings, "wrapS", 0), U_WRAP, U_MIRROR) |
                      GetTiling(ReadSize(samplerPlace, settings, "wrapT", 0), V_WRAP, V_MIRROR);
        info.filter = GetFilter(ReadSize(samplerPlace, settings, "minFilter", 0),
                                ReadSize(samplerPlace, settings, "magFilter", 0));
    }
    m_Textures.push_back(std::move(info));
    m_Sources.push_back(source);
}

} // namespace gltf
