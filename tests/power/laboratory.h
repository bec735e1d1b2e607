// The laboratory: runs a session with the shim in front of it, rebuilds the disks that a power cut at each
// moment of the run can leave behind, and opens the recording on each. See docs/RELIABILITY.md.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/power/disk.h"
#include "tests/support/device.h"
#include "tests/support/files_in_memory.h"

namespace power {

struct Count {
    std::size_t states = 0;  // different disks that were opened
    std::size_t losses = 0;
    std::string firstLoss;  // what was wrong, for the message
};

class Laboratory : FilesInMemory {
 public:
    Laboratory();

    // Cuts the power in a session. `refuse`: names that end so cannot be opened by it, "" for none.
    Count CutPower(const std::string& scenario, unsigned seed, const Disk& atFirst = {},
                   const std::string& refuse = "");

    // Disks that a cut in the middle of an append leaves: the ring is neither the old nor the new one. At most
    // one for each moment.
    std::vector<Disk> CutInTheMiddleOfAnAppend(const std::string& scenario, unsigned seed);

    // Runs a session in which call number `call` fails ("28", an error number; "28 3", it and the two behind
    // it; or "short"). The exit code; the name of the first call that failed goes to `failed`, empty when there
    // were fewer calls.
    int RunWithFault(const std::string& scenario, unsigned seed, long call, const std::string& fault,
                     std::string& failed);

    const std::filesystem::path& Device() const { return m_device; }
    void Write(const Disk& disk) const;  // the device folder's whole content
    Disk Content() const;

 private:
    std::vector<disk_log::Record> RunSession(const std::string& scenario, unsigned seed,
                                             const std::string& refuse) const;

    TemporaryFolder m_folder;
    std::filesystem::path m_device;
};

}  // namespace power
