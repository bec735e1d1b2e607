#include "host/source/gpsd_connection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <thread>
#include <tuple>

namespace host {
namespace {

// A daemon whose machine has vanished is noticed within a minute.
void KeepAlive(int socket) {
    const auto set = [socket](int level, int option, int value) {
        std::ignore = setsockopt(socket, level, option, &value, sizeof value);
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, 30);
    set(IPPROTO_TCP, TCP_KEEPINTVL, 10);
    set(IPPROTO_TCP, TCP_KEEPCNT, 3);
}

}  // namespace

GpsdAddress GpsdAddress::From(const std::string& text) {
    GpsdAddress address;
    const bool isBracketed = text.starts_with('[') && text.find(']') != std::string::npos;
    const std::size_t hostEnd = isBracketed ? text.find(']') + 1 : text.find(':');
    const bool isBareIpv6 = !isBracketed && hostEnd != text.rfind(':');
    const std::string host = isBracketed  ? text.substr(1, hostEnd - 2)
                             : isBareIpv6 ? text
                                          : text.substr(0, hostEnd);
    if (!host.empty()) address.host = host;
    if (!isBareIpv6 && hostEnd != std::string::npos && hostEnd + 1 < text.size())
        address.port = text.substr(hostEnd + 1);
    return address;
}

struct GpsdConnection::Attempt {
    Attempt() : ready(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (ready < 0) throw std::system_error(errno, std::generic_category(), "no connection can be made");
    }
    ~Attempt() {
        if (result == 0) gps_close(&data);
        close(ready);
    }
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;

    void Open(const GpsdAddress& address) {
        result = gps_open(address.host.c_str(), address.port.c_str(), &data);
        if (result != 0) problem = gps_errstr(errno);
        const std::uint64_t one = 1;
        std::ignore = write(ready, &one, sizeof one);
    }

    gps_data_t data{};
    int result = -1;
    std::string problem;
    int ready;  // can be read once the attempt has ended
};

GpsdConnection::GpsdConnection(const GpsdAddress& address) : m_attempt(std::make_shared<Attempt>()) {
    std::thread([attempt = m_attempt, address] { attempt->Open(address); }).detach();
}

GpsdConnection::~GpsdConnection() = default;

const gps_data_t& GpsdConnection::Data() const { return m_attempt->data; }

GpsdConnection::Got GpsdConnection::AwaitOpen(StopSignals& stop, std::chrono::milliseconds atMost) {
    const Awaited awaited = stop.WaitForInput(m_attempt->ready, atMost);
    if (awaited == Awaited::Stop) return Got::Stopped;
    if (awaited == Awaited::TimeIsUp) return Got::Nothing;
    std::uint64_t count = 0;
    std::ignore = read(m_attempt->ready, &count, sizeof count);
    m_isOpen = m_attempt->result == 0 && Watch();
    if (!m_isOpen && m_problem.empty()) m_problem = m_attempt->problem;
    return m_isOpen ? Got::Nothing : Got::Lost;
}

bool GpsdConnection::Watch() {
    KeepAlive(m_attempt->data.gps_fd);
    if (gps_stream(&m_attempt->data, WATCH_ENABLE | WATCH_JSON, nullptr) == 0) return true;
    m_problem = "it takes no request";
    return false;
}

GpsdConnection::Got GpsdConnection::Read(StopSignals& stop, std::chrono::milliseconds atMost) {
    if (!m_isOpen) return AwaitOpen(stop, atMost);
    gps_data_t& data = m_attempt->data;
    // What the client library has read already does not show in the descriptor.
    if (!gps_waiting(&data, 0)) {
        const Awaited awaited = stop.WaitForInput(data.gps_fd, atMost);
        if (awaited != Awaited::Ready) return awaited == Awaited::Stop ? Got::Stopped : Got::Nothing;
    } else if (!stop.Sleep({})) {
        return Got::Stopped;
    }
    data.set = 0;  // what came with an earlier report would stay marked
    if (gps_read(&data, nullptr, 0) >= 0) return data.set == 0 ? Got::Nothing : Got::Report;
    m_problem = "it hung up";
    return Got::Lost;
}

}  // namespace host
