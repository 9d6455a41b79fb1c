#pragma once

#include "Host/Gltf/SceneFile.h"

#include <cstring>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace gltf {

enum class ComponentType : uint16_t {
    Byte = 5120,
    UnsignedByte = 5121,
    Short = 5122,
    UnsignedShort = 5123,
    UnsignedInt = 5125,
    Float = 5126,
};

size_t GetSize(ComponentType type);

// A list of elements inside the file's bytes, checked: every element that `count` promises is there. It looks into a
// BufferStore, which has to live as long.
struct AccessorView {
    const std::byte* pData = nullptr; // null: all elements are 0
    uint32_t count = 0;
    uint32_t stride = 0; // bytes from one element to the next
    ComponentType type = ComponentType::Float;
    uint8_t components = 0;  // 1..4, or 16 for a 4 by 4 matrix
    bool normalized = false; // whole numbers stand for 0..1 or -1..1

    bool operator==(const AccessorView&) const = default;
    bool IsEmpty() const { return components == 0; }
    bool IsPlainFloat() const { return pData && type == ComponentType::Float; }
    const std::byte* GetElement(uint32_t index) const { return pData + static_cast<size_t>(index) * stride; }

    // The first `size` components of an element as floats; any type. `index` is below `count`.
    void Read(uint32_t index, float* pOut, unsigned size) const;
    // A whole number of an unsigned type.
    uint32_t ReadUnsigned(uint32_t index, unsigned component) const;
};

// The file's buffers, loaded when they are first looked into and kept from then on; and the sparse accessors, laid out
// in full.
class BufferStore {
public:
    // Buffers are found through `file`, which only this class's loading operations need.
    explicit BufferStore(const SceneFile& file) : m_pFileBytes(file.GetBytes()) {}

    // A part of a buffer as a bufferView describes it, and its stride (0: elements lie close).
    struct View {
        std::span<const std::byte> bytes;
        uint32_t stride = 0;
    };
    View GetView(const SceneFile& file, const Place& user, size_t index);
    // The accessor `index`. `user` is who refers to it. Faults when any of its claims doesn't hold.
    AccessorView GetAccessor(const SceneFile& file, const Place& user, size_t index);

    // What is known of the contents of accessors, by index. Many users may share one large accessor, and each would go
    // through all of it again.
    struct Checks {
        std::unordered_set<size_t> finite; // all its numbers are
        std::unordered_map<size_t, uint32_t> highestIndices;
    };
    Checks& GetChecks() { return m_Checks; }

private:
    std::span<const std::byte> GetBuffer(const SceneFile& file, size_t index);
    void LoadBuffer(const SceneFile& file, const Json& buffer, size_t index);
    void ApplySparse(const SceneFile& file, const Place& place, const Json& sparse, AccessorView& view);

    struct Buffer {
        std::shared_ptr<const Bytes> pOwned; // null for the binary chunk
        std::span<const std::byte> bytes;
    };
    std::shared_ptr<const Bytes> m_pFileBytes;
    std::map<size_t, Buffer> m_Buffers;
    std::map<size_t, AccessorView> m_SparseViews;
    std::vector<std::vector<std::byte>> m_Owned;
    size_t m_SparseBytes = 0;
    Checks m_Checks;
};

} // namespace gltf
