#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"

// The chunks that `write` puts into a file.
template <class Write>
std::string WriteChunks(Write write) {
    const auto pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    PayloadWriter writer;
    write(chunky, writer);
    return BytesOf(*pStream).substr(ChunkBytes::FileHeader().size());
}

// What `read` makes of a file of these chunks.
template <class Read>
auto ReadChunks(std::string_view chunks, Read read) {
    const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + std::string(chunks));
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    return read(chunky);
}

// The bytes of a whole file.
template <class Write>
std::string WriteFile(Write write) {
    const auto pStream = MakeWriteStream();
    write(*pStream);
    return BytesOf(*pStream);
}

// What is said of damage; empty for none.
template <class Function>
std::string FaultOf(Function function) {
    try {
        function();
        return {};
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}
