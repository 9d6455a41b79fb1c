#pragma once

#include <cstddef>
#include <string_view>

// One end of a pipe to a child, closed with its object.
class ChildPipe {
public:
    ChildPipe() = default;
    ~ChildPipe() { Close(); }
    ChildPipe(const ChildPipe&) = delete;
    ChildPipe& operator=(const ChildPipe&) = delete;

    // Both ends are this process's alone, and none is a standard stream, even in a process that has closed its own.
    // False with errno set.
    static bool Make(ChildPipe& readEnd, ChildPipe& writeEnd);

    bool IsOpen() const { return m_Descriptor >= 0; }
    int Get() const { return m_Descriptor; }
    void Close();
    // From then on Read and Write come back with 0 in place of waiting. What isn't open stays so.
    void DontBlock() const;

    // What is there, 0 if nothing is. The end of what will ever come closes it.
    size_t Read(char* pRoom, size_t size);
    // What there is room for. A reader that is gone closes it.
    size_t Write(std::string_view bytes);

private:
    int m_Descriptor = -1;
};
