// `qtrace record` as a user runs it: the real program, a device folder of its own, and what it left there.
#pragma once

#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "host/source/nmea_reader.h"
#include "tests/support/device.h"
#include "tests/support/nmea.h"
#include "tests/support/process.h"
#include "tests/support/ring_file.h"

namespace host {

class Recorder : public ::testing::Test {
 protected:
    std::vector<std::string> Command(std::vector<std::string> arguments) const {
        std::vector<std::string> command = {QTRACE_PROGRAM, "record", "--device", m_device.string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }
    ProcessResult Record(std::vector<std::string> arguments, const ProcessOptions& options = {}) const {
        return RunProcess(Command(std::move(arguments)), options);
    }
    // `qtrace save`.
    ProcessResult Save(std::vector<std::string> arguments, const ProcessOptions& options = {}) const {
        std::vector<std::string> command = {QTRACE_PROGRAM, "save", "--device", m_device.string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return RunProcess(command, options);
    }
    // Writes an NMEA log and returns its path.
    std::string Log(const std::string& bytes) const {
        const std::filesystem::path file = m_folder.Path() / "log.nmea";
        WriteFile(file, bytes);
        return file.string();
    }

    std::filesystem::path PointFile() const { return m_device / "App" / "Log.dat"; }
    RingFile Ring() const { return ReadRingFile(PointFile()); }
    std::vector<std::filesystem::path> SavedTracks() const {
        std::vector<std::filesystem::path> files;
        std::error_code missing;
        for (const auto& entry : std::filesystem::directory_iterator(m_device / "UserData" / "Track", missing))
            files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        return files;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_device = m_folder.Path() / "device";
};

// The text behind a label of the summary: "  points    813" gives "813".
inline std::string SummaryLine(const std::string& summary, const std::string& label) {
    const std::size_t at = ("\n" + summary).find("\n" + label + " ");
    if (at == std::string::npos) return "";
    const std::string line = summary.substr(at, summary.find('\n', at) - at);
    return line.substr(line.find_first_not_of(' ', label.size()));
}

// The number that a line of the summary begins with; -1 when there is none.
inline long SummaryNumber(const std::string& summary, const std::string& label) {
    const std::string text = SummaryLine(summary, label);
    long number = -1;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

inline std::vector<TckPt> FixesIn(const std::string& nmea) {
    std::vector<TckPt> fixes;
    NmeaReader reader([&](const TckPt& fix) { fixes.push_back(fix); });
    reader.Push(nmea);
    reader.Finish();
    return fixes;
}

inline std::string Digits(int value, std::size_t width) {
    const std::string digits = std::to_string(value);
    return std::string(width - digits.size(), '0') + digits;
}

// `count` fixes, one a second from midnight on, each some metres from the last and aside of the line.
inline std::string Drive(int count) {
    std::string log;
    for (int i = 0; i < count; ++i)
        log += NmeaLine("GPRMC," + Digits(i / 3600, 2) + Digits(i / 60 % 60, 2) + Digits(i % 60, 2) + ",A,52" +
                        Digits(i / 500, 2) + '.' + Digits(i % 500 * 20, 4) + ",N,00454." +
                        (i % 2 == 0 ? "10" : "13") + "00,E,9.0,0.0,030414,,,A");
    return log;
}

inline std::string SampleDrive() { return ReadFile(std::filesystem::path(QTRACE_SAMPLES) / "drive.nmea"); }

// Waits, bounded, until something holds.
template <typename Condition>
bool Eventually(Condition holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    bool isHeld = holds();  // asked once at a time: asking may take what it asks for
    for (; !isHeld && std::chrono::steady_clock::now() < deadline; isHeld = holds())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return isHeld;
}

// Whether SIGTERM does not end the program any more, but is waited for. While it starts a thread, the program
// blocks all signals for a moment, also those that it never waits for.
inline bool WaitsForSignals(pid_t program) {
    std::ifstream status("/proc/" + std::to_string(program) + "/status");
    for (std::string line; std::getline(status, line);) {
        std::uint64_t blocked = 0;
        if (!line.starts_with("SigBlk:\t")) continue;
        std::from_chars(line.data() + 8, line.data() + line.size(), blocked, 16);
        return (blocked >> (SIGTERM - 1) & 1) != 0 && (blocked >> (SIGUSR1 - 1) & 1) == 0;
    }
    return false;
}

// What the receiver measured: all but the check sequence that the recording adds.
inline bool IsSameFix(const TckPt& a, const TckPt& b) {
    return a.dLatitude == b.dLatitude && a.dLongitude == b.dLongitude && a.dAltitude == b.dAltitude &&
           a.dSpeed == b.dSpeed && a.lTime == b.lTime && a.fCourse == b.fCourse;
}

// Both lists hold the same fixes in the same order.
inline ::testing::AssertionResult SameFixes(const std::vector<TckPt>& points,
                                            const std::vector<TckPt>& expected) {
    const auto [a, b] =
        std::mismatch(points.begin(), points.end(), expected.begin(), expected.end(), IsSameFix);
    if (a == points.end() && b == expected.end()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << points.size() << " points, " << expected.size()
                                         << " expected; they differ from point " << a - points.begin() << " on";
}

inline std::vector<TckPt> Slice(const std::vector<TckPt>& fixes, std::size_t begin, std::size_t end) {
    return {fixes.begin() + static_cast<std::ptrdiff_t>(begin),
            fixes.begin() + static_cast<std::ptrdiff_t>(end)};
}

// What recording every 3 m or 1 s keeps of a log with whole seconds: a run of fixes begins with the first and
// lasts until a second has passed; then the fix that began it becomes a point. Fixes that go back in time are
// left out, and the run that is open at the end is not kept. Steps within a second count no distance, since no
// time passes.
inline std::vector<TckPt> PointsEachSecond(const std::vector<TckPt>& fixes) {
    std::vector<TckPt> points;
    const TckPt* run = nullptr;
    for (const TckPt& fix : fixes) {
        if (run != nullptr && fix.lTime <= run->lTime) continue;
        if (run != nullptr) points.push_back(*run);
        run = &fix;
    }
    return points;
}

}  // namespace host
