#include "host/recording/salvage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <unordered_set>

#include "host/recording/ring_image.h"

namespace host {
namespace {

constexpr std::size_t kMeasured = 40;  // bytes of a record that the receiver decides
constexpr std::size_t kChecked = 42;   // those and their check sequence; what follows may be lost

// A field of a valid record lies within its range. Random bytes mostly give numbers that are immensely small or
// large, so a field is plausible when it is zero or no smaller than any receiver tells.
struct Field {
    double value, low, high, smallest;
    bool IsInRange() const { return value >= low && value <= high; }  // false for what is no number
    bool IsPlausible() const { return IsInRange() && (value == 0 || std::fabs(value) >= smallest); }
};

// Position [deg], altitude [m], speed [m/s], course [deg].
std::array<Field, 5> FieldsOf(const TckPt& point) {
    return {{{point.dLatitude, -90, 90, 1e-9},
             {point.dLongitude, -180, 180, 1e-9},
             {point.dAltitude, -20'000, 100'000'000, 1e-6},
             {point.dSpeed, 0, 100'000, 1e-6},
             {point.fCourse, -360, 720, 1e-4}}};
}

// Every recorded fix has a time.
bool IsPossible(const TckPt& point) {
    const auto fields = FieldsOf(point);
    return point.lTime != 0 && std::all_of(fields.begin(), fields.end(), std::mem_fn(&Field::IsInRange));
}

bool IsPlausible(const TckPt& point) {
    const auto fields = FieldsOf(point);
    return std::all_of(fields.begin(), fields.end(), std::mem_fn(&Field::IsPlausible));
}

// A place where a record may stand.
struct Candidate {
    SalvagedRecord record;
    bool isSure = false;
    std::size_t run = 1;  // records in the unbroken run that it belongs to
};

bool MayStandAt(std::string_view bytes, TckPt& point) {
    point = PointIn(bytes);
    return IsPossible(point) && IsCheckGood(bytes);
}

std::vector<Candidate> CandidatesIn(std::string_view bytes) {
    std::vector<Candidate> candidates;
    TckPt point{};
    for (std::size_t offset = 0; offset + kChecked <= bytes.size(); ++offset)
        if (MayStandAt(bytes.substr(offset), point))
            candidates.push_back({{offset, point}, IsPlausible(point), 1});
    return candidates;
}

// The candidates, each run of touching ones in a list of its own. They come by offset.
std::vector<std::vector<Candidate>> RunsOf(const std::vector<Candidate>& candidates) {
    std::vector<std::vector<Candidate>> runs;
    std::array<std::size_t, kRecordSize> lastRun;  // by the offset's remainder
    lastRun.fill(static_cast<std::size_t>(-1));
    for (const Candidate& candidate : candidates) {
        const std::size_t offset = candidate.record.offset;
        std::size_t& run = lastRun[offset % kRecordSize];
        if (run >= runs.size() || runs[run].back().record.offset + kRecordSize != offset) {
            run = runs.size();
            runs.emplace_back();
        }
        runs[run].push_back(candidate);
    }
    return runs;
}

// Those in runs of which at least one record is sure, the longest runs first.
std::vector<Candidate> ByTrust(const std::vector<Candidate>& candidates) {
    std::vector<Candidate> trusted;
    for (std::vector<Candidate>& run : RunsOf(candidates)) {
        if (std::none_of(run.begin(), run.end(), [](const Candidate& one) { return one.isSure; })) continue;
        for (Candidate& candidate : run) {
            candidate.run = run.size();
            trusted.push_back(candidate);
        }
    }
    std::stable_sort(trusted.begin(), trusted.end(),
                     [](const Candidate& a, const Candidate& b) { return a.run > b.run; });
    return trusted;
}

// The bytes that tell one fix from another.
std::string_view Measured(const TckPt& point) { return {reinterpret_cast<const char*>(&point), kMeasured}; }

}  // namespace

std::vector<SalvagedRecord> FindRecords(std::string_view bytes) {
    std::vector<bool> isTaken(bytes.size());
    std::vector<SalvagedRecord> records;
    for (const Candidate& candidate : ByTrust(CandidatesIn(bytes))) {
        const std::size_t offset = candidate.record.offset;
        if (isTaken[offset] || isTaken[offset + kChecked - 1]) continue;
        std::fill_n(isTaken.begin() + static_cast<std::ptrdiff_t>(offset), kChecked, true);
        records.push_back(candidate.record);
    }
    std::sort(records.begin(), records.end(),
              [](const SalvagedRecord& a, const SalvagedRecord& b) { return a.offset < b.offset; });
    return records;
}

std::vector<TckPt> PointsOf(const std::vector<SalvagedRecord>& records) {
    std::vector<TckPt> points;
    std::unordered_set<std::string_view> seen;
    for (const SalvagedRecord& record : records)
        if (seen.insert(Measured(record.point)).second) points.push_back(record.point);
    std::stable_sort(points.begin(), points.end(),
                     [](const TckPt& a, const TckPt& b) { return a.lTime < b.lTime; });
    return points;
}

}  // namespace host
