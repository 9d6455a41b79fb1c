#pragma once

#include "Shared/Cross/FileSystem/RamStream.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// The bytes of a chunked file, put together by hand, so that reader and writer can't share a mistake.
class ChunkBytes {
public:
    // The bare file header.
    static std::string FileHeader(uint32_t version = 1) {
        return std::string("Vorlo Chunky\r\n\x1A\0", 16) + Number(version) + Number(1);
    }
    // Type and id as they stand in the file.
    static std::string Header(std::string_view type, std::string_view id, uint32_t version, uint32_t size,
                              uint32_t nameLength = 0) {
        return std::string(type) + std::string(id) + Number(version) + Number(size) + Number(nameLength);
    }
    static std::string Data(std::string_view id, std::string_view payload, uint32_t version = 1) {
        return Header("DATA", id, version, static_cast<uint32_t>(payload.size())) + std::string(payload);
    }
    static std::string Folder(std::string_view id, std::string_view children, uint32_t version = 1) {
        return Header("FOLD", id, version, static_cast<uint32_t>(children.size())) + std::string(children);
    }
    static std::string Number(uint32_t number) {
        std::string bytes;
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(number >> shift);
        return bytes;
    }
};

// For reading, over a copy in a block of that very size, so that a sanitizer sees a read of one byte too many.
inline std::unique_ptr<RamStream> MakeReadStream(std::string_view bytes) {
    auto pStream = std::make_unique<RamStream>();
    auto* pBlock = new uint8_t[bytes.size()]; // the stream's
    bytes.copy(reinterpret_cast<char*>(pBlock), bytes.size());
    pStream->Attach(pBlock, static_cast<uint32_t>(bytes.size()), true, ByteStream::Mode_Read);
    return pStream;
}

inline std::unique_ptr<RamStream> MakeWriteStream() {
    auto pStream = std::make_unique<RamStream>();
    pStream->Create(16, ByteStream::Mode_Write);
    return pStream;
}

inline std::string BytesOf(RamStream& stream) {
    return {reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetLength()};
}
