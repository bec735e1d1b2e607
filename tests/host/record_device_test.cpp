// `qtrace record` from a serial line: a pseudo terminal plays the receiver that is pulled out and put back.
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>

#include <gtest/gtest.h>

#include "tests/host/recorder.h"

namespace fs = std::filesystem;

namespace host {
namespace {

// The receiver's end of a line. As long as it lives, the device is there; not longer, as the next to open a
// terminal may get its number.
class Line {
 public:
    explicit Line(const fs::path& device)
        : m_device(device), m_end(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_EQ(grantpt(m_end), 0);
        EXPECT_EQ(unlockpt(m_end), 0);
        m_name = ptsname(m_end);
        m_observer = open(m_name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);  // keeps the settings between users
        fs::create_symlink(m_name, device);
    }
    ~Line() {
        fs::remove(m_device);
        close(m_observer);
        close(m_end);
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    void Send(const std::string& bytes) const {
        for (std::size_t sent = 0; sent < bytes.size();) {
            const ssize_t count = write(m_end, bytes.data() + sent, bytes.size() - sent);
            ASSERT_GT(count, 0);
            sent += static_cast<std::size_t>(count);
        }
    }
    termios Settings() const {
        termios settings{};
        tcgetattr(m_observer, &settings);
        return settings;
    }
    void SetSpeed(speed_t speed) const {
        termios settings = Settings();
        cfsetspeed(&settings, speed);
        tcsetattr(m_observer, TCSANOW, &settings);
    }
    bool IsRaw() const { return (Settings().c_lflag & (ICANON | ECHO)) == 0; }

 private:
    fs::path m_device;
    int m_end, m_observer = -1;
    std::string m_name;
};

class RecordDevice : public Recorder {
 protected:
    std::string Device() const { return (m_folder.Path() / "receiver").string(); }
    std::vector<std::string> FromDevice(std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments = {"--nmea", Device(), "--write-after", "1"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Command(arguments);
    }
    static ProcessResult StopAndWait(Process& recorder) {
        recorder.Send(SIGTERM);
        return recorder.Wait();
    }
    bool RingHolds(std::size_t points) const {
        return Eventually([&] { return Ring().points.size() == points; });
    }
};

TEST_F(RecordDevice, Receiver_IsRecordedAndItsLineGivenBack) {
    const Line line(Device());
    line.SetSpeed(B4800);
    const termios before = line.Settings();
    Process recorder(FromDevice());
    ASSERT_TRUE(Eventually([&] { return line.IsRaw(); }));
    EXPECT_EQ(cfgetispeed(&before), static_cast<speed_t>(B4800));
    const termios meanwhile = line.Settings();
    EXPECT_EQ(cfgetospeed(&meanwhile), static_cast<speed_t>(B4800));
    line.Send(Drive(20));
    EXPECT_TRUE(RingHolds(18));  // one run is open, and the last fix waits for its altitude
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(Drive(20)), 0, 19)));
    EXPECT_FALSE(line.IsRaw());
    EXPECT_EQ(line.Settings().c_iflag, before.c_iflag);
}

TEST_F(RecordDevice, Baud_SetsTheSpeedOfTheLine) {
    const Line line(Device());
    Process recorder(FromDevice({"--baud", "9600"}));
    ASSERT_TRUE(Eventually([&] { return line.IsRaw(); }));
    const termios meanwhile = line.Settings();
    EXPECT_EQ(cfgetospeed(&meanwhile), static_cast<speed_t>(B9600));
    ASSERT_TRUE(Eventually([&] { return WaitsForSignals(recorder.Id()); }));
    EXPECT_EQ(StopAndWait(recorder).exitCode, 0);
}

// A power cut after that costs nothing: the points of a quiet receiver are on disk as well.
TEST_F(RecordDevice, WaitingPoints_AreWrittenAfterAWhile) {
    const Line line(Device());
    Process recorder(FromDevice());
    line.Send(Drive(7));
    EXPECT_TRUE(RingHolds(5));
    recorder.Send(SIGKILL);
    recorder.Wait();
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(Drive(7)), 0, 5)));
}

TEST_F(RecordDevice, PulledOutAndPutBack_IsRecordedOn) {
    const std::string drive = Drive(60);
    const std::size_t half = drive.find("\r\n", drive.size() / 2) + 2;
    auto line = std::make_optional<Line>(Device());
    Process recorder(FromDevice());
    line->Send(drive.substr(0, half) + drive.substr(half, 20));  // the last sentence is cut off
    const std::size_t before = FixesIn(drive.substr(0, half)).size() - 2;
    EXPECT_TRUE(RingHolds(before));
    line.reset();
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("waiting for it") != std::string::npos; }));
    line.emplace(Device());
    ASSERT_TRUE(Eventually([&] { return line->IsRaw(); }));
    line->Send(drive.substr(half));
    EXPECT_TRUE(RingHolds(58));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find(Device() + " is back"), std::string::npos) << run.err;
    EXPECT_EQ(SummaryLine(run.out, "  refused"), "1 cut off");
    EXPECT_TRUE(SameFixes(Ring().points, Slice(FixesIn(drive), 0, 59)));
}

TEST_F(RecordDevice, NotThereAtTheStart_IsWaitedFor) {
    Process recorder(FromDevice({"--baud", "4800"}));
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("waiting for it") != std::string::npos; }));
    const Line line(Device());
    ASSERT_TRUE(Eventually([&] { return line.IsRaw(); }));
    line.Send(Drive(20));
    EXPECT_TRUE(RingHolds(18));
    EXPECT_EQ(StopAndWait(recorder).exitCode, 0);
}

TEST_F(RecordDevice, StopWhileWaiting_EndsCleanly) {
    Process recorder(Command({"--nmea", "/dev/qtrace-no-such-device"}));
    EXPECT_TRUE(Eventually([&] { return recorder.ErrorsSoFar().find("waiting for it") != std::string::npos; }));
    ASSERT_TRUE(Eventually([&] { return WaitsForSignals(recorder.Id()); }));
    const ProcessResult run = StopAndWait(recorder);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.signal, 0);
    EXPECT_TRUE(SavedTracks().empty());
}

TEST_F(RecordDevice, UnknownBaud_IsWrongUsage) {
    EXPECT_EQ(Record({"--nmea", Device(), "--baud", "12345"}).exitCode, 2);
}

TEST_F(RecordDevice, LogAsALine_IsRefused) {
    EXPECT_EQ(Record({"--nmea", Log(Drive(5)), "--baud", "4800"}).exitCode, 1);
    EXPECT_FALSE(fs::exists(m_device));
}

}  // namespace
}  // namespace host
