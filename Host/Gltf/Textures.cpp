#include "Host/Gltf/Textures.h"

#include "Host/Gltf/Uri.h"
#include "Host/Sdk/Material.h"

#include <algorithm>
#include <array>

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
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension;
}

std::string_view GetStem(std::string_view name) {
    name.remove_prefix(name.find_last_of("/\\:") + 1);
    return name.substr(0, name.find_last_of('.'));
}

// A name as part of a path: characters that separate or that no file system takes become '_'.
std::string ToFileName(std::string_view name) {
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

Textures::Textures(const SceneFile& file, const std::string& path, const Messages& messages)
    : m_File(file), m_Messages(messages) {
    ReadImages(path);
    if (const Json* pTextures = FindArray({}, file.GetRoot(), "textures"))
        for (const Json& texture : pTextures->GetArray())
            ReadTexture(texture);
}

void Textures::ReadImages(const std::string& path) {
    const Json* pImages = FindArray({}, m_File.GetRoot(), "images");
    if (!pImages)
        return;
    const std::string unpackFolder = m_File.GetFolder() + std::string(GetStem(path)) + ".textures\\";
    UniqueNames names;
    for (const Json& image : pImages->GetArray())
        m_Images.push_back(ReadImage(image, m_Images.size(), unpackFolder, names));
}

Textures::Image Textures::ReadImage(const Json& json, size_t index, const std::string& unpackFolder,
                                    UniqueNames& names) const {
    Place place{.kind = "image", .index = index};
    place.name = ReadString(place, json, "name");
    const std::string_view uri = ReadString(place, json, "uri");
    const bool isFile = !uri.empty() && !IsDataUri(uri);
    const std::string file = isFile ? DecodePercent(uri) : std::string();
    Image image{.name = std::string(place.name.empty() ? GetStem(file) : place.name), .path = {}};
    if (isFile && std::ranges::count(s_NamedInPlace, GetExtension(file))) {
        const std::optional<std::string> path = ResolveFileUri(m_File.GetFolder(), uri);
        if (!path)
            m_Messages.Warn(place, Quoted(uri) + " is not a file beside the scene", "it has no texture; put it there");
        image.path = path.value_or("");
        std::replace(image.path.begin(), image.path.end(), '/', '\\');
        return image;
    }
    std::string_view mimeType = ReadString(place, json, "mimeType");
    if (const std::optional<DataUri> data = SplitDataUri(uri))
        mimeType = data->mimeType;
    image.path =
        unpackFolder + names.Make(ToFileName(image.name), "image") + (mimeType == "image/jpeg" ? ".jpg" : ".tga");
    return image;
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
}

} // namespace gltf
