#include "host/recording/record_fixes.h"

#include <algorithm>

#include "host/source/pace.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kTick{500};                        // between looks at what is due
constexpr auto kFixStaysFresh = std::chrono::seconds(5);  // for the status line
// A clock that shows an earlier time was never set: boards without a battery begin in 1970, or when their
// system was made. 2024-01-01.
constexpr std::int64_t kClockIsSet = 1'704'067'200;

std::optional<std::int64_t> Now() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    return seconds < kClockIsSet ? std::nullopt : std::optional(seconds);
}

class Session {
 public:
    Session(FixSource& source, LiveRecording& recording, const RecordArguments& arguments, StatusLine& line,
            StopSignals& stop)
        : m_source(source),
          m_recording(recording),
          m_line(line),
          m_stop(stop),
          m_pace(arguments.speed),
          m_isLive(source.IsLive() || arguments.speed),
          m_writeAfter(arguments.writeAfter) {
        if (arguments.gate) m_gate.emplace(*arguments.gate);
    }

    RecordedInput Run() {
        FixSource::Got got = FixSource::Got::Nothing;
        while (got == FixSource::Got::Fix || got == FixSource::Got::Nothing) {
            Fix fix;
            got = m_source.Next(m_stop, kTick, fix);
            if (got == FixSource::Got::Fix && !Take(fix)) got = FixSource::Got::Stopped;
            Tick();
        }
        return {got, m_gate ? std::optional(m_gate->Counts()) : std::nullopt};
    }

 private:
    bool Take(const Fix& fix) {
        const auto passed = m_gate ? m_gate->Pass(fix, Now()) : std::optional(fix);
        if (!passed) return true;
        if (!WaitUntil(m_pace.DueTime(*passed, steady_clock::now()))) return false;
        m_recording.Offer(*passed);
        ++m_fixes;
        m_newest = *passed;
        if (m_isLive) m_newestCame = steady_clock::now();
        return true;
    }

    bool WaitUntil(steady_clock::time_point due) {
        for (auto now = steady_clock::now(); now < due; now = steady_clock::now()) {
            if (!m_stop.Sleep(std::min(kTick, std::chrono::ceil<milliseconds>(due - now)))) return false;
            Tick();
        }
        return true;
    }

    // A log can be read once more; a drive cannot.
    void Tick() {
        if (m_isLive && m_recording.Waiting() >= m_writeAfter) m_recording.Flush();
        m_line.Show(m_source.IsLive(), [this] { return CurrentStatus(); });
    }

    Status CurrentStatus() const {
        return {m_newest.lTime,
                m_fixes != 0 && steady_clock::now() - m_newestCame < kFixStaysFresh,
                m_newest.dSpeed,
                m_recording.Distance(),
                m_fixes,
                m_recording.PointsAdded() + m_recording.PointsWaiting(),
                m_recording.Behind().value_or(LiveRecording::Gap{}).seconds,
                m_recording.Slices(),
                m_recording.Fill(),
                m_source.Share()};
    }

    FixSource& m_source;
    LiveRecording& m_recording;
    StatusLine& m_line;
    StopSignals& m_stop;
    Pace m_pace;
    bool m_isLive;
    std::chrono::seconds m_writeAfter;
    std::optional<Gate> m_gate;
    std::uint64_t m_fixes = 0;
    TckPt m_newest{};
    steady_clock::time_point m_newestCame;
};

}  // namespace

RecordedInput RecordFixes(FixSource& source, LiveRecording& recording, const RecordArguments& arguments,
                          StatusLine& line, StopSignals& stop) {
    return Session(source, recording, arguments, line, stop).Run();
}

}  // namespace host
