#pragma once

#include <cstdint>

// The tools run the burner as a copy of its own, "Burner_<n>.exe", and delete that in the end. Made at the program's
// start, to know who the tools are.
class OwnCopy {
public:
    OwnCopy();

    // Takes the copy away when the tools are gone and can't any more; under any other name the program isn't deleted.
    // As long as they are there, the name may be another host's as soon as they have deleted it, so it isn't touched.
    // `mayBeLast` when the pipe was lost, which a host that ends closes a moment before it is gone.
    void DeleteIfHostIsGone(bool mayBeLast) const;
    // The same without a look at who the tools are: for a program that found no pipe in all its time, which the tools
    // offer before they start it. They may have been gone before it could know them. A copy that they have deleted has
    // no name any more, so another host's copy is safe.
    static void Delete();

private:
    bool WaitForEndOfHost() const;

    uint32_t m_Host;
};
