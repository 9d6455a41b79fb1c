#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include <pthread.h>
#include <sys/single_threaded.h>

// True as long as the process has one thread: interlocked operations can be plain ones then.
inline bool OSIsSingleThreaded() { return __libc_single_threaded != 0; }

// A critical section. Its owner may enter it again. Never destroyed in any way that matters, so it can be static.
class OSLock {
public:
    constexpr OSLock() = default;
    OSLock(const OSLock&) = delete;
    OSLock& operator=(const OSLock&) = delete;

    void Enter() {
        const pthread_t self = pthread_self();
        if (m_Owner.load(std::memory_order_relaxed) == self) {
            ++m_Depth;
            return;
        }
        // Nobody can start a thread between Enter and Leave, so the only thread needs no more than its mark.
        const bool alone = OSIsSingleThreaded();
        if (!alone)
            m_Mutex.lock();
        m_Locked = !alone;
        m_Owner.store(self, std::memory_order_relaxed);
    }
    void Leave() {
        if (m_Depth > 0) {
            --m_Depth;
            return;
        }
        m_Owner.store(0, std::memory_order_relaxed);
        if (m_Locked)
            m_Mutex.unlock();
    }

private:
    std::mutex m_Mutex;
    std::atomic<pthread_t> m_Owner = 0; // 0 while free
    uint32_t m_Depth = 0;               // entries beyond the owner's first
    bool m_Locked = false;
};
