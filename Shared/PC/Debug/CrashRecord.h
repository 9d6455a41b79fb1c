#pragma once

#include <cstdint>

// What a crashed process hands to the program that reports on it. Plain memory of a fixed size: it is filled in while
// all is well and then in a signal handler, where nothing can be allocated, and sent as it stands to a program of the
// same build. Texts end with a NUL; paths are in the machine's own form, folders with their closing slash.

// Of an x86-64 processor.
struct CrashRegisters {
    uint64_t rax, rbx, rcx, rdx, rsi, rdi, rbp, rsp;
    uint64_t r8, r9, r10, r11, r12, r13, r14, r15;
    uint64_t rip, flags;
    uint16_t cs, ss, ds, es, fs, gs;
};

struct CrashReportFile {
    char name[260];
    bool deleteAfter; // once it is sent
};

struct CrashRecord {
    static constexpr uint32_t MaxTexts = 4;
    static constexpr uint32_t MaxFiles = 64;
    static constexpr uint32_t MaxCodeBytes = 16;

    uint32_t size; // of this record, against a program of another build

    // The crash.
    int32_t process;
    int32_t thread;
    int32_t signal;
    int32_t code; // what the system adds to the signal
    uint64_t address;
    bool isWrite;             // of an access: to write, not to read
    bool isLanguageException; // one that nobody caught
    CrashRegisters registers;
    uint8_t floatingPoint[512]; // as the processor saves it
    uint8_t signalInfo[128];    // as the system gave it
    uint32_t codeCount;
    uint8_t codeBytes[MaxCodeBytes]; // at the instruction

    // The process.
    char executable[1024];
    char configFolder[1024]; // where a configuration of the reporter is looked for first
    char logFolder[1024];

    // The report.
    bool startsReporter;
    char reporterFolder[1024]; // empty when there is no reporter
    char reporterConfig[1024]; // empty when it is to be looked for
    char version[256];
    char language[64];
    uint32_t textCount;
    char texts[MaxTexts][1024];
    uint32_t fileCount;
    CrashReportFile files[MaxFiles];
};

// What follows the record: any number of blocks, each with this in front.
struct CrashBlock {
    enum Kind : uint32_t {
        Kind_Maps = 1,  // a piece of the list of what is mapped, as the system words it
        Kind_Stack = 2, // memory of the stack
    };
    static constexpr uint32_t MaxSize = 4096;

    uint32_t kind;
    uint32_t size;    // at most MaxSize
    uint64_t address; // of the memory
};

// The reporting program lies beside the file that the trap was linked into, and reads from this descriptor.
constexpr char s_CrashProgram[] = "pvxcrash";
constexpr int s_CrashDescriptor = 3;
