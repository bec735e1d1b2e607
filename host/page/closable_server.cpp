#include "host/page/closable_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

namespace host {
namespace {

using std::chrono::milliseconds;

struct Patience {
    milliseconds read, write;
};

bool Comes(socket_t socket, short event, milliseconds atMost) {
    pollfd watched{socket, event, 0};
    int ready = 0;
    do {
        ready = poll(&watched, 1, static_cast<int>(atMost.count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

// A connection as the library reads and writes it. The head of a request is read byte by byte: so it is
// buffered.
class Connection : public httplib::Stream {
 public:
    Connection(socket_t socket, Patience patience) : m_socket(socket), m_patience(patience) {}

    bool is_readable() const override { return m_at < m_end || Comes(m_socket, POLLIN, m_patience.read); }
    bool is_writable() const override { return Comes(m_socket, POLLOUT, m_patience.write); }

    ssize_t read(char* bytes, std::size_t size) override {
        if (m_at == m_end && !Fill()) return m_problem;
        const std::size_t count = std::min(size, m_end - m_at);
        std::copy_n(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_at), count, bytes);
        m_at += count;
        return static_cast<ssize_t>(count);
    }

    // A client that has gone away is an error of the write, and ends nothing else.
    ssize_t write(const char* bytes, std::size_t size) override {
        return is_writable() ? send(m_socket, bytes, size, MSG_NOSIGNAL) : -1;
    }

    // Everybody is on this machine; what is served depends on nobody's port.
    void get_remote_ip_and_port(std::string& ip, int& port) const override { ip = "127.0.0.1", port = 0; }
    void get_local_ip_and_port(std::string& ip, int& port) const override { ip = "127.0.0.1", port = 0; }
    socket_t socket() const override { return m_socket; }

 private:
    bool Fill() {
        m_problem = is_readable() ? recv(m_socket, m_buffer.data(), m_buffer.size(), 0) : -1;
        if (m_problem <= 0) return false;
        m_at = 0;
        m_end = static_cast<std::size_t>(m_problem);
        return true;
    }

    socket_t m_socket;
    Patience m_patience;
    std::array<char, 4096> m_buffer{};
    std::size_t m_at = 0, m_end = 0;
    ssize_t m_problem = 0;
};

milliseconds Time(time_t seconds, time_t microseconds) {
    return std::chrono::seconds(seconds) + milliseconds(microseconds / 1000);
}

}  // namespace

void ClosableServer::Close() {
    stop();
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    for (const socket_t socket : m_open) shutdown(socket, SHUT_RDWR);
}

bool ClosableServer::Enter(socket_t socket) {
    const std::lock_guard lock(m_mutex);
    if (!m_isClosed) m_open.insert(socket);
    return !m_isClosed;
}

// Its number may be another's as soon as it is closed: so nobody looks meanwhile.
void ClosableServer::CloseSocket(socket_t socket) {
    const std::lock_guard lock(m_mutex);
    m_open.erase(socket);
    shutdown(socket, SHUT_RDWR);
    close(socket);
}

bool ClosableServer::process_and_close_socket(socket_t socket) {
    bool isGood = false, isClosed = false;
    if (Enter(socket) && Comes(socket, POLLIN, std::chrono::seconds(keep_alive_timeout_sec_))) {
        Connection connection(socket, {Time(read_timeout_sec_, read_timeout_usec_),
                                       Time(write_timeout_sec_, write_timeout_usec_)});
        isGood = process_request(connection, true, isClosed, nullptr);
    }
    CloseSocket(socket);
    return isGood;
}

}  // namespace host
