#include "host/live_recording.h"

#include <chrono>
#include <filesystem>
#include <semaphore>
#include <thread>

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::int64_t kCapacity = 10000;  // points that the library's recording holds
constexpr auto kLoadingTakesAtMost = std::chrono::seconds(120);

// The library's callbacks are plain functions, so what they need lies here.
const DeviceFolder* s_pDevice = nullptr;
bool s_bSaving = false;
long s_lNewestTime = 0;
std::counting_semaphore<> s_loaded{0};

bool HasRoom(bool) {
    s_bSaving = true;  // the library asks when it is about to store a track
    return s_pDevice->HasRoom();
}

void OnPoint(const TckPt& point) { s_lNewestTime = point.lTime; }

void OnLoaded() { s_loaded.release(); }

}  // namespace

LiveRecording::LiveRecording(const DeviceFolder& device, const HostSettings& settings, bool save)
    : m_device(device), m_overwrite(settings.record.overwrite), m_manager(ApplySettings(settings)) {
    s_pDevice = &device;
    m_manager.GetTrackMangSet()->SetTmpTkIsSaveInFull(save);
}

LiveRecording::~LiveRecording() {
    Stop();
    m_manager.GetLogTrack()->CloseEx();
}

std::optional<std::string> LiveRecording::Open() {
    m_manager.SetIsHasEnoughSpaceCallFun(HasRoom);
    m_manager.SetTmpTrackPtShowInMapCallFun(OnPoint);
    m_manager.SetLoadTrackToMapCallFun(OnLoaded);
    m_manager.LoadData();
    if (!WaitUntilLoaded()) return "the library in " + m_device.Root().string() + " does not finish loading";
    if (!FilesAreOpen())
        return "the recording's files in " + m_device.Recording().string() + " cannot be opened for writing";
    m_manager.GetTrackMangSet()->ReSetTmpTkStartPos();
    m_pointsBefore = Points();
    m_writingPlace = WritingPlace();
    m_manager.Start();
    return std::nullopt;
}

bool LiveRecording::WaitUntilLoaded() const {
    const auto deadline = steady_clock::now() + kLoadingTakesAtMost;
    if (!s_loaded.try_acquire_until(deadline)) return false;
    while (m_manager.IsLoadingDataToMap() && steady_clock::now() < deadline)
        std::this_thread::sleep_for(milliseconds(1));  // it ends just after the callback
    return !m_manager.IsLoadingDataToMap();
}

bool LiveRecording::FilesAreOpen() const {
    int start = 0;
    return m_manager.GetLogTrack()->GetTmpTrackStart(start);
}

void LiveRecording::Offer(const TckPt& fix) {
    s_bSaving = false;
    m_manager.SaveToTempTrack(fix);
    CountAdded();
    // The recording was saved because its first points were about to be overwritten. Its name is the second of
    // that save: wait for the next one, or the next save would replace the file.
    if (s_bSaving) WaitForAFreshName();
}

void LiveRecording::Stop() {
    if (!m_manager.Stop()) return;
    CountAdded();
}

std::optional<std::string> LiveRecording::Save() {
    WaitForAFreshName();
    std::vector<TckPt, je_allocator<TckPt>> nothingPending;
    if (m_manager.SaveTempTrkToTrack(nothingPending)) return std::nullopt;
    if (!m_device.HasRoom()) return "there is too little room in " + m_device.Root().string();
    return "the folder " + m_device.Tracks().string() + " does not take it";
}

std::uint64_t LiveRecording::PointsToSave() const {
    CTrackEx& recording = *m_manager.GetLogTrack();
    std::uint64_t points = 0;
    for (int i = 0; i < recording.GetSliceNum(); ++i) {
        CTrack slice;
        slice.AppendPt(*recording.GetSliceTrace(i));
        slice.SimplifyPt();
        points += slice.GetPtCount();
    }
    return points;
}

std::uint64_t LiveRecording::Points() const { return m_manager.GetLogTrack()->GetPtCount(); }
int LiveRecording::Slices() const { return m_manager.GetLogTrack()->GetSliceNum(); }
double LiveRecording::Fill() const { return m_manager.GetSpaceRate(); }
long LiveRecording::NewestTime() const { return s_lNewestTime; }
bool LiveRecording::WasFull() const { return !m_overwrite && Points() >= kCapacity; }

// Where the next point goes, counted on while the ring turns: it grows by each point written, from the capacity
// on modulo the capacity. The points in the ring alone would stand still once it is full.
std::int64_t LiveRecording::WritingPlace() const {
    int start = 0;
    m_manager.GetLogTrack()->GetTmpTrackStart(start);
    return start + static_cast<std::int64_t>(Points());
}

void LiveRecording::CountAdded() {
    const std::int64_t place = WritingPlace();
    const std::int64_t added = place - m_writingPlace;
    m_pointsAdded += static_cast<std::uint64_t>(added < 0 ? added + kCapacity : added);
    m_writingPlace = place;
}

void LiveRecording::WaitForAFreshName() const {
    const auto deadline = steady_clock::now() + std::chrono::seconds(3);
    const auto exists = [this] {
        return std::filesystem::exists(m_device.Tracks() / ("AutoSaveTrk-" + GetLocalTimeStr() + ".gpx"));
    };
    while (exists() && steady_clock::now() < deadline) std::this_thread::sleep_for(milliseconds(20));
}

}  // namespace host
