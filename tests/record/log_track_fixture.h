// A live recording on a device of its own, and the bytes that its files have to hold, computed here from the
// format's description alone: docs/formats/log-file.md.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/device.h"
#include "record/log_track.h"
#include "record/settings.h"
#include "tests/support/device.h"
#include "tests/support/files_in_memory.h"
#include "tests/support/machine.h"

using Points = std::vector<TckPt, je_allocator<TckPt>>;

inline std::string RawBytes(const TckPt& point) {
    return {reinterpret_cast<const char*>(&point), sizeof point};
}

inline bool SamePoints(const Points& a, const Points& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const TckPt& x, const TckPt& y) { return RawBytes(x) == RawBytes(y); });
}

namespace described {

constexpr std::size_t kRecordSize = 48;

// The check sequence, bit by bit.
inline std::uint16_t CheckSequence(std::string_view bytes) {
    unsigned rest = 0xFFFF;
    for (const char byte : bytes)
        for (int bit = 0; bit < 8; ++bit) {
            const bool differs = ((rest ^ (static_cast<unsigned char>(byte) >> bit)) & 1u) != 0;
            rest = (rest >> 1) ^ (differs ? 0x8408u : 0u);
        }
    return static_cast<std::uint16_t>(rest ^ 0xFFFFu);
}

inline std::string Field(unsigned value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
}

// A point as the file holds it: the sequence of bytes 0 to 39 in bytes 40 and 41.
inline std::string Record(const TckPt& point) {
    std::string bytes = RawBytes(point);
    return bytes.replace(40, 2, Field(CheckSequence(bytes.substr(0, 40))));
}

inline bool IsIntact(const std::string& record) {
    return record.size() == kRecordSize && record.substr(40, 2) == Field(CheckSequence(record.substr(0, 40)));
}

inline TckPt Point(const std::string& record) {
    TckPt point;
    std::memcpy(&point, record.data(), sizeof point);
    return point;
}

// A point that carries its check sequence.
inline TckPt Stamped(const TckPt& point) { return Point(Record(point)); }

const std::string kZeros(kRecordSize, '\0');

inline std::string RingFile(unsigned start, const std::vector<std::string>& slots) {
    std::string bytes = Field(start) + Field(static_cast<unsigned>(slots.size()));
    for (const std::string& slot : slots) bytes += slot;
    return bytes;
}

}  // namespace described

struct RingState {
    int start;
    int count;
    bool operator==(const RingState&) const = default;
};
inline void PrintTo(const RingState& ring, std::ostream* out) {
    *out << "start " << ring.start << ", count " << ring.count;
}

// The recording's files lie in \App, damaged ones are moved to \Track. Fixes are numbered from 0; each moves a
// little north-east of the one before and comes a second later, unless a pause lies between.
class LogTrackTest : public DeviceTest {
 protected:
    static constexpr std::int32_t kFirstTime = 1'000'000'000;
    static constexpr const char* kPointFile = "\\App\\Log.dat";
    static constexpr const char* kHeadFile = "\\App\\LogHd.dat";
    static constexpr const char* kBackup = "\\Track\\TmpTk.bk";

    LogTrackTest() {
        CTrackMangSet::Instance()->Init();
        SetTrackFolder("\\Track");
    }
    ~LogTrackTest() override { Close(); }

    static void SetTrackFolder(std::string folder) {
        CTrackMangSet::Instance()->SetNdExtTrackPath(folder.data());
    }

    // Starts a recording, or starts it again with what the files hold.
    bool Open(int capacity, bool overwrite = true) {
        Close();
        m_track = std::make_unique<CTrackEx>(static_cast<unsigned short>(capacity));
        m_track->SetOverWrt(overwrite);
        m_track->SetFilePathEx("Log.dat", "LogHd.dat");
        return m_track->OpenEx();
    }
    void Close() {
        if (m_track) m_track->CloseEx();
        m_track.reset();
    }

    TckPt NextFix() {
        const auto number = static_cast<double>(m_sent.size());
        TckPt fix{};
        fix.dLatitude = 47.0 + number * 1e-4;
        fix.dLongitude = 8.0 + number * 2e-4;
        fix.dAltitude = 400.0 + number;
        fix.dSpeed = 10.0;
        fix.lTime = m_time++;
        fix.fCourse = 45.0f;
        for (int i = 2; i < 8; ++i)
            fix.reserved[i] = static_cast<unsigned char>(m_sent.size() + static_cast<unsigned>(i));
        m_sent.push_back(fix);
        return fix;
    }
    Points NextFixes(int count) {
        Points fixes;
        for (int i = 0; i < count; ++i) fixes.push_back(NextFix());
        return fixes;
    }
    // One batch of `count` fixes.
    bool Record(int count) {
        Points batch = NextFixes(count);
        return m_track->AppendEx(batch);
    }
    void Pause(int seconds) { m_time += seconds - 1; }  // between the last fix and the next
    std::string Sent(std::size_t number) const { return described::Record(m_sent.at(number)); }

    RingState Ring() const {
        const std::string bytes = BytesOf(kPointFile);
        const auto field = [&](std::size_t at) {
            return static_cast<unsigned char>(bytes.at(at)) +
                   256 * static_cast<unsigned char>(bytes.at(at + 1));
        };
        return {field(0), field(2)};
    }
    std::string Slot(std::size_t slot) const {
        return BytesOf(kPointFile).substr(4 + described::kRecordSize * slot, described::kRecordSize);
    }

    // All points of the slices, oldest first; and their times, seconds since fix 0.
    Points Remembered() const {
        Points all;
        for (int i = 0; i < m_track->GetSliceNum(); ++i) {
            const Points& slice = m_track->GetSliceTrace(i)->GetPtList();
            all.insert(all.end(), slice.begin(), slice.end());
        }
        return all;
    }
    static std::vector<int> TimesOf(const Points& points) {
        std::vector<int> times;
        for (const TckPt& point : points) times.push_back(point.lTime - kFirstTime);
        return times;
    }
    std::vector<int> Times() const { return TimesOf(Remembered()); }
    std::vector<int> SliceSizes() const {
        std::vector<int> sizes;
        for (int i = 0; i < m_track->GetSliceNum(); ++i)
            sizes.push_back(static_cast<int>(m_track->GetSliceTrace(i)->GetPtList().size()));
        return sizes;
    }

    std::unique_ptr<CTrackEx> m_track;
    std::vector<TckPt> m_sent;
    std::int32_t m_time = kFirstTime;
};

// What `ask` answers about an age in seconds of a point at `time`, exactly, by the clock: asked again when the
// clock went on meanwhile.
template <typename Ask>
auto WithExactAge(std::int32_t time, Ask ask) {
    for (;;) {
        const std::time_t before = Now();
        const auto answer = ask(static_cast<int>(before - time));
        if (Now() == before) return answer;
    }
}
