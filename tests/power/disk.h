// A disk as it can be after the power was cut: rebuilt from what a program told the system
// (tests/power/disk_log.h). What was synced is there. Of the rest, each write, truncation, new name or removal
// may be there or not, in any combination, and one write may be torn at a sector's end.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/power/disk_log.h"

namespace power {

constexpr std::size_t kSector = 512;

// Path below the device folder to content; folders are not told apart.
using Disk = std::map<std::string, std::string>;

// Takes in the log record by record.
class DiskModel {
 public:
    DiskModel(const std::string& root, const Disk& atFirst);

    void Take(const disk_log::Record& record);

    // All that the program did so far.
    Disk Complete() const;

    // Calls `visit` with disks that a cut now can leave behind: every prefix of what is not synced, each with
    // its last write torn at every sector's end, and every subset of it, or `subsets` random ones where there
    // are more.
    void VisitStates(unsigned seed, std::size_t subsets, const std::function<void(const Disk&)>& visit) const;

 private:
    // Names and contents, each by what the storage has for certain.
    struct Media {
        std::map<std::string, int> names;
        std::map<int, std::string> contents;
    };

    static void Apply(const disk_log::Record& record, Media& media);
    static Disk DiskOf(const Media& media);
    Media With(const std::vector<bool>& chosen) const;
    void VisitTorn(std::size_t prefix, const std::function<void(const Disk&)>& visit) const;
    void Settle(const std::function<bool(const disk_log::Record&)>& isSettled);
    std::string Below(const std::string& path) const;

    std::string m_root;
    Media m_settled;
    std::vector<disk_log::Record> m_pending;
};

}  // namespace power
