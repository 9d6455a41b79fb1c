#include "Host/Gltf/Accessor.h"

#include "Host/Gltf/Uri.h"

#include <algorithm>
#include <limits>

namespace gltf {

namespace {

// An accessor without data of its own costs a file nothing, so its count proves nothing. No primitive that can be
// exported has more elements.
constexpr uint64_t s_LargestEmptyAccessor = uint64_t{1} << 20;
// Sparse accessors are laid out in full, which a small file can ask for any number of times.
constexpr size_t s_MostSparseBytes = size_t{1} << 28;

const Json& GetListed(const SceneFile& file, const Place& user, const char* pList, size_t index) {
    const Json* pArray = FindArray({}, file.GetRoot(), pList);
    const size_t count = pArray ? pArray->Size() : 0;
    if (index >= count)
        FailDamaged(user, "it refers to number " + std::to_string(index) + " of \"" + pList + "\", but the file has " +
                              std::to_string(count));
    return (*pArray)[static_cast<rapidjson::SizeType>(index)];
}

ComponentType ReadComponentType(const Place& place, const Json& object) {
    const uint64_t type = ReadRequiredSize(place, object, "componentType");
    if (type < 5120 || type > 5126 || type == 5124)
        FailDamaged(place, "its component type " + std::to_string(type) + " is unknown");
    return static_cast<ComponentType>(type);
}

uint8_t ReadComponentCount(const Place& place, const Json& object) {
    const std::string_view type = ReadString(place, object, "type");
    if (type == "SCALAR")
        return 1;
    if (type.size() == 4 && type.starts_with("VEC") && type[3] >= '2' && type[3] <= '4')
        return static_cast<uint8_t>(type[3] - '0');
    if (type == "MAT4")
        return 16;
    FailDamaged(place, "its type " + Quoted(type) + " is unknown or of no use here");
}

// Whether `count` elements of `size` bytes, `stride` apart, lie inside `room` bytes behind `offset`.
bool Fits(uint64_t room, uint64_t offset, uint64_t count, uint64_t stride, uint64_t size) {
    if (count == 0)
        return offset <= room;
    return offset <= room && size <= room - offset && count - 1 <= (room - offset - size) / stride;
}

template <typename T>
T Load(const std::byte* pSource) {
    T value;
    std::memcpy(&value, pSource, sizeof value);
    return value;
}

template <typename T>
float ToUnit(const std::byte* pSource, bool normalized) {
    const auto value = static_cast<float>(Load<T>(pSource));
    return normalized ? std::max(value / static_cast<float>(std::numeric_limits<T>::max()), -1.0f) : value;
}

float LoadFloat(const std::byte* pSource, ComponentType type, bool normalized) {
    switch (type) {
    case ComponentType::Byte:
        return ToUnit<int8_t>(pSource, normalized);
    case ComponentType::UnsignedByte:
        return ToUnit<uint8_t>(pSource, normalized);
    case ComponentType::Short:
        return ToUnit<int16_t>(pSource, normalized);
    case ComponentType::UnsignedShort:
        return ToUnit<uint16_t>(pSource, normalized);
    case ComponentType::UnsignedInt:
        return static_cast<float>(Load<uint32_t>(pSource));
    case ComponentType::Float:
        return Load<float>(pSource);
    }
    return 0.0f;
}

uint32_t LoadUnsigned(const std::byte* pSource, ComponentType type) {
    switch (type) {
    case ComponentType::UnsignedByte:
        return Load<uint8_t>(pSource);
    case ComponentType::UnsignedShort:
        return Load<uint16_t>(pSource);
    default:
        return Load<uint32_t>(pSource);
    }
}

} // namespace

size_t GetSize(ComponentType type) {
    switch (type) {
    case ComponentType::Byte:
    case ComponentType::UnsignedByte:
        return 1;
    case ComponentType::Short:
    case ComponentType::UnsignedShort:
        return 2;
    case ComponentType::UnsignedInt:
    case ComponentType::Float:
        return 4;
    }
    return 4;
}

void AccessorView::Read(uint32_t index, float* pOut, unsigned size) const {
    if (!pData) {
        std::fill_n(pOut, size, 0.0f);
        return;
    }
    const std::byte* pSource = GetElement(index);
    if (type == ComponentType::Float) {
        std::memcpy(pOut, pSource, size * sizeof(float));
        return;
    }
    const size_t componentSize = GetSize(type);
    for (unsigned i = 0; i < size; ++i)
        pOut[i] = LoadFloat(pSource + i * componentSize, type, normalized);
}

uint32_t AccessorView::ReadUnsigned(uint32_t index, unsigned component) const {
    return pData ? LoadUnsigned(GetElement(index) + component * GetSize(type), type) : 0;
}

std::span<const std::byte> BufferStore::GetBuffer(const SceneFile& file, size_t index) {
    const Place place{.kind = "buffer", .index = index};
    if (!m_Buffers.contains(index))
        LoadBuffer(file, GetListed(file, place, "buffers", index), index);
    return m_Buffers[index].bytes;
}

void BufferStore::LoadBuffer(const SceneFile& file, const Json& json, size_t index) {
    const Place place{.kind = "buffer", .index = index};
    const uint64_t length = ReadRequiredSize(place, json, "byteLength");
    const std::string_view uri = ReadString(place, json, "uri");
    Buffer buffer;
    if (uri.empty()) {
        if (index == 0)
            buffer.bytes = file.GetBinary();
        if (buffer.bytes.empty() && length > 0)
            FailDamaged(place, "it names no file, and the scene has no binary chunk");
    } else if (IsDataUri(uri)) {
        const std::optional<DataUri> data = SplitDataUri(uri);
        std::optional<std::vector<std::byte>> bytes = data ? DecodeBase64(data->base64) : std::nullopt;
        if (!bytes)
            FailDamaged(place, "its data is not base64");
        m_Owned.push_back(std::move(*bytes));
        buffer.bytes = m_Owned.back();
    } else {
        const std::optional<std::string> path = ResolveFileUri(file.GetFolder(), uri);
        if (!path)
            Fail(place, Quoted(uri) + " is not a file beside the scene", "export the scene with its buffers beside it");
        buffer.pOwned = ReadFileBytes(place, *path, length);
        buffer.bytes = buffer.pOwned->Get();
    }
    if (buffer.bytes.size() < length)
        FailDamaged(place, "it is cut off: " + std::to_string(buffer.bytes.size()) + " of " + std::to_string(length) +
                               " bytes are there");
    buffer.bytes = buffer.bytes.first(static_cast<size_t>(length));
    m_Buffers[index] = std::move(buffer);
}

BufferStore::View BufferStore::GetView(const SceneFile& file, const Place& user, size_t index) {
    const Place place{.kind = "bufferView", .index = index};
    const Json& json = GetListed(file, user, "bufferViews", index);
    const std::span<const std::byte> buffer =
        GetBuffer(file, static_cast<size_t>(ReadRequiredSize(place, json, "buffer")));
    const uint64_t offset = ReadSize(place, json, "byteOffset", 0);
    const uint64_t length = ReadRequiredSize(place, json, "byteLength");
    if (offset > buffer.size() || length > buffer.size() - offset)
        FailDamaged(place, "it reaches beyond its buffer");
    const uint64_t stride = ReadSize(place, json, "byteStride", 0);
    if (stride > std::numeric_limits<uint32_t>::max())
        FailDamaged(place, "its stride is out of range");
    return {buffer.subspan(static_cast<size_t>(offset), static_cast<size_t>(length)), static_cast<uint32_t>(stride)};
}

AccessorView BufferStore::GetAccessor(const SceneFile& file, const Place& user, size_t index) {
    if (const auto found = m_SparseViews.find(index); found != m_SparseViews.end())
        return found->second;
    const Place place{.kind = "accessor", .index = index};
    const Json& json = GetListed(file, user, "accessors", index);
    const uint64_t count = ReadRequiredSize(place, json, "count");
    AccessorView view;
    view.type = ReadComponentType(place, json);
    view.components = ReadComponentCount(place, json);
    view.normalized = ReadBool(place, json, "normalized", false);
    const auto size = static_cast<uint32_t>(GetSize(view.type) * view.components);
    view.stride = size;
    const Json* pView = FindMember(json, "bufferView");
    if (pView) {
        const View bytes = GetView(file, place, static_cast<size_t>(ReadSize(place, json, "bufferView", 0)));
        const uint64_t offset = ReadSize(place, json, "byteOffset", 0);
        view.stride = bytes.stride ? bytes.stride : size;
        if (view.stride < size)
            FailDamaged(place, "its elements overlap: " + std::to_string(size) + " bytes each, " +
                                   std::to_string(view.stride) + " apart");
        if (!Fits(bytes.bytes.size(), offset, count, view.stride, size))
            FailDamaged(place, std::to_string(count) + " elements reach beyond its bufferView");
        view.pData = bytes.bytes.data() + offset;
    }
    if (count > std::numeric_limits<uint32_t>::max() || (!pView && count > s_LargestEmptyAccessor))
        FailDamaged(place, "its count " + std::to_string(count) + " is out of range");
    view.count = static_cast<uint32_t>(count);
    if (const Json* pSparse = FindObject(place, json, "sparse")) {
        ApplySparse(file, place, *pSparse, view);
        m_SparseViews[index] = view;
    }
    return view;
}

void BufferStore::ApplySparse(const SceneFile& file, const Place& place, const Json& sparse, AccessorView& view) {
    const uint64_t count = ReadRequiredSize(place, sparse, "count");
    const Json* pIndices = FindObject(place, sparse, "indices");
    const Json* pValues = FindObject(place, sparse, "values");
    if (!pIndices || !pValues)
        FailDamaged(place, "its sparse part has no indices or no values");
    const ComponentType type = ReadComponentType(place, *pIndices);
    const size_t size = GetSize(view.type) * view.components;
    const View indices = GetView(file, place, static_cast<size_t>(ReadRequiredSize(place, *pIndices, "bufferView")));
    const View values = GetView(file, place, static_cast<size_t>(ReadRequiredSize(place, *pValues, "bufferView")));
    const uint64_t indexOffset = ReadSize(place, *pIndices, "byteOffset", 0);
    const uint64_t valueOffset = ReadSize(place, *pValues, "byteOffset", 0);
    if (type != ComponentType::UnsignedByte && type != ComponentType::UnsignedShort &&
        type != ComponentType::UnsignedInt)
        FailDamaged(place, "its sparse indices are no whole numbers");
    if (count > view.count || !Fits(indices.bytes.size(), indexOffset, count, GetSize(type), GetSize(type)) ||
        !Fits(values.bytes.size(), valueOffset, count, size, size))
        FailDamaged(place, "its sparse part reaches beyond its bufferViews");

    m_SparseBytes += view.count * size;
    if (m_SparseBytes > s_MostSparseBytes)
        Fail(place, "the scene's sparse accessors take more than 256 MB", "export the scene without sparse accessors");
    std::vector<std::byte> full(view.count * size);
    for (uint32_t i = 0; view.pData && i < view.count; ++i)
        std::memcpy(full.data() + i * size, view.GetElement(i), size);
    for (size_t i = 0; i < count; ++i) {
        const uint32_t target = LoadUnsigned(indices.bytes.data() + indexOffset + i * GetSize(type), type);
        if (target >= view.count)
            FailDamaged(place,
                        "its sparse part sets element " + std::to_string(target) + " of " + std::to_string(view.count));
        std::memcpy(full.data() + target * size, values.bytes.data() + valueOffset + i * size, size);
    }
    m_Owned.push_back(std::move(full));
    view.pData = m_Owned.back().data();
    view.stride = static_cast<uint32_t>(size);
}

} // namespace gltf
