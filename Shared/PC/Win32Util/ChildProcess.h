#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A program that this one runs: started without a shell, in a group of its own together with what it starts itself,
// with this process's environment and none of its open files. Used by one thread at a time.
class ChildProcess {
public:
    // What a standard stream of the child is.
    enum class Stream {
        Inherit, // this process's own
        None,    // nothing: reading ends at once, writing goes nowhere
        Pipe,    // what Exchange feeds and reads
    };

    struct Settings {
        // A path in the system's or the machine's form, or a bare name, which is looked for in the folders of the
        // environment's PATH.
        std::string program;
        // Handed over as they stand, one by one; the program's own name isn't among them. Paths in them are in the
        // form that the program expects.
        std::vector<std::string> arguments;
        std::string workingFolder; // in the system's or the machine's form; empty for this process's own
        Stream input = Stream::Inherit;
        Stream output = Stream::Inherit;
        Stream error = Stream::Inherit;
    };

    ChildProcess();
    // Lets a child that still runs go on by itself; its pipes are closed.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // False when it can't be started; GetError says why ("No such file or directory"). An object that has started one
    // can start another when that one has ended.
    bool Start(const Settings& settings);
    const std::string& GetError() const { return m_Error; }

    // False before Start and after the end.
    bool IsRunning();
    // None while it runs. For one that a signal ended, 128 and the signal's number, as shells have it.
    std::optional<int> GetExitCode();
    // True when it has ended within the limit, or was never started.
    bool Wait(std::chrono::milliseconds limit);

    // Ends it and all of its group at once, and waits for its own end. Reaches what it left running, too.
    void Kill();

    enum class Outcome {
        Ended,   // the child has ended and all it wrote was handed over
        Silent,  // nothing was written for as long as Limits::silence; it still runs
        TooLong, // not ended within Limits::total; it still runs
        Refused, // a receiver answered false; it still runs
    };
    struct Limits {
        std::chrono::milliseconds silence;
        std::chrono::milliseconds total;
    };
    // Is handed what comes, in pieces of any size; false ends the exchange.
    using Receiver = std::function<bool(std::string_view piece)>;

    // Writes all input and closes it, hands on what comes from output and error as it comes, all at the same time, so
    // that neither side waits for the other, and sees the child to its end. A child that doesn't read its input is no
    // failure. Once for each Start; streams that are no pipe are left out.
    Outcome Exchange(std::string_view input, const Receiver& onOutput, const Receiver& onError, const Limits& limits);

private:
    struct Pipes;

    bool SeeEnd();
    void Release();

    std::unique_ptr<Pipes> m_pPipes;
    // Of the child and of its group; 0 when there is none. The system keeps the number of a child that has ended until
    // Release, so that it can't come to mean another's group.
    int32_t m_Id = 0;
    std::optional<int> m_ExitCode;
    std::string m_Error;
};
