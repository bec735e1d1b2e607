// The recording's life and its points. Its saving: live_recording_save.cpp.
#include "host/recording/live_recording.h"

#include <algorithm>
#include <cmath>
#include <semaphore>
#include <thread>
#include <utility>

#include "host/recording/recording_files.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr auto kLoadingTakesAtMost = std::chrono::seconds(120);

// The library's callbacks are plain functions, so what they need lies here.
struct Recorded {
    LiveRecording::Observer observer;
    std::int32_t interval = 0;  // [s] between points by time; 0 in the other modes
    std::uint64_t waiting = 0;  // chosen and not yet written
    steady_clock::time_point waitingSince;
    std::optional<TckPt> last;
    std::optional<TckPt> first, newest;  // of all fixes, whether they became points or not
    std::optional<TckPt> newestPoint;
    double distance = 0;  // [m]
};
Recorded s_recorded;
const DeviceFolder* s_pDevice = nullptr;
std::counting_semaphore<> s_loaded{0};

bool HasRoom(bool) { return s_pDevice->HasRoom(); }

void OnLoaded() { s_loaded.release(); }

std::int64_t Seconds(const TckPt& from, const TckPt& to) { return to.lTime - std::int64_t{from.lTime}; }

double Metres(const TckPt& from, const TckPt& to) {
    double distance = 0, bearing = 0;
    CalDistance(from.dLatitude, from.dLongitude, to.dLatitude, to.dLongitude, 0, &distance, &bearing);
    return distance;
}

// A longer gap begins a new slice.
double Step(const TckPt& from, const TckPt& to) {
    return Seconds(from, to) >= CTrackEx::s_iDiffTime ? 0 : Metres(from, to);
}

// By time the library reports every fix, also those that become no point.
bool IsPoint(const TckPt& fix) {
    const auto& last = s_recorded.last;
    return s_recorded.interval == 0 || !last || Seconds(*last, fix) >= s_recorded.interval;
}

// By distance and by auto a run of fixes is reported with the one that ends it and begins the next; its point
// is the one that began it.
std::optional<TckPt> PointChosenAt(const TckPt& reported) {
    if (s_recorded.interval != 0) return reported;
    return s_recorded.last ? s_recorded.last : s_recorded.first;
}

void OnPoint(const TckPt& point) {
    if (!IsPoint(point)) return;
    if (s_recorded.waiting++ == 0) s_recorded.waitingSince = steady_clock::now();
    s_recorded.newestPoint = PointChosenAt(point);
    if (s_recorded.last) s_recorded.distance += Step(*s_recorded.last, point);
    s_recorded.last = point;
    if (s_recorded.observer) s_recorded.observer(point);
}

}  // namespace

LiveRecording::LiveRecording(const DeviceFolder& device, const HostSettings& settings, bool save, Say say)
    : m_device(device),
      m_overwrite(settings.record.overwrite),
      m_color(ColorValue(settings.color)),
      m_manager(ApplySettings(settings)),
      m_say(std::move(say)) {
    s_pDevice = &device;
    s_recorded = {};
    if (settings.record.mode == RecTrackByTime) s_recorded.interval = settings.record.time;
    m_manager.GetTrackMangSet()->SetTmpTkIsSaveInFull(save);
}

LiveRecording::~LiveRecording() {
    Stop();
    m_manager.StopLoadDataToMapThread();
    m_manager.GetLogTrack()->CloseEx();
    s_recorded = {};
}

std::optional<std::string> LiveRecording::Open(StopSignals& stop) {
    m_manager.SetIsHasEnoughSpaceCallFun(HasRoom);
    m_manager.SetTmpTrackPtShowInMapCallFun(OnPoint);
    m_manager.SetLoadTrackToMapCallFun(OnLoaded);
    const auto putAside = PutAsideFiles(m_device);
    m_manager.LoadData();
    for (const auto& file : NewFiles(putAside, PutAsideFiles(m_device)))
        m_say("the recording was damaged; the damaged file is kept as " + Utf8Of(file));
    if (!WaitUntilLoaded(stop)) return "the library in " + Utf8Of(m_device.Root()) + " does not finish loading";
    if (!FilesAreOpen())
        return "the recording's files in " + Utf8Of(m_device.Recording()) +
               " cannot be opened for writing: " + WhyNotOpened(m_device);
    m_pointsBefore = Points();
    m_knownFiles = TrackFilesOf(m_device);
    return std::nullopt;
}

bool LiveRecording::WaitUntilLoaded(StopSignals& stop) const {
    constexpr auto kLook = milliseconds(20);
    const auto deadline = steady_clock::now() + kLoadingTakesAtMost;
    bool isLoaded = false;
    while (!isLoaded && steady_clock::now() < deadline && stop.Sleep({}))
        isLoaded = s_loaded.try_acquire_for(kLook);
    while (isLoaded && m_manager.IsLoadingDataToMap() && steady_clock::now() < deadline)
        std::this_thread::sleep_for(milliseconds(1));  // it ends just after the callback
    return isLoaded && !m_manager.IsLoadingDataToMap();
}

bool LiveRecording::FilesAreOpen() const {
    int start = 0;
    return m_manager.GetLogTrack()->GetTmpTrackStart(start);
}

void LiveRecording::Start(Observer observer) {
    s_recorded.observer = std::move(observer);
    m_manager.GetTrackMangSet()->ReSetTmpTkStartPos();
    m_writingPlace = WritingPlace();
    m_manager.Start();
}

// The library writes when enough points wait, and saves the recording first if that overwrites its beginning.
void LiveRecording::Offer(const TckPt& fix) {
    const bool mayOverwrite = WouldOverwrite(s_recorded.waiting + 1);
    const auto expected = mayOverwrite ? PrepareAutomaticSave() : std::nullopt;
    if (!s_recorded.first && fix.lTime != 0) s_recorded.first = fix;
    s_recorded.newest = fix;
    m_manager.SaveToTempTrack(fix);
    const std::uint64_t batch = s_recorded.waiting;
    AfterWriting();
    if (expected && batch != 0 && s_recorded.waiting == 0) CheckAutomaticSave(*expected + batch);
}

// FlushOut does not save before it overwrites.
void LiveRecording::Flush() {
    if (s_recorded.waiting == 0) return;
    if (WouldOverwrite(s_recorded.waiting)) {
        const auto expected = PrepareAutomaticSave();
        std::vector<TckPt, je_allocator<TckPt>> nothingPending;
        m_manager.SaveTempTrkToTrack(nothingPending);
        if (expected) CheckAutomaticSave(*expected);
    }
    m_manager.FlushOut();
    AfterWriting();
}

steady_clock::duration LiveRecording::Waiting() const {
    return s_recorded.waiting == 0 ? steady_clock::duration::zero()
                                   : steady_clock::now() - s_recorded.waitingSince;
}

void LiveRecording::Stop() {
    if (!m_manager.isStart()) return;
    Flush();
    m_manager.Stop();
    CountAdded();
}

std::uint64_t LiveRecording::PointsWaiting() const { return s_recorded.waiting; }
std::uint64_t LiveRecording::Points() const { return m_manager.GetLogTrack()->GetPtCount(); }
int LiveRecording::Slices() const { return m_manager.GetLogTrack()->GetSliceNum(); }
double LiveRecording::Fill() const { return m_manager.GetSpaceRate(); }
double LiveRecording::Distance() const { return s_recorded.distance; }

// A fix that goes back in time is none that points could follow.
std::optional<LiveRecording::Gap> LiveRecording::Behind() const {
    if (!s_recorded.newestPoint || !s_recorded.newest) return std::nullopt;
    const TckPt &point = *s_recorded.newestPoint, &fix = *s_recorded.newest;
    if (Seconds(point, fix) <= 0) return std::nullopt;
    return Gap{Seconds(point, fix), Metres(point, fix)};
}

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
    m_pointsAdded += static_cast<std::uint64_t>(added < 0 ? added + std::int64_t{kCapacity} : added);
    m_writingPlace = place;
}

void LiveRecording::AfterWriting() {
    const std::uint64_t before = m_pointsAdded;
    CountAdded();
    if (m_pointsAdded == before && !WasFull()) return;
    if (WasFull() && !std::exchange(m_isFullTold, true)) m_say("the recording is full: it takes no more fixes");
    s_recorded.waiting = 0;
    CheckFile();
}

std::optional<std::string> LiveRecording::Check() const { return WhyIncomplete(m_device, Points()); }

void LiveRecording::CheckFile() {
    const bool isComplete = PointsInRingFile(m_device) == Points();
    const bool wasComplete = std::exchange(m_isFileComplete, isComplete);
    const auto problem = wasComplete && !isComplete ? Check() : std::nullopt;
    if (problem) Complain(*problem);
}

void LiveRecording::Complain(const Problem& problem) {
    ++m_troubles;
    m_say(problem);
}

}  // namespace host
