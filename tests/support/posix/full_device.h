// A storage that takes no more, by the limit that a process has for its files.
#pragma once

#include <sys/resource.h>

#include <csignal>

// While it lives, no file of this process grows beyond `bytes`; writes there fail as on a full device.
class FullDevice {
 public:
    explicit FullDevice(rlim_t bytes) {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit now{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FullDevice() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDevice(const FullDevice&) = delete;
    FullDevice& operator=(const FullDevice&) = delete;

 private:
    rlimit m_before{};
    void (*m_handler)(int);
};
