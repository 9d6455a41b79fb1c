#include "Shared/Cross/FileSystem/Chunky.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

// The file, without padding anywhere; integers are little-endian but for `type` and `id`, whose first character comes
// first:
//
//   header   magic, 16 bytes    "Vorlo Chunky\r\n", 0x1A, 0x00
//            uint32             file version
//            uint32             platform
//   chunks   up to the end of the file
//
//   chunk    uint32 type        "FOLD" or "DATA"
//            uint32 id
//            uint32 version
//            uint32 size        bytes of payload, behind the name
//            uint32 nameLength  with the terminator; 0 without a name
//            name
//            payload            a folder's is its chunks
namespace {

constexpr char s_Magic[] = "Vorlo Chunky\r\n\x1A"; // with the terminator, 16 bytes
static_assert(sizeof(s_Magic) == 16);
constexpr uint32_t s_FileVersion = 1;
constexpr uint32_t s_FolderChunkType = FourCC("FOLD");
constexpr uint32_t s_DataChunkType = FourCC("DATA");
constexpr uint32_t s_HeaderFields = 5;
constexpr uint32_t s_HeaderSize = s_HeaderFields * sizeof(uint32_t);
constexpr uint32_t s_InlineName = 512;   // a longer name costs a heap buffer to read
constexpr uint32_t s_LongestName = 1024; // no writer of ours makes a longer one

uint32_t InReadingOrder(uint32_t code) {
    static_assert(std::endian::native == std::endian::little);
    return __builtin_bswap32(code);
}

ChunkKind KindOf(uint32_t type) { return type == s_FolderChunkType ? ChunkKind_Folder : ChunkKind_Data; }

uint32_t TypeOf(ChunkKind kind) { return kind == ChunkKind_Folder ? s_FolderChunkType : s_DataChunkType; }

[[noreturn]] void Fail(ChunkyError code, const char* pText) { throw Chunky::Exception(code, pText); }

[[noreturn]] void FailPastEnd() { Fail(ChunkyError_ReadPastEnd, "Read past the Chunk end!"); }

[[noreturn]] void FailHeader() { Fail(ChunkyError_BadChunk, "Not a valid chunk header!"); }

[[noreturn]] void FailSeek() { Fail(ChunkyError_SeekFailed, "Failed to seek to end of chunk"); }

[[noreturn]] void FailSubChunk() {
    Fail(ChunkyError_BadStructure, "Invalid file format, only Folder Chunks may have sub-chunks!");
}

[[noreturn]] void FailDataInFolder() {
    Fail(ChunkyError_DataInFolder, "A folder chunk had data written directly in it!");
}

// Where the stream ends. One that stands behind its own length gives the caller's word in place of a length.
uint64_t EndOf(ByteStreamAdapter& stream) {
    const uint32_t length = stream.GetLength();
    return stream.GetPos() <= length ? length : std::numeric_limits<uint32_t>::max();
}

} // namespace

Chunky::Chunky(const ByteStreamAdapter& stream) : m_Mode(stream.GetMode()), m_Stream(stream) {
    using enum ByteStream::Mode;
    if (!m_Stream.GetStream())
        Fail(ChunkyError_OpenFailed, "Unable to open file!");
    dbAssert(m_Mode == Mode_Read || m_Mode == Mode_Write);
    if (m_Mode == Mode_Read)
        ReadFileHeader();
    else if (m_Mode == Mode_Write)
        WriteFileHeader();
    else
        Fail(ChunkyError_OpenFailed, "Unable to open file!");
}

Chunky::~Chunky() = default;

void Chunky::WriteFileHeader() {
    const std::array<uint32_t, 2> fields{s_FileVersion, m_Stream.GetPlatform()};
    m_Stream.Write(s_Magic, sizeof(s_Magic));
    m_Stream.Write(fields.data(), static_cast<uint32_t>(fields.size()));
    m_LastPos = m_Stream.GetPos();
}

void Chunky::ReadFileHeader() {
    char magic[sizeof(s_Magic)] = {};
    std::array<uint32_t, 2> fields{}; // version and platform; any platform is read
    const uint32_t magicRead = m_Stream.Read(magic, sizeof(magic));
    const uint32_t fieldsRead = m_Stream.Read(fields.data(), static_cast<uint32_t>(fields.size()));
    if (magicRead != sizeof(magic) || fieldsRead != sizeof(fields) || std::memcmp(magic, s_Magic, sizeof(magic)) != 0)
        Fail(ChunkyError_BadFile, "Not a valid chunky file!");
    if (fields[0] > s_FileVersion)
        Fail(ChunkyError_BadFile, "Unsupported file version!");
}

// Writing

void Chunky::BeginFolder(uint32_t id, uint32_t version, const char* pName) {
    Begin(s_FolderChunkType, id, version, pName);
}

void Chunky::BeginData(uint32_t id, uint32_t version, const char* pName) { Begin(s_DataChunkType, id, version, pName); }

void Chunky::Begin(uint32_t type, uint32_t id, uint32_t version, const char* pName) {
    using enum ByteStream::Mode;
    dbAssert(m_Mode == Mode_Write);
    if (!m_Chunks.empty() && m_Chunks.back().chunkHeader.type != s_FolderChunkType) {
        dbBreak();
        FailSubChunk();
    }
    const uint32_t pos = m_Stream.GetPos();
    if (pos != m_LastPos) {
        dbBreak();
        FailDataInFolder();
    }
    const std::string_view name(pName ? pName : "");
    const uint32_t nameLength = name.empty() ? 0 : static_cast<uint32_t>(name.size()) + 1;
    StackNode node{.chunkHeader = {.type = type, .id = id, .version = version, .nameLength = nameLength},
                   .name = RefCountString(name),
                   .headerPos = pos};
    WriteHeader(node);
    node.dataPos = m_Stream.GetPos();
    m_LastPos = node.dataPos;
    m_Chunks.push_back(std::move(node));
}

void Chunky::WriteHeader(const StackNode& node) {
    const Header& header = node.chunkHeader;
    const std::array<uint32_t, s_HeaderFields> fields{InReadingOrder(header.type), InReadingOrder(header.id),
                                                      header.version, header.size, header.nameLength};
    m_Stream.Write(fields.data(), s_HeaderFields);
    if (header.nameLength > 0)
        m_Stream.Write(node.name.GetText(), header.nameLength);
}

void Chunky::EndWrite() {
    StackNode& back = m_Chunks.back();
    const uint32_t pos = m_Stream.GetPos();
    if (pos < back.dataPos) {
        dbBreak();
        Fail(ChunkyError_BadChunk, "Invalid Chunk Size, chunks must not be over-written!");
    }
    if (back.chunkHeader.type == s_FolderChunkType && pos != m_LastPos) {
        dbBreak();
        FailDataInFolder();
    }
    back.chunkHeader.size = pos - back.dataPos;
    if (!m_Stream.Seek(back.headerPos))
        FailSeek();
    WriteHeader(back);
    if (!m_Stream.Seek(pos))
        FailSeek();
    m_LastPos = pos;
    m_Chunks.pop_back();
}

// Reading

ChunkInfo Chunky::EnterFolder(uint32_t id, uint32_t maxVersion) { return Enter(ChunkKind_Folder, id, maxVersion); }

ChunkInfo Chunky::EnterData(uint32_t id, uint32_t maxVersion) { return Enter(ChunkKind_Data, id, maxVersion); }

ChunkInfo Chunky::Enter(ChunkKind kind, uint32_t id, uint32_t maxVersion) {
    using enum ByteStream::Mode;
    dbAssert(m_Mode == Mode_Read);
    TakeHeader();
    const Header& first = m_Chunks.back().chunkHeader;
    if (first.type != TypeOf(kind) || first.id != id) {
        EndChunk();
        if (!FindChunk(kind, id))
            Fail(ChunkyError_MissingChunk, "Missing Chunk Type!");
        TakeHeader();
    }
    ChunkInfo info = Describe(m_Chunks.back());
    if (info.version > maxVersion)
        Fail(ChunkyError_NewerVersion, "Unsupported (newer) Chunk Version!");
    return info;
}

// The next chunk of the level on top of the stack: the one that was peeked at, or else a fresh one.
void Chunky::TakeHeader() {
    if (m_LevelEnded)
        Fail(ChunkyError_MissingChunk, "Missing Chunk Type!");
    if (!m_Peeked)
        PushHeader();
    m_Peeked = false;
}

bool Chunky::FindChunk(ChunkKind kind, uint32_t id) {
    ChunkInfo info;
    while (NextChunk(info))
        if (info.kind == kind && info.id == id)
            return true;
    return false;
}

bool Chunky::NextChunk(ChunkInfo& out) {
    if (m_LevelEnded)
        return false;
    if (m_Peeked) {
        SeekToEnd(m_Chunks.back());
        m_Chunks.pop_back();
    }
    if (IsLevelAtEnd()) {
        // The flag stays set behind a skipped chunk; this keeps the folder, now on top, from being taken for one.
        m_LevelEnded = m_Peeked;
        return false;
    }
    m_Peeked = false;
    PushHeader();
    m_Peeked = true;
    out = Describe(m_Chunks.back());
    return true;
}

bool Chunky::IsLevelAtEnd() {
    const uint32_t pos = m_Stream.GetPos();
    if (m_Chunks.empty())
        return pos == m_Stream.GetLength();
    const StackNode& folder = m_Chunks.back();
    dbAssert(m_Chunks.back().chunkHeader.type == s_FolderChunkType);
    if (folder.chunkHeader.type != s_FolderChunkType)
        FailSubChunk();
    // A position ahead of the folder wraps around and is refused all the same.
    const uint32_t used = pos - folder.dataPos;
    if (used > folder.chunkHeader.size)
        FailPastEnd();
    return used == folder.chunkHeader.size;
}

void Chunky::PushHeader() {
    StackNode node;
    node.headerPos = m_Stream.GetPos();
    std::array<uint32_t, s_HeaderFields> fields{};
    if (m_Stream.Read(fields.data(), s_HeaderFields) != s_HeaderSize)
        FailHeader();
    Header& header = node.chunkHeader;
    header = {.type = InReadingOrder(fields[0]),
              .id = InReadingOrder(fields[1]),
              .version = fields[2],
              .size = fields[3],
              .nameLength = fields[4]};
    if (header.type != s_FolderChunkType && header.type != s_DataChunkType)
        FailHeader();
    node.name = ReadName(header.nameLength);
    node.dataPos = m_Stream.GetPos();
    CheckPlace(node);
    m_Chunks.push_back(std::move(node));
}

RefCountString Chunky::ReadName(uint32_t nameLength) {
    if (nameLength == 0)
        return {};
    uint64_t end = EndOf(m_Stream);
    if (!m_Chunks.empty())
        end = std::min(end, GetPayloadEnd(m_Chunks.back()));
    if (m_Stream.GetPos() + uint64_t{nameLength} > end)
        FailPastEnd();
    std::array<char, s_InlineName> inlineName;
    std::vector<char> longName;
    char* pName = inlineName.data();
    if (nameLength > s_InlineName) {
        longName.resize(nameLength);
        pName = longName.data();
    }
    if (m_Stream.Read(pName, nameLength) != nameLength)
        FailPastEnd();
    return RefCountString(std::string_view(pName, strnlen(pName, nameLength)));
}

// A fresh chunk lies inside its folder, and its payload inside the stream, before anybody relies on its size.
void Chunky::CheckPlace(const StackNode& stackNode) {
    const Header& header = stackNode.chunkHeader;
    if (!m_Chunks.empty() && stackNode.dataPos > GetPayloadEnd(m_Chunks.back()))
        FailPastEnd();
    if (GetPayloadEnd(stackNode) > EndOf(m_Stream))
        FailSeek();
    if (m_Chunks.empty())
        return;
    const uint64_t chunkStart = uint64_t{m_Chunks.back().dataPos} + s_HeaderSize + header.nameLength;
    const uint64_t chunkEnd = GetPayloadEnd(m_Chunks.back());
    dbAssert(stackNode.dataPos >= chunkStart);
    dbAssert(stackNode.dataPos <= chunkEnd);
    if (stackNode.dataPos < chunkStart)
        FailHeader();
    dbAssert(header.nameLength <= s_LongestName);
    if (header.type == s_DataChunkType) {
        dbAssert(m_Chunks.back().chunkHeader.type == s_FolderChunkType);
        if (m_Chunks.back().chunkHeader.type != s_FolderChunkType)
            FailSubChunk();
    }
}

void Chunky::EndRead() {
    const StackNode& back = m_Chunks.back();
    const uint32_t pos = m_Stream.GetPos();
    if (pos < back.dataPos) {
        dbBreak();
        FailPastEnd();
    }
    if (pos - back.dataPos > back.chunkHeader.size)
        FailPastEnd();
    SeekToEnd(back);
    m_Peeked = false;
    m_LevelEnded = false;
    m_Chunks.pop_back();
}

void Chunky::SeekToEnd(const StackNode& node) {
    const uint64_t end = GetPayloadEnd(node);
    const uint32_t pos = m_Stream.GetPos();
    if (pos == end)
        return;
    if (end > EndOf(m_Stream))
        FailSeek();
    m_Stream.Seek(static_cast<uint32_t>(end));
    if (m_Stream.GetPos() != end)
        FailSeek();
}

// Both

void Chunky::EndChunk() {
    dbAssert(!m_Chunks.empty());
    if (m_Chunks.empty())
        return;
    if (m_Mode == ByteStream::Mode_Write)
        EndWrite();
    else
        EndRead();
}

uint32_t Chunky::GetDepth() const {
    const auto depth = static_cast<uint32_t>(m_Chunks.size());
    return m_Peeked && !m_LevelEnded ? depth - 1 : depth;
}

uint32_t Chunky::GetRemaining() {
    const uint32_t depth = GetDepth();
    const uint64_t end = depth > 0 ? GetPayloadEnd(m_Chunks[depth - 1]) : EndOf(m_Stream);
    const uint32_t pos = m_Stream.GetPos();
    return end > pos ? static_cast<uint32_t>(end - pos) : 0;
}

uint64_t Chunky::GetPayloadEnd(const StackNode& node) { return uint64_t{node.dataPos} + node.chunkHeader.size; }

ChunkInfo Chunky::Describe(const StackNode& node) {
    return {.kind = KindOf(node.chunkHeader.type),
            .id = node.chunkHeader.id,
            .version = node.chunkHeader.version,
            .size = node.chunkHeader.size,
            .name = node.name};
}
