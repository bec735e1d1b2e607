// What the measurements work on: a drive on a winding road, and a device folder for it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "qtrace.h"

using PointList = std::vector<TckPt, je_allocator<TckPt>>;

// A fix a second, some 14 m apart, with altitude, speed, course and time; the receiver's noise included. The
// same every time.
PointList Drive(std::size_t count);

// To and fro across a line, each time a little farther: the farthest point is always the last but one, so that
// thinning that divides there takes away one point at a time.
PointList SlowLine(std::size_t count);

// A device whose root is a new folder in memory, or on the disk of the folder the program was started in.
// Removed at the end.
class BenchDevice {
 public:
    enum class Medium { Memory, Disk };

    explicit BenchDevice(Medium medium = Medium::Memory);
    ~BenchDevice();
    BenchDevice(const BenchDevice&) = delete;
    BenchDevice& operator=(const BenchDevice&) = delete;

    const std::filesystem::path& Root() const { return m_root; }
    std::string HostPath(const std::string& name) const { return (m_root / name).string(); }

    // A stored track of these points. It has been read once, so its line ends are as the reader wants them.
    std::string StoreTrack(const std::string& name, const PointList& points) const;

 private:
    std::filesystem::path m_root;
};
