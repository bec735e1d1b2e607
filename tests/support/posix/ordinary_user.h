// The superuser may write anywhere: the tests on rights run as somebody else.
#pragma once

#include <unistd.h>

#include <cstdlib>

// While it exists, a process that runs as root is nobody in particular; others stay who they are. The folders
// that the test needs must be open to all.
class AsOrdinaryUser {
 public:
    AsOrdinaryUser() {
        if (geteuid() == 0) m_isChanged = setegid(kNobody) == 0 && seteuid(kNobody) == 0;
    }
    ~AsOrdinaryUser() {
        if (m_isChanged && (seteuid(0) != 0 || setegid(0) != 0)) std::abort();
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
    static constexpr unsigned kNobody = 65534;

 private:
    bool m_isChanged = false;
};
