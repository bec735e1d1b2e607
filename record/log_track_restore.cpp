// What a start finds in the point file: a ring to read, or a damaged one to salvage and keep aside.
// The bytes: docs/formats/log-file.md. The files while the recording runs: record/log_track_files.cpp.
#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/file.h"
#include "platform/find.h"
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

bool Exists(const std::wstring& file) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW(file.c_str(), &entry);
    if (search == platform::kInvalidHandle) return false;
    platform::FindClose(search);
    return true;
}

// Under the first free name of TmpTk.bk, TmpTk2.bk, TmpTk3.bk and so on. Where that fails another name would
// not help: to a card the whole file is copied, each time.
bool MoveToBackup(const std::wstring& file, const std::wstring& folder) {
    std::wstring backup = folder + kBackupName + kBackupSuffix;
    for (int number = 2; number <= kMostBackups && Exists(backup); ++number)
        backup = folder + kBackupName + std::to_wstring(number) + kBackupSuffix;
    return platform::MoveFileW(file.c_str(), backup.c_str());
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
        m_bNoRing = !CommitPointFile();
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
    m_bNoRing = !FinishLastSalvage() && !RewritePointFile();
    if (IsSalvageLeft()) return false;
    if (m_pPointFile == nullptr) m_pPointFile = log_file::OpenOrMake(PathOf(m_strPointFile).c_str());
    return m_pPointFile != nullptr;
}

// False when there is none, or when a point file is in its place: then it is not needed any more.
bool CTrackEx::FinishLastSalvage() {
    const std::wstring salvaged = WidePath(PathOf(m_strPointFile + kSalvagedSuffix));
    const std::wstring ring = WidePath(PathOf(m_strPointFile));
    if (!Exists(ring)) return platform::MoveFileW(salvaged.c_str(), ring.c_str());
    platform::DeleteFileW(salvaged.c_str());
    return false;
}

// It could not be moved for the moment: an empty point file must not take its place.
bool CTrackEx::IsSalvageLeft() const {
    return Exists(WidePath(PathOf(m_strPointFile + kSalvagedSuffix))) &&
           !Exists(WidePath(PathOf(m_strPointFile)));
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
