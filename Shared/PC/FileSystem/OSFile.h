#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The operating system's files. The one place that turns the system's own paths, which are in Windows form
// (Z:\home\me\x.pvx), into the machine's and back:
// - the drive Z: is the root of the machine's tree and no other drive exists; a path without a drive is relative to
//   the current folder; both slashes separate;
// - a name that doesn't exist as spelled is looked up without regard to case, component by component; the exact
//   spelling wins. A new file or folder takes the spelling that was asked for, inside its folder's own spelling.
// - a drive other than Z:, a path to another machine and a colon anywhere else lead nowhere.
// Failures are false, 0 or an empty string; LastErrorText tells why. Any thread may use these, one at a time for each
// handle.
namespace OSFile {

enum Attribute : uint32_t {
    F_ATTRIBUTE_DIRECTORY = 0x1,
    F_ATTRIBUTE_FILE = 0x2,
    F_ATTRIBUTE_READABLE = 0x100,
    F_ATTRIBUTE_WRITABLE = 0x200,
};

enum OpenMode : uint32_t {
    Open_Read = 0,      // an existing file
    Open_ReadWrite = 1, // opened or created, positioned at the end
    Open_Write = 2,     // created or emptied
};

// An open file; not closed by itself.
struct Handle {
    int value = -1;
    explicit operator bool() const { return value >= 0; }
};

// A second writer of a file is refused, and so is writing to a file whose read-only attribute is set. `share` lets
// others read beside a writer; this system never keeps them from it. `random` tells the system that reading will jump
// about. The size of the file, if wanted, comes with the handle.
Handle Open(const char* pName, OpenMode mode, bool share, bool random, uint64_t* pSize = nullptr);
// Each of these stops at an assertion for a null handle and answers 0 or false. Reading and writing go on over
// interruptions and short counts until all is moved, the file ends or the system refuses.
bool Close(Handle handle); // false when the system only now tells that written bytes are lost
uint32_t GetPos(Handle handle);
bool Seek(Handle handle, uint32_t pos);
uint32_t Read(Handle handle, void* pDest, uint32_t size);
uint32_t Write(Handle handle, const void* pSource, uint32_t size);
// The same at a place of their own; the handle's position stays where it is.
uint32_t ReadAt(Handle handle, uint32_t pos, void* pDest, uint32_t size);
uint32_t WriteAt(Handle handle, uint32_t pos, const void* pSource, uint32_t size);
bool Flush(Handle handle); // on to the medium, which takes its time
// Another handle of the same open file, to be closed by itself: as long as one of the two is open, a second writer is
// refused.
Handle Duplicate(Handle handle);
// 64-bit, since a file that is too large for a stream has to be told from one that isn't.
uint64_t GetSize(Handle handle);

// 0 if there is nothing of that name, otherwise a combination of Attribute.
uint32_t FileAttr(const char* pPath);
// When the file was last written, in nanoseconds since 1970; 0 if there is nothing of that name.
int64_t GetWriteTime(const char* pPath);
// Sets or clears what Windows calls the read-only attribute: the owner's right to write.
bool SetWritable(const char* pPath, bool writable);
// A file, not a folder and none that is read-only.
bool Delete(const char* pPath);
// Replaces a file that is there already, and takes over its rights.
bool Rename(const char* pFrom, const char* pTo);
// Whether Rename may put another file of ours under this name with nothing lost but the content: nothing is there yet,
// or a plain file of our own that may be written and is known by no other name, links included.
bool IsReplaceable(const char* pPath);
// One folder, inside one that exists. True too when it is there already.
bool MakeFolder(const char* pPath);
// All folders on the way to a file, from the root downward; what stands behind the last separator is the file.
bool MakeFolders(const char* pFilePath);

// The names in a folder that match a pattern: the last component of `spec`, with * and ? as wildcards. Without "." and
// "..", and without links to a folder above them, which would make a tree endless; in alphabetical order without regard
// to case.
std::vector<std::string> List(const char* pSpec);
// Whether there is any.
bool Exists(const char* pSpec);

// The current folder in the system's form, with a final backslash.
std::string GetCurrentFolder();
// The machine's form, absolute, with every component in its actual spelling as far as it exists. Empty for a path that
// leads nowhere.
std::string ToNative(std::string_view path);
// The system's form of one of the machine's paths: absolute, so that Z: leads it, but with dots left as they are.
// Empty for a name that this form can't express, which is one with a backslash or a colon.
std::string FromNative(std::string_view nativePath);

// Why the last operation of this thread failed: the machine's error number, and its text ("No space left on device").
int LastError();
std::string LastErrorText();
// Whether it failed since somebody else is writing the file.
bool WasInUse();

} // namespace OSFile
