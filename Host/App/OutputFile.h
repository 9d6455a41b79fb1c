#pragma once

#include "Shared/PC/Console/InterruptGuard.h"

#include <string>

// The file that an export is asked to write: checked before anything else is done, and never left half-written.
class OutputFile {
public:
    // Throws a HostError with status 2 when no file can come to stand there: its folder is missing or refuses new
    // files, the name is a folder's, has no extension, is the scene's own or that of another kind of file. Nothing on
    // disk is changed.
    OutputFile(const std::string& nativePath, const std::string& nativeScene);

    // In the system's form, absolute.
    const std::string& GetPath() const { return m_Path; }
    // The folder as the user knows it: native, absolute.
    const std::string& GetNativeFolder() const { return m_NativeFolder; }
    // Of the log that the export writes beside it; in the system's form.
    std::string GetLogPath() const;

    // Whether the file was written since the check.
    bool IsWritten() const { return m_Guard.IsTouched(); }
    enum class Content {
        Broken, // no chunked file, or not one from its first byte to its last
        Empty,  // a model that holds nothing
        Full
    };
    // Of what is there.
    Content GetContent() const;
    // Takes away what a failed run has left: the file, if this run wrote it and it isn't whole.
    void RemoveIfBroken() const;

private:
    struct Checked {
        std::string path;
        std::string nativeFolder;
    };
    static Checked Check(const std::string& nativePath, const std::string& nativeScene);
    OutputFile(const std::string& nativePath, Checked checked);

    std::string m_NativePath; // as given
    std::string m_Path;
    std::string m_NativeFolder;
    InterruptGuard m_Guard;
};
