// What a start finds in the point file: a ring to read, or a damaged one to salvage and keep aside.
// The bytes: docs/formats/log-file.md. The files while the recording runs: record/log_track_files.cpp.
#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/file.h"
#include "record/fcs16.h"
#include "record/log_track.h"
#include "record/ring_file.h"
#include "record/settings.h"
#include "util/paths.h"
#include "util/wide_path.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

constexpr wchar_t kBackupName[] = L"\\TmpTk";
constexpr wchar_t kBackupSuffix[] = L".bk";
constexpr int kMostBackups = 999;           // in one folder
constexpr char kSalvagedSuffix[] = ".new";  // behind the point file's name
constexpr char kOpenExisting[] = "rbc+";

// Under the first free name of TmpTk.bk, TmpTk2.bk, TmpTk3.bk and so on.
bool MoveToBackup(const std::wstring& file, const std::wstring& folder) {
    if (platform::MoveFileW(file.c_str(), (folder + kBackupName + kBackupSuffix).c_str())) return true;
    for (int number = 2; number <= kMostBackups; ++number) {
        const std::wstring name = kBackupName + std::to_wstring(number) + kBackupSuffix;
        if (platform::MoveFileW(file.c_str(), (folder + name).c_str())) return true;
    }
    return false;
}

// Points of equal time keep their order. Mostly they are in order: looking takes a tenth of the time of
// sorting.
void SortByTime(Points& points) {
    const auto isEarlier = [](const TckPt& a, const TckPt& b) { return a.lTime < b.lTime; };
    if (!std::is_sorted(points.begin(), points.end(), isEarlier))
        std::stable_sort(points.begin(), points.end(), isEarlier);
}

// Sorts, and lets the oldest go above `most`.
void KeepNewest(Points& points, std::size_t most) {
    SortByTime(points);
    if (points.size() > most) points.erase(points.begin(), points.end() - static_cast<std::ptrdiff_t>(most));
}

bool IsNothing(const TckPt& point) {
    const TckPt nothing{};
    return std::memcmp(&point, &nothing, sizeof point) == 0;
}

}  // namespace

bool CTrackEx::RestoreRing() {
    const std::int64_t size = log_file::SizeOf(m_pPointFile);
    if (size == 0) {
        SavePtListInfo2(m_pPointFile);
        return true;
    }
    const auto header = log_file::ReadHeader(m_pPointFile);
    if (!header || !log_file::IsConsistent(*header, size)) {
        RecoverPtList(m_pPointFile, 1,
                      static_cast<int>(std::min<std::int64_t>(size, std::numeric_limits<int>::max())));
        return SetRingAside();
    }
    return LoadRing(*header) || SetRingAside();
}

// False when the storage did not hand out all of it: only what was read is then there. A file written anew from
// that must not be the only one.
bool CTrackEx::LoadRing(const log_file::RingHeader& header) {
    m_uPtCount = header.count;
    const bool isRead = LoadPtListInfo2(m_pPointFile, header.count, header.start);
    if (!isRead) std::erase_if(OwnPoints(), IsNothing);
    SortByTime(OwnPoints());
    if (isRead) DoSlice();
    return isRead;
}

// The recording goes on with the points read from the file, which is moved aside when it is closed: some
// systems move no open file. What was salvaged is on storage before the damaged file moves, under a name that
// the next start looks for, should the power fail between the two moves.
bool CTrackEx::SetRingAside() {
    m_uPtCount = static_cast<std::uint32_t>(GetPtList().size());
    DoSlice();
    platform::fclose(m_pPointFile);
    m_pPointFile = nullptr;
    platform::ReplaceFileContent(WidePath(PathOf(m_strPointFile + kSalvagedSuffix)).c_str(),
                                 PointFileFromSlices());
    BackTmpTrkFile();
    if (!FinishLastSalvage()) return RewritePointFile();
    m_pPointFile = platform::fopen(PathOf(m_strPointFile).c_str(), kOpenExisting);
    return m_pPointFile != nullptr;
}

// False when there is none, or when a point file is in its place: then it is not needed any more.
bool CTrackEx::FinishLastSalvage() {
    const std::wstring salvaged = WidePath(PathOf(m_strPointFile + kSalvagedSuffix));
    if (platform::MoveFileW(salvaged.c_str(), WidePath(PathOf(m_strPointFile)).c_str())) return true;
    platform::DeleteFileW(salvaged.c_str());
    return false;
}

void CTrackEx::BackTmpTrkFile() {
    const std::wstring file = WidePath(PathOf(m_strPointFile));
    const std::wstring folder = WidePath(CTrackMangSet::Instance()->GetExtTrackPath(false));
    if (!MoveToBackup(file, folder)) MoveToBackup(file, GetInitGlobalPath());
}

// A record that fails its check stays a point of zeros, so that the number of points is the file's.
bool CTrackEx::LoadPtListInfo2(void* stream, int count, int start) {
    if (stream == nullptr || count < 0 || start < 0 || start > count) return false;
    Points slots(static_cast<std::size_t>(count));
    const bool isRead = log_file::ReadRecords(static_cast<std::FILE*>(stream), slots);
    for (TckPt& record : slots)
        if (!fcs16::IsValid(record)) record = {};
    std::rotate(slots.begin(), slots.begin() + start, slots.end());
    OwnPoints().swap(slots);
    return isRead;
}

// KEPT: reading begins at byte 0, four bytes before slot 0, so the records of a file whose header is intact do
// not line up and are not found; and an invalid record moves the stream by a record but the counter by `step`.
// Devices in the field rely on the result. Pinned by LogTrackRecovery.IntactHeader_ShiftsEveryRecord.
// At the end of the file every further read would fail, so the counter need not be waited for.
void CTrackEx::RecoverPtList(void* stream, int step, int size) {
    auto* const file = static_cast<std::FILE*>(stream);
    if (file == nullptr || std::fseek(file, 0, SEEK_SET) != 0) return;
    Points& points = OwnPoints();
    TckPt record;
    for (std::int64_t counter = 0; counter < size && log_file::ReadRecord(file, record);) {
        const bool valid = fcs16::IsValid(record);
        if (valid) points.push_back(record);
        counter += valid ? static_cast<std::int64_t>(sizeof record) : step;
        if (points.size() > 2 * std::size_t{m_usMaxPtCount}) KeepNewest(points, m_usMaxPtCount);
    }
    KeepNewest(points, m_usMaxPtCount);
}
