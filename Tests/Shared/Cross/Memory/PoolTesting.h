#pragma once

#include "Shared/Cross/Memory/MMPool.h"

#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// A pool of a test, gone with it.
class TestPool {
public:
    explicit TestPool(MMPoolKind kind, uint32_t initialSize = 0, uint32_t flags = MMPoolFlag_None)
        : m_pPool(MMPoolCreate("TestPool", kind, initialSize, flags)) {}
    ~TestPool() { MMPoolDestroy(m_pPool); }
    TestPool(const TestPool&) = delete;
    TestPool& operator=(const TestPool&) = delete;

    operator MMPoolBase&() { return *m_pPool; }
    MMPoolBase* operator->() { return m_pPool; }

private:
    MMPoolBase* m_pPool;
};

// Catches what the memory library says.
class OutputCapture {
public:
    OutputCapture() {
        GetLines().clear();
        MMSetOutput([](const char* pText) { GetLines().push_back(pText); });
    }
    ~OutputCapture() { MMSetOutput(nullptr); }

    static std::vector<std::string>& GetLines() {
        static std::vector<std::string> s_Lines;
        return s_Lines;
    }
};

// The pool stops the process at a breakpoint and says why.
#define EXPECT_FATAL(statement, text) EXPECT_EXIT(statement, testing::KilledBySignal(SIGTRAP), text)
