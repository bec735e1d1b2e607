// The recording's files while it runs: opening, appending, writing anew. What a start finds in them:
// record/log_track_restore.cpp. The bytes: docs/formats/log-file.md. What an append writes: record/ring_plan.h.
#include <algorithm>

#include "platform/file.h"
#include "record/append_redo.h"
#include "record/fcs16.h"
#include "record/log_track.h"
#include "record/ring_file.h"
#include "record/settings.h"
#include "util/paths.h"
#include "util/wide_path.h"

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

// Letter c: each flush waits until the storage has the data.
constexpr char kOpenExisting[] = "rbc+";
constexpr int kMostOpenAttempts = 3;  // a recording is not closed for an error that passes

}  // namespace

void CTrackEx::SetFilePathEx(const char* pointFileName, const char* headFileName) {
    m_strPointFile = pointFileName;
    m_strHeadFile = headFileName;
}

void CTrackEx::SetOverWrt(bool overwrite) { m_bOverWrt = overwrite; }

// In the program's folder. The room is for folder, separator and name: nobody else looks whether they fit.
std::string CTrackEx::PathOf(const std::string& fileName) {
    char path[2 * paths::kMaxPath + 2] = {};
    FileAbsolutPath(path, fileName.c_str(), paths::kMaxPath, false);
    return path;
}

bool CTrackEx::OpenEx() {
    if (m_strPointFile.empty() || m_strHeadFile.empty()) return false;
    CloseEx();
    if (!OpenHeadFile() || !OpenPointFile()) return false;
    FinishLastAppend();
    return RestoreRing();
}

bool CTrackEx::CloseEx() {
    if (m_pPointFile != nullptr && m_uUnwritten != 0) RewritePointFile();
    platform::fclose(m_pPointFile);
    platform::fclose(m_pHeadFile);
    m_pPointFile = nullptr;
    m_pHeadFile = nullptr;
    m_pRedo->Close();
    ClearAllSliceTrace();
    m_bNoRing = false;
    return true;
}

// A head file that is no such file is left alone: the recording opens with the values it has.
bool CTrackEx::OpenHeadFile() {
    bool isNew = false;
    m_pHeadFile = log_file::OpenOrMake(PathOf(m_strHeadFile).c_str(), &isNew);
    if (isNew) SaveHeadInfo(m_pHeadFile);
    if (m_pHeadFile != nullptr) LoadHeadInfo(m_pHeadFile);
    return m_pHeadFile != nullptr;
}

bool CTrackEx::OpenPointFile() {
    FinishLastSalvage();
    if (IsSalvageLeft()) return false;
    m_pPointFile = log_file::OpenOrMake(PathOf(m_strPointFile).c_str());
    return m_pPointFile != nullptr;
}

// An append that was complete already is not taken back when writing it once more fails: the file holds it, and
// what the stream still wants to write is dropped.
void CTrackEx::FinishLastAppend() {
    m_pRedo->Open(PathOf(m_strPointFile + log_file::kRedoSuffix).c_str());
    const auto header = log_file::ReadHeader(m_pPointFile);
    const bool isWhole = header && log_file::IsConsistent(*header, log_file::SizeOf(m_pPointFile));
    const auto before = m_pRedo->Replay(m_pPointFile);
    if (!before || CommitPointFile()) return m_pRedo->Forget();
    const bool wasComplete = isWhole && (header->start != before->start || header->count != before->count);
    if (!wasComplete) return TakeBackAppend(*before);
    platform::CutBack(m_pPointFile, log_file::FileSizeOf(header->count));
}

// In one step, so that a power cut leaves the old file or the new one. Closed in between: some systems exchange
// no open file. The note of an append that could not be taken back is needed until then.
bool CTrackEx::RewritePointFile() {
    if (!m_bNoRing) m_pRedo->Forget();
    platform::fclose(m_pPointFile);
    const std::string path = PathOf(m_strPointFile);
    const bool isWritten = platform::ReplaceFileContent(WidePath(path).c_str(), PointFileFromSlices());
    if (isWritten) {
        m_pRedo->Forget();
        m_uUnwritten = 0;
        m_bNoRing = false;
    }
    m_pPointFile = nullptr;
    for (int attempt = 0; attempt < kMostOpenAttempts && m_pPointFile == nullptr; ++attempt)
        m_pPointFile = platform::fopen(path.c_str(), kOpenExisting);
    return isWritten && m_pPointFile != nullptr;
}

// What an earlier write failed to bring to the storage goes there as soon as it can. False when the point file
// still is none that can be appended to.
bool CTrackEx::MendPointFile() { return (m_uUnwritten == 0 && !m_bNoRing) || RewritePointFile() || !m_bNoRing; }

bool CTrackEx::AppendEx(Points& pts) {
    if (m_pPointFile == nullptr || pts.empty() || pts.size() >= m_usMaxPtCount) return false;
    for (TckPt& point : pts) fcs16::Stamp(point);
    if (!MendPointFile() || m_pPointFile == nullptr) return KeepInMemory(pts);
    std::clearerr(m_pPointFile);  // of earlier calls
    log_file::RingHeader ring;
    if (!RingFitsCapacity(ring)) return false;
    const std::size_t wanted = m_uUnwritten == 0 ? pts.size() : RoomInMemory(pts.size());
    const auto plan =
        wanted == 0 ? std::nullopt : log_file::PlanAppend(ring, wanted, m_usMaxPtCount, m_bOverWrt);
    if (!plan) return false;
    m_pRedo->Note(m_pPointFile, ring, *plan, pts);
    log_file::Execute(m_pPointFile, *plan, pts);
    const std::size_t oldCount = ring.count + m_uUnwritten;
    const bool isWritten = CommitPointFile();
    if (!isWritten) TakeBackAppend(ring);
    if (plan->recorded != 0) AddPtLstToTrkLst(plan->recorded, pts, NewestPoint(), oldCount);
    const std::uint32_t inFile = isWritten ? plan->header.count : ring.count;
    m_uUnwritten = m_uPtCount > inFile ? m_uPtCount - inFile : 0;
    return true;
}

// As an append that the storage failed to take.
bool CTrackEx::KeepInMemory(const Points& pts) {
    const std::size_t taken = RoomInMemory(pts.size());
    if (taken == 0) return false;
    AddPtLstToTrkLst(taken, pts, NewestPoint(), m_uPtCount);
    m_uUnwritten = m_uPtCount;
    return true;
}

std::size_t CTrackEx::RoomInMemory(std::size_t wanted) const {
    if (m_bOverWrt) return wanted;
    return m_uPtCount < m_usMaxPtCount ? std::min<std::size_t>(wanted, m_usMaxPtCount - m_uPtCount) : 0;
}

bool CTrackEx::CommitPointFile() { return log_file::Commit(m_pPointFile); }

// On a full storage the header would count records that are not there, and the whole file would count as
// damaged. What was in it stays; the batch lives on in memory.
void CTrackEx::TakeBackAppend(const log_file::RingHeader& before) {
    const bool isCut = platform::CutBack(m_pPointFile, log_file::FileSizeOf(before.count));
    const bool isReached = std::fseek(m_pPointFile, 0, SEEK_SET) == 0;
    if (isReached) log_file::WriteHeader(m_pPointFile, before);
    // While it is not taken back for certain, the note is what mends the file at the next start.
    if (isReached && platform::fflush(m_pPointFile) == 0 && isCut) return m_pRedo->Forget();
    m_pRedo->Keep();
    m_bNoRing = true;
}

// A file made with a larger capacity is written anew with its newest points before its oldest are overwritten:
// the header of a smaller ring would make it inconsistent, and lost at the next start. Likewise one that has
// turned under a smaller capacity: its header would count slots that are not there.
bool CTrackEx::RingFitsCapacity(log_file::RingHeader& header) {
    auto ring = log_file::ReadHeader(m_pPointFile);
    const bool isLarger = ring && ring->count > m_usMaxPtCount;
    const bool hasTurnedEarly =
        ring && ring->start != 0 && ring->start <= ring->count && ring->count < m_usMaxPtCount;
    if (m_bOverWrt && (isLarger || hasTurnedEarly))
        ring = SaveSliceData() ? log_file::ReadHeader(m_pPointFile) : std::nullopt;
    if (ring) header = *ring;
    return ring.has_value();
}

// KEPT: as many records as the recording counts points. Where a batch came between clearing slices and saving
// them, it counts more than it remembers, and records of zeros fill the file up. Pinned by
// LogTrackSlices.SavedLateAfterClearing_IsFilledUpWithZeros.
void CTrackEx::SavePtListInfo2(void* stream) {
    if (stream == nullptr) return;
    auto* const file = static_cast<std::FILE*>(stream);
    const std::string bytes = PointFileFromSlices();
    std::fwrite(bytes.data(), bytes.size(), 1, file);
    platform::fflush(file);
    m_uUnwritten = 0;
}

std::string CTrackEx::PointFileFromSlices() {
    if (m_uPtCount > m_usMaxPtCount) {
        DropOldest(m_uPtCount - m_usMaxPtCount);
        m_uPtCount = m_usMaxPtCount;
    }
    Points points = AllPoints();
    points.resize(m_uPtCount);
    return log_file::WholeFile(points);
}

void CTrackEx::SavePropertyData() {
    if (m_pPointFile != nullptr) SaveHeadInfo(m_pHeadFile);
}

bool CTrackEx::AidSaveFile() {
    SaveHeadInfo(m_pHeadFile);
    return RewritePointFile();
}

bool CTrackEx::SaveSliceData() { return !m_strPointFile.empty() && AidSaveFile(); }

bool CTrackEx::GetTmpTrackStart(int& start) {
    if (m_pPointFile == nullptr) return false;
    const auto ring = log_file::ReadHeader(m_pPointFile);
    if (ring) start = ring->start;
    return ring.has_value();
}

bool CTrackEx::IsNeedSaveAllTmpTrk(int newCount) {
    CTrackMangSet* const settings = CTrackMangSet::Instance();
    if (m_pPointFile == nullptr || !settings->GetTmpTkIsSaveInFull()) return false;
    const auto ring = log_file::ReadHeader(m_pPointFile);
    return ring &&
           log_file::WouldOverwriteTripStart(*ring, newCount, m_usMaxPtCount, settings->GetTmpTkStartPos());
}
