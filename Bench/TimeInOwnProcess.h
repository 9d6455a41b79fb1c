#pragma once

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

// Seconds that `work` takes after `prepare` in a process of its own, which starts as this one stands. What they leave
// in memory goes with it, and what they take comes fresh from the system, as for a tool that loads a file and ends;
// but memory that this process has used and freed the system copies first. Ends this process when the other one
// doesn't come through.
template <class Prepare, class Work>
double TimeInOwnProcess(const Prepare& prepare, const Work& work) {
    const auto stop = [](const char* pWhat) {
        std::perror(pWhat);
        std::exit(1);
    };
    int ends[2];
    if (pipe(ends) != 0)
        stop("pipe");
    const pid_t process = fork();
    if (process < 0)
        stop("fork");
    double seconds = 0.0;
    if (process == 0) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        work();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        _exit(write(ends[1], &seconds, sizeof(seconds)) == sizeof(seconds) ? 0 : 1);
    }
    close(ends[1]);
    const bool isDone = read(ends[0], &seconds, sizeof(seconds)) == sizeof(seconds);
    close(ends[0]);
    waitpid(process, nullptr, 0);
    if (!isDone) {
        std::fprintf(stderr, "the other process failed\n");
        std::exit(1);
    }
    return seconds;
}

// Runs `work` in a process of its own, so that this one's memory stays as it is.
template <class Work>
void RunInOwnProcess(const Work& work) {
    TimeInOwnProcess([] {}, work);
}
