#include "tests/power/laboratory.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>

#include "qtrace.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

namespace power {
namespace {

constexpr const char* kPointFile = "App/Log.dat";
constexpr const char* kHeadFile = "App/LogHd.dat";
constexpr const char* kNote = "App/Log.dat.redo";
constexpr std::size_t kSubsets = 24;        // random ones at each cut where not all are tried
constexpr unsigned short kCapacity = 1000;  // of the recording that looks at what is left

std::string ContentOf(const Disk& disk, const std::string& path) {
    const auto found = disk.find(path);
    return found == disk.end() ? "" : found->second;
}

Disk TracksOf(const Disk& disk) {
    Disk tracks;
    for (const auto& [path, content] : disk)
        if (path.ends_with(".gpx")) tracks[path] = content;
    return tracks;
}

std::size_t FieldAt(const std::string& ring, std::size_t at) {
    return static_cast<unsigned char>(ring[at]) + std::size_t{256} * static_cast<unsigned char>(ring[at + 1]);
}

// Exactly as long as its header says: anything else is a damaged file.
bool IsWholeRing(const std::string& bytes) {
    return bytes.size() >= 4 && bytes.size() == 4 + 48 * FieldAt(bytes, 2);
}

// The newest records of a whole ring as a file of their own, not wrapped: what is left of it, before anything
// is appended, when it is continued with a smaller capacity.
std::string NewestOf(const std::string& ring, std::size_t capacity) {
    if (!IsWholeRing(ring) || FieldAt(ring, 2) <= capacity) return ring;
    const std::size_t start = 4 + 48 * FieldAt(ring, 0);
    const std::string inOrder = ring.substr(start) + ring.substr(4, start - 4);
    const std::string header = {0, 0, static_cast<char>(capacity % 256), static_cast<char>(capacity / 256)};
    return header + inOrder.substr(inOrder.size() - 48 * capacity);
}

// What a cut may leave: the state before the step in hand, and the one behind it.
struct Step {
    Disk before, after;
};

// The steps of a log, by the index of the record that ends each.
std::vector<std::pair<std::size_t, Step>> StepsOf(const std::vector<disk_log::Record>& log, DiskModel model) {
    std::vector<std::pair<std::size_t, Step>> steps;
    Step step{model.Complete(), {}};
    for (std::size_t i = 0; i < log.size(); ++i) {
        model.Take(log[i]);
        if (log[i].what != disk_log::kMark || log[i].text != "end") continue;
        step.after = model.Complete();
        steps.emplace_back(i, step);
        step.before = step.after;
    }
    return steps;
}

// A moment of a session, and the step that was in hand or, when it is done, has just ended.
struct Moment {
    std::size_t call;
    std::size_t number;  // of the step
    const Step& step;
    bool isDone;
};

// Calls `visit` with each disk that a cut at each moment can leave.
void VisitCuts(const std::vector<disk_log::Record>& log, DiskModel model, unsigned seed,
               const std::vector<std::pair<std::size_t, Step>>& steps,
               const std::function<void(const Disk&, const Moment&)>& visit) {
    std::size_t number = 0;
    for (std::size_t call = 0; call < log.size() && number < steps.size(); ++call) {
        model.Take(log[call]);
        const Moment moment{call, number, steps[number].second, call == steps[number].first};
        model.VisitStates(seed + static_cast<unsigned>(call), kSubsets,
                          [&](const Disk& left) { visit(left, moment); });
        if (moment.isDone) ++number;
    }
}

bool IsInTheMiddle(const Disk& left, const Step& step) {
    const std::string ring = ContentOf(left, kPointFile);
    return ring != ContentOf(step.before, kPointFile) && ring != ContentOf(step.after, kPointFile);
}

// An append that was noted is finished when the recording is opened; what the cut left of it is never enough.
void ExpectNotedAppend(const Disk& atFirst, std::vector<std::pair<std::size_t, Step>>& steps) {
    const std::string note = ContentOf(atFirst, kNote);
    if (steps.empty() || note.find_first_not_of('\0') == std::string::npos) return;
    Step& opening = steps.front().second;
    opening.before[kPointFile] = ContentOf(opening.after, kPointFile);
}

class Opened {
 public:
    Opened() : m_recording(kCapacity) {
        m_recording.SetOverWrt(true);
        m_recording.SetFilePathEx("Log.dat", "LogHd.dat");
        m_isOpen = m_recording.OpenEx();
    }
    ~Opened() { m_recording.CloseEx(); }

    bool IsOpen() const { return m_isOpen; }
    bool GoesOn() {
        std::vector<TckPt, je_allocator<TckPt>> batch(1, TckPt{47, 8, 0, 0, 1'800'000'000, 0, {}});
        const unsigned long before = m_recording.GetPtCount();
        return m_recording.AppendEx(batch) && m_recording.GetPtCount() == before + 1;
    }

 private:
    CTrackEx m_recording;
    bool m_isOpen = false;
};

// Of a recording that was not there before, the old one is empty; one that is damaged is salvaged, so never the
// old.
bool IsTheOld(const std::string& ring, const std::string& before, const std::string& after) {
    if (before.empty()) return ring == std::string(4, '\0');
    return IsWholeRing(before) && (ring == before || ring == NewestOf(before, FieldAt(after, 2)));
}

// What is wrong with the device that is left; empty when nothing is.
std::string Judge(const Disk& left, const Step& step, bool isDone, const std::function<Disk()>& content) {
    const auto is = [&](const auto& found, auto of) {
        return found == of(step.after) || (!isDone && found == of(step.before));
    };
    if (!is(TracksOf(left), TracksOf)) return "a stored track is neither the old nor the new one";
    const std::string head = ContentOf(left, kHeadFile);
    const auto headOf = [](const Disk& disk) { return ContentOf(disk, kHeadFile); };
    if (!is(head, headOf)) return "the head file is neither the old nor the new one";

    const std::string before = ContentOf(step.before, kPointFile), after = ContentOf(step.after, kPointFile);
    if (after.empty()) return "";
    Opened recording;
    if (!recording.IsOpen()) return "the recording does not open";
    const Disk now = content();
    const std::string ring = ContentOf(now, kPointFile);
    if (ring != after && (isDone || !IsTheOld(ring, before, after)))
        return "the recording is neither the old nor the new one";
    const bool isKept =
        std::any_of(now.begin(), now.end(), [&](const auto& file) { return file.second == before; });
    if (!before.empty() && !IsWholeRing(before) && !isKept) return "the damaged recording is not kept";
    return recording.GoesOn() ? "" : "the recording does not go on";
}

}  // namespace

Laboratory::Laboratory() : m_device(m_folder.Path() / "device") {
    SetDeviceRoot(m_device.string());
    SetProgramFolder(L"\\App");
    SetAnsiCodePage(65001);
    Write({});
    char tracks[] = "\\UserData\\Track";
    CTrackMangSet::Instance()->SetNdExtTrackPath(tracks);
}

void Laboratory::Write(const Disk& disk) const {
    for (const char* folder : {"App", "UserData/Track"}) {
        fs::remove_all(m_device / folder);
        fs::create_directories(m_device / folder);
    }
    for (const auto& [path, content] : disk) WriteFile(m_device / path, content);
}

Disk Laboratory::Content() const {
    Disk disk;
    for (const auto& entry : fs::recursive_directory_iterator(m_device))
        if (entry.is_regular_file())
            disk[fs::relative(entry.path(), m_device).string()] = ReadFile(entry.path());
    return disk;
}

std::vector<disk_log::Record> Laboratory::RunSession(const std::string& scenario, unsigned seed,
                                                     const std::string& refuse) const {
    const std::string log = (m_folder.Path() / "disk.log").string();
    ProcessOptions options;
    options.environment = {{"LD_PRELOAD", QTRACE_POWER_SHIM},
                           {"QTRACE_SHIM_ROOT", m_device.string()},
                           {"QTRACE_SHIM_REFUSE", refuse},
                           {"QTRACE_SHIM_LOG", log}};
    const auto run =
        RunProcess({QTRACE_POWER_SESSION, m_device.string(), scenario, std::to_string(seed)}, options);
    EXPECT_EQ(run.exitCode, 0) << scenario << ": " << run.err;
    return disk_log::Read(ReadFile(log));
}

Count Laboratory::CutPower(const std::string& scenario, unsigned seed, const Disk& atFirst,
                           const std::string& refuse) {
    Write(atFirst);
    const auto log = RunSession(scenario, seed, refuse);
    const DiskModel model(m_device.string(), atFirst);
    auto steps = StepsOf(log, model);
    ExpectNotedAppend(atFirst, steps);
    Count count;
    std::set<std::size_t> seen;
    VisitCuts(log, model, seed, steps, [&](const Disk& left, const Moment& moment) {
        std::string all = std::to_string(moment.number) + (moment.isDone ? "done" : "");
        for (const auto& [path, content] : left) all += path + '\0' + content + '\0';
        if (!seen.insert(std::hash<std::string>()(all)).second) return;
        Write(left);
        const std::string wrong = Judge(left, moment.step, moment.isDone, [this] { return Content(); });
        ++count.states;
        if (!wrong.empty() && count.losses++ == 0)
            count.firstLoss = scenario + ", seed " + std::to_string(seed) + ", step " +
                              std::to_string(moment.number) + ", call " + std::to_string(moment.call) + ": " +
                              wrong;
    });
    return count;
}

std::vector<Disk> Laboratory::CutInTheMiddleOfAnAppend(const std::string& scenario, unsigned seed) {
    Write({});
    const auto log = RunSession(scenario, seed, "");
    const DiskModel model(m_device.string(), {});
    std::map<std::size_t, Disk> byCall;
    VisitCuts(log, model, seed, StepsOf(log, model), [&](const Disk& left, const Moment& moment) {
        if (moment.number > 0 && !moment.isDone && IsInTheMiddle(left, moment.step)) byCall[moment.call] = left;
    });
    std::vector<Disk> disks;
    for (auto& [call, disk] : byCall) disks.push_back(std::move(disk));
    return disks;
}

int Laboratory::RunWithFault(const std::string& scenario, unsigned seed, long call, const std::string& fault,
                             std::string& failed) {
    const std::string counted = (m_folder.Path() / "count").string();
    ProcessOptions options;
    options.environment = {{"LD_PRELOAD", QTRACE_POWER_SHIM},
                           {"QTRACE_SHIM_ROOT", m_device.string()},
                           {"QTRACE_SHIM_FAULT", std::to_string(call) + ' ' + fault},
                           {"QTRACE_SHIM_COUNT", counted}};
    const auto run =
        RunProcess({QTRACE_POWER_SESSION, m_device.string(), scenario, std::to_string(seed)}, options);
    const std::string text = ReadFile(counted);
    failed = text.substr(text.find(' ') + 1);
    failed = failed.substr(0, failed.find('\n'));
    return run.signal != 0 ? 128 + run.signal : run.exitCode;
}

}  // namespace power
