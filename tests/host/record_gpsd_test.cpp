// `qtrace record` from the real GPS daemon, fed with recorded logs by the daemon's own test tool.
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/source/gate.h"
#include "host/source/gpsd_connection.h"
#include "tests/host/recorder.h"
#include "tests/support/gpx_points.h"
#include "tests/support/recorded_data.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// A port of this machine that is free, and stays so when it is given back: to those who want any, the system
// gives higher ones, and the tests that run at the same time begin their search elsewhere.
class Port {
 public:
    Port() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        constexpr int kFirst = 20'000, kCount = 12'000;
        for (int i = 0; i < kCount; ++i) {
            m_number = kFirst + (getpid() + i) % kCount;
            if (IsBound()) return;
        }
        throw std::runtime_error("no free port");
    }
    ~Port() { close(m_socket); }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    int Number() const { return m_number; }

    void Listen() const { EXPECT_EQ(listen(m_socket, 8), 0); }
    // Takes a call, and ends it. False when there was none in time.
    bool HangUpOnce() const {
        pollfd waiting{m_socket, POLLIN, 0};
        if (poll(&waiting, 1, 10'000) != 1) return false;
        return close(accept(m_socket, nullptr, nullptr)) == 0;
    }

 private:
    bool IsBound() const {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(m_number));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    int m_socket;
    int m_number = 0;
};

bool IsInstalled(const std::string& program) {
    return RunProcess({"sh", "-c", "command -v " + program}).exitCode == 0;
}

// gpsfake and the gpsd that it starts: it waits for a client, then plays the log once, a sentence each
// hundredth of a second, and ends.
class Daemon {
 public:
    Daemon(int port, const fs::path& log)
        : m_process({"gpsfake", "-1", "-q", "-t", "-c", "0.01", "-P", std::to_string(port), log.string()}) {}
    ~Daemon() {
        m_process.Send(SIGTERM);  // it takes its gpsd along
        m_process.Wait(std::chrono::seconds(10));
    }

    // The daemon alone, as a crash would do it.
    void Kill() {
        const pid_t gpsd = Child();
        if (gpsd > 0) kill(gpsd, SIGKILL);
    }
    // 0 while it has none.
    pid_t Child() const {
        const std::string id = std::to_string(m_process.Id());
        std::ifstream children("/proc/" + id + "/task/" + id + "/children");
        pid_t child = 0;
        children >> child;
        return child;
    }

 private:
    Process m_process;
};

class RecordGpsd : public Recorder {
 protected:
    void SetUp() override {
        if (!IsInstalled("gpsfake") || !IsInstalled("gpsd")) GTEST_SKIP() << "gpsd is not installed";
        m_port = Port().Number();
    }
    std::vector<std::string> FromDaemon(std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments = {"--gpsd", "localhost:" + std::to_string(m_port), "--write-after",
                                              "1"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Command(arguments);
    }
    fs::path LogOf(const std::string& nmea, const std::string& name) const {
        WriteFile(m_folder.Path() / name, nmea);
        return m_folder.Path() / name;
    }
    // A part of the sample drive in which there are fixes.
    static std::string SampleFrom(std::size_t begin, std::size_t bytes) {
        const std::string drive = SampleDrive();
        return drive.substr(drive.find("$GPRMC,", begin), bytes);
    }
    bool RingHolds(std::size_t points) const {
        return Eventually([&] { return Ring().points.size() >= points; });
    }
    // Every recorded point is a fix of the log. The daemon passes positions on as decimals, and takes the dates
    // of old logs for a restart of the week count.
    void ExpectPointsOf(const std::string& nmea) const {
        const std::vector<TckPt> fixes = FixesIn(nmea);
        for (const TckPt& point : Ring().points) {
            const auto fix = std::find_if(fixes.begin(), fixes.end(), [&](const TckPt& one) {
                return (point.lTime - one.lTime) % Gate::kEra == 0;
            });
            ASSERT_NE(fix, fixes.end()) << point.lTime;
            EXPECT_NEAR(point.dLatitude, fix->dLatitude, 1e-6);
            EXPECT_NEAR(point.dLongitude, fix->dLongitude, 1e-6);
            EXPECT_NEAR(point.dSpeed, fix->dSpeed, 0.1);
        }
    }
    ProcessResult StopAndWait(Process& recorder) const {
        recorder.Send(SIGTERM);
        return recorder.Wait();
    }

    int m_port = 0;
};

TEST_F(RecordGpsd, SampleDrive_BecomesATrackOfTheLibrary) {
    const std::string nmea = SampleFrom(20'000, 20'000);
    const Daemon daemon(m_port, LogOf(nmea, "fake.nmea"));
    Process recorder(FromDaemon({"--save-as", "by daemon"}));
    EXPECT_TRUE(RingHolds(30));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    ExpectPointsOf(nmea);
    const ProcessResult list = RunProcess({QTRACE_PROGRAM, "list", "--device", m_device.string()});
    EXPECT_NE(list.out.find("by daemon"), std::string::npos) << list.out;
    ASSERT_EQ(SavedTracks().size(), 1u);
    EXPECT_EQ(GpxPointsOf(SavedTracks()[0]).size(),
              static_cast<std::size_t>(SummaryNumber(run.out, "  points")));
}

TEST_F(RecordGpsd, RealDrive_IsRecorded) {
    const auto file = RecordedFile("nmea", "drive-sierra-nevada.nmea");
    if (!file) GTEST_SKIP() << "no recorded data here";
    const std::string nmea = ReadFile(*file).substr(0, 40'000);
    const Daemon daemon(m_port, LogOf(nmea, "fake.nmea"));
    Process recorder(FromDaemon());
    EXPECT_TRUE(RingHolds(30));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(SavedTracks().size(), 1u);
    ExpectPointsOf(nmea);
}

TEST_F(RecordGpsd, AltitudeIsAboveSeaLevel) {
    const std::string nmea = SampleFrom(20'000, 20'000);
    const Daemon daemon(m_port, LogOf(nmea, "fake.nmea"));
    Process recorder(FromDaemon());
    EXPECT_TRUE(RingHolds(30));
    StopAndWait(recorder);
    const std::vector<TckPt> fixes = FixesIn(nmea);
    std::size_t same = 0;
    for (const TckPt& point : Ring().points)
        same += std::any_of(fixes.begin(), fixes.end(), [&](const TckPt& fix) {
            return fix.lTime == point.lTime && std::abs(fix.dAltitude - point.dAltitude) < 0.1;
        });
    EXPECT_GT(same, Ring().points.size() / 2);  // the daemon may report a fix before it has the altitude
}

TEST_F(RecordGpsd, DaemonKilledAndStartedAgain_IsRecordedOn) {
    const std::string first = SampleFrom(20'000, 20'000), second = SampleFrom(100'000, 20'000);
    Process recorder(FromDaemon());
    std::size_t before = 0;
    {
        Daemon daemon(m_port, LogOf(first, "first.nmea"));
        EXPECT_TRUE(RingHolds(20));
        daemon.Kill();
        EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("it hung up") != std::string::npos; }));
        before = Ring().points.size();
    }
    const Daemon daemon(m_port, LogOf(second, "second.nmea"));
    EXPECT_TRUE(RingHolds(before + 20));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("is back"), std::string::npos) << run.err;
    ExpectPointsOf(first + second);
    EXPECT_EQ(SummaryNumber(run.out, "Recorded"), static_cast<long>(Ring().points.size()));
}

TEST_F(RecordGpsd, NoDaemon_IsWaitedForAndToldOnce) {
    Process recorder(FromDaemon());
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("waiting for it") != std::string::npos; }));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err.find("waiting for it"), run.err.rfind("waiting for it")) << run.err;
}

TEST_F(RecordGpsd, ServerThatHangsUp_IsToldOnce) {
    const Port port;
    port.Listen();
    m_port = port.Number();
    Process recorder(FromDaemon());
    for (int call = 0; call < 3; ++call) EXPECT_TRUE(port.HangUpOnce());
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("it hung up") != std::string::npos; }));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
}

TEST(GpsdAddress, Parts_AreFilledUp) {
    const auto text = [](const char* address) { return GpsdAddress::From(address).Text(); };
    EXPECT_EQ(text(""), "localhost:2947");
    EXPECT_EQ(text("boat"), "boat:2947");
    EXPECT_EQ(text("boat:1234"), "boat:1234");
    EXPECT_EQ(text(":1234"), "localhost:1234");
    EXPECT_EQ(text("boat:"), "boat:2947");
    EXPECT_EQ(GpsdAddress::From("[::1]:1234").host, "::1");
    EXPECT_EQ(GpsdAddress::From("[::1]:1234").port, "1234");
    EXPECT_EQ(GpsdAddress::From("2001:db8::1").host, "2001:db8::1");
    EXPECT_EQ(GpsdAddress::From("2001:db8::1").port, "2947");
}

}  // namespace
}  // namespace host
