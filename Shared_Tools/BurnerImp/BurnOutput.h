#pragma once

#include "Shared/Cross/FileSystem/FileReplacement.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class ByteStream;
class RevControlAPI;
struct BurnSource;

// Where the file's output belongs: its path below the generic folder put behind the destination, with another extension
// unless that is empty. Throws std::runtime_error for a destination that is no alias path and for a path that is too
// long.
std::string MakeOutputPath(const BurnSource& source, const std::string& destination, const std::string& extension);

// When the newest of the files was written; a file that isn't there counts as new.
int64_t GetNewestTime(const std::vector<std::string>& fullNames);
// Whether all outputs, by alias path, are files that are there and newer than that.
bool AreOutputsNewer(const BurnSource& source, const std::vector<std::string>& outputs, int64_t time);

// Opens outputs under revision control, in one changelist and over one connection, which is made for the first of them.
class OutputControl {
public:
    explicit OutputControl(int32_t changelist);
    ~OutputControl();

    // By alias path. Throws std::runtime_error with the file's name and the reason. True when it is opened in the
    // changelist, false when it was and stays opened in another one.
    bool Open(const std::string& output);

private:
    int32_t m_Changelist;
    bool m_IsConnected = false;
    std::unique_ptr<RevControlAPI> m_pControl;
};

// The outputs of one target while they are written: all take their places when all are whole.
class OutputFiles {
public:
    // By alias paths; throws std::runtime_error with the name of one that can't be written.
    explicit OutputFiles(const std::vector<std::string>& outputs);

    const std::vector<ByteStream*>& GetStreams() const { return m_Streams; }
    // Throws in the same way.
    void Finish();

private:
    std::vector<std::string> m_Names;
    std::vector<std::unique_ptr<FileReplacement>> m_Files;
    std::vector<ByteStream*> m_Streams;
};
