#pragma once

#include "Shared/Cross/FileSystem/ByteStreamAdapter.h"
#include "Shared/Cross/Util/FourCC.h"
#include "Shared/Cross/Util/RefCountString.h"
#include "Shared/Cross/Util/StlExSmallVector.h"

#include <cstdint>
#include <stdexcept>

enum ChunkKind : uint32_t {
    ChunkKind_Folder = 0, // holds chunks and nothing else
    ChunkKind_Data = 1,   // holds bytes that only its reader understands
};

// What a reader is told of a chunk. Kind and id mean nothing before a call has filled them.
struct ChunkInfo {
    ChunkKind kind = ChunkKind_Folder;
    uint32_t id = 0;
    uint32_t version = 0; // as found in the file
    uint32_t size = 20;   // bytes of payload; they are there, in the stream
    RefCountString name;
};

// Codes 7 and 8 are free on purpose: a later code doesn't reuse them.
enum ChunkyError : int32_t {
    ChunkyError_OpenFailed = 0,
    ChunkyError_BadFile = 1,
    ChunkyError_BadChunk = 2,
    ChunkyError_BadStructure = 3,
    ChunkyError_MissingChunk = 4,
    ChunkyError_NewerVersion = 5,
    ChunkyError_ReadPastEnd = 6,
    ChunkyError_DataInFolder = 9,
    ChunkyError_SeekFailed = 10,
};

// Writes or reads the container of every binary asset: a header and a tree of chunks, each with an id, a version, a
// size and an optional name. The stream's mode at construction says which of the two. One object makes one pass over
// one stream, on one thread; after an exception it is of no more use. Ids are four-character codes made by FourCC.
//
// Damage throws Exception; the texts don't name the file, whoever opened it adds that. Writing does not throw for a
// full disk: ask the stream's Flush at the end.
class Chunky {
public:
    class Exception : public std::runtime_error {
    public:
        Exception(int32_t code, const char* pText) : std::runtime_error(pText), m_Code(code) {}
        Exception(int32_t code, const std::string& text) : std::runtime_error(text), m_Code(code) {}
        int32_t GetCode() const { return m_Code; }

    private:
        int32_t m_Code;
    };

    // The stream behind the adapter is in Mode_Read or Mode_Write and outlives this. Writes the file header, or reads
    // and checks it.
    explicit Chunky(const ByteStreamAdapter& stream);
    // Leaves the file alone: a chunk that was begun and not ended keeps a size of 0.
    ~Chunky();
    Chunky(const Chunky&) = delete;
    Chunky& operator=(const Chunky&) = delete;

    // What a data chunk's payload goes through. For a child that needs the pair by value, copy it.
    ByteStreamAdapter& GetStream() { return m_Stream; }

    // Writing. A null name and an empty one are both no name.
    void BeginFolder(uint32_t id, uint32_t version, const char* pName = nullptr);
    void BeginData(uint32_t id, uint32_t version, const char* pName = nullptr);

    // Reading: on to the next chunk of that kind and id at this level, and into it. Throws when there is none ahead,
    // or when it is newer than maxVersion; older ones are the caller's business.
    ChunkInfo EnterFolder(uint32_t id, uint32_t maxVersion);
    ChunkInfo EnterData(uint32_t id, uint32_t maxVersion);
    // Looks at the next chunk of this level without entering it; to enter it, ask for its id. One that isn't entered
    // is skipped by the next call. False at the end of the level, after which only EndChunk makes sense.
    bool NextChunk(ChunkInfo& out);
    // The same until a chunk of that kind and id comes; false at the end of the level.
    bool FindChunk(ChunkKind kind, uint32_t id);
    // Chunks entered and not ended.
    uint32_t GetDepth() const;
    // Payload bytes of the innermost chunk that are still ahead; without a chunk, what the stream has left.
    uint32_t GetRemaining();

    // Both: leaves the innermost chunk. A reader goes to the end of its payload, whatever was read of it; a writer
    // puts the size into its header.
    void EndChunk();

private:
    struct Header {
        uint32_t type = 0;
        uint32_t id = 0;
        uint32_t version = 0;
        uint32_t size = 0;
        uint32_t nameLength = 0;
    };
    struct StackNode {
        Header chunkHeader;
        RefCountString name;
        uint32_t headerPos = 0;
        uint32_t dataPos = 0;
    };

    void WriteFileHeader();
    void ReadFileHeader();
    void Begin(uint32_t type, uint32_t id, uint32_t version, const char* pName);
    void WriteHeader(const StackNode& node);
    void EndWrite();

    ChunkInfo Enter(ChunkKind kind, uint32_t id, uint32_t maxVersion);
    void TakeHeader();
    bool IsLevelAtEnd();
    void PushHeader();
    RefCountString ReadName(uint32_t nameLength);
    void CheckPlace(const StackNode& stackNode);
    void EndRead();
    void SeekToEnd(const StackNode& node);

    static uint64_t GetPayloadEnd(const StackNode& node);
    static ChunkInfo Describe(const StackNode& node);

    ByteStream::Mode m_Mode;
    StlExSmallVector<StackNode, 10> m_Chunks; // the innermost open chunk last
    bool m_Peeked = false;     // the last one was only looked at, or NextChunk came to the end behind one
    bool m_LevelEnded = false; // the second of the two
    uint32_t m_LastPos = 0;    // writing: where the last header or chunk ended
    ByteStreamAdapter m_Stream;
};
