#include "host/source/serial_device.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <utility>

#include "host/source/receivers.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const std::map<int, speed_t> kSpeeds = {
    {1200, B1200},     {2400, B2400},     {4800, B4800},     {9600, B9600},
    {19200, B19200},   {38400, B38400},   {57600, B57600},   {115200, B115200},
    {230400, B230400}, {460800, B460800}, {921600, B921600},
};

// Without waiting for a carrier, which few receivers have.
int OpenLine(const std::string& path) {
    return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

}  // namespace

std::vector<int> BaudRates() {
    std::vector<int> rates;
    for (const auto& [rate, speed] : kSpeeds) rates.push_back(rate);
    return rates;
}

bool IsSerialDevice(const std::string& path) {
    struct stat about {};
    if (stat(path.c_str(), &about) != 0) return errno == ENOENT && path.starts_with("/dev/");
    if (!S_ISCHR(about.st_mode)) return false;
    const int line = OpenLine(path);
    if (line < 0) return path.starts_with("/dev/tty");
    const bool isSerial = isatty(line) != 0;
    close(line);
    return isSerial;
}

SerialDevice::SerialDevice(std::string path, std::optional<int> baud, Say say)
    : m_path(std::move(path)), m_baud(baud), m_say(std::move(say)) {}

SerialDevice::~SerialDevice() { Close(); }

std::optional<std::string> SerialDevice::OpenFirst() {
    if (Open()) return std::nullopt;
    if (errno != ENOENT && errno != ENXIO && errno != ENODEV && errno != EBUSY) return std::strerror(errno);
    Lose(std::strerror(errno));
    return std::nullopt;
}

bool SerialDevice::Open() {
    m_descriptor = OpenLine(m_path);
    if (m_descriptor < 0) return false;
    if (MakeRaw()) return true;
    const int why = errno;
    close(m_descriptor);
    m_descriptor = -1;
    errno = why;
    return false;
}

bool SerialDevice::MakeRaw() {
    if (tcgetattr(m_descriptor, &m_before) != 0) return false;
    termios raw = m_before;
    cfmakeraw(&raw);
    raw.c_cflag |= CLOCAL | CREAD;
    if (m_baud) {
        cfsetispeed(&raw, kSpeeds.at(*m_baud));
        cfsetospeed(&raw, kSpeeds.at(*m_baud));
    }
    return tcsetattr(m_descriptor, TCSANOW, &raw) == 0;
}

void SerialDevice::Close() {
    if (m_descriptor < 0) return;
    tcsetattr(m_descriptor, TCSANOW, &m_before);
    close(m_descriptor);
    m_descriptor = -1;
}

void SerialDevice::Lose(const std::string& why) {
    Close();
    if (!std::exchange(m_isMissed, true)) m_say(m_path + " is not there (" + why + "); waiting for it");
    m_nextTry = steady_clock::now() + m_backOff.Next();
}

SerialDevice::Got SerialDevice::WaitToReopen(StopSignals& stop, milliseconds atMost) {
    const auto left = std::chrono::ceil<milliseconds>(m_nextTry - steady_clock::now());
    if (!stop.Sleep(std::clamp(left, milliseconds(0), atMost))) return Got::Stopped;
    if (steady_clock::now() < m_nextTry) return Got::Nothing;
    if (!Open()) Lose(std::strerror(errno));
    return Got::Nothing;
}

SerialDevice::Got SerialDevice::Read(StopSignals& stop, milliseconds atMost, std::string_view& bytes) {
    if (m_descriptor < 0) return WaitToReopen(stop, atMost);
    const Awaited awaited = stop.WaitForInput(m_descriptor, atMost);
    if (awaited == Awaited::Stop) return Got::Stopped;
    if (awaited == Awaited::TimeIsUp) return Got::Nothing;
    const ssize_t count = read(m_descriptor, m_buffer.data(), m_buffer.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return Got::Nothing;
    if (count <= 0) {
        Lose(count < 0 ? std::strerror(errno) : "it was hung up");
        return Got::Nothing;
    }
    // Only bytes show that it is back: a line may open and be gone again at once.
    if (std::exchange(m_isMissed, false)) m_say(m_path + " is back");
    m_backOff.Reset();
    bytes = {m_buffer.data(), static_cast<std::size_t>(count)};
    return Got::Bytes;
}

}  // namespace host
