// One recorder at a time: whoever opens the live recording holds this lock on the device folder.
#pragma once

#include <optional>
#include <string>

#include "host/settings/device_folder.h"

namespace host {

// The lock is the system's own, on a file beside the recording: it ends with the process, however that ends.
class RecorderLock {
 public:
    // Tries once and does not wait. Problem() says who holds it, or why it cannot be taken.
    explicit RecorderLock(const DeviceFolder& device);
    ~RecorderLock();
    RecorderLock(const RecorderLock&) = delete;
    RecorderLock& operator=(const RecorderLock&) = delete;

    const std::optional<std::string>& Problem() const { return m_problem; }

 private:
    int m_descriptor = -1;
    std::optional<std::string> m_problem;
};

// Whether a lock file is locked; nothing is made. To be asked while the process that noted itself there is
// alive: it is tried for a moment, and a recorder that starts in this moment would find it taken.
bool IsLocked(const std::string& file);

// Whether there is a process of this number, be it anybody's.
bool IsAlive(int process);

}  // namespace host
