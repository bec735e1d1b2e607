#include "tests/support/http.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <stdexcept>

namespace {

int Connect(int port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    throw std::runtime_error("no connection to port " + std::to_string(port));
}

std::string WithoutChunks(const std::string& body) {
    std::string whole;
    for (std::size_t at = 0; at < body.size();) {
        std::size_t size = 0;
        const std::size_t end = body.find("\r\n", at);
        if (end == std::string::npos) break;
        std::from_chars(body.data() + at, body.data() + end, size, 16);
        whole += body.substr(end + 2, size);
        at = end + 2 + size + 2;
    }
    return whole;
}

}  // namespace

OpenConnection::OpenConnection(int port, const std::string& request) : m_socket(Connect(port)) {
    Send(request);
}

void OpenConnection::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) break;  // refused before all was said
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

OpenConnection::~OpenConnection() { close(m_socket); }

std::string OpenConnection::ReadUntil(const std::function<bool(const std::string&)>& until, int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    std::array<char, 65536> buffer{};
    while (!(until && until(m_read)) && std::chrono::steady_clock::now() < deadline) {
        pollfd waiting{m_socket, POLLIN, 0};
        if (poll(&waiting, 1, 50) <= 0) continue;
        const ssize_t count = recv(m_socket, buffer.data(), buffer.size(), 0);
        if (count <= 0) break;
        m_read.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return m_read;
}

std::string RawHttp(int port, const std::string& request, const std::function<bool(const std::string&)>& until,
                    int seconds) {
    return OpenConnection(port, request).ReadUntil(until, seconds);
}

HttpAnswer AnswerIn(const std::string& bytes) {
    HttpAnswer answer;
    const std::size_t end = bytes.find("\r\n\r\n");
    if (end == std::string::npos || bytes.size() < 12) return answer;
    std::from_chars(bytes.data() + 9, bytes.data() + 12, answer.status);
    answer.head = bytes.substr(0, end + 2);
    answer.body = bytes.substr(end + 4);
    if (answer.head.find("\r\nTransfer-Encoding: chunked") != std::string::npos)
        answer.body = WithoutChunks(answer.body);
    return answer;
}

HttpAnswer Ask(int port, const std::string& path, const std::string& method, const std::string& moreHeaders) {
    return AnswerIn(RawHttp(port, method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                                      "\r\n" + moreHeaders + "\r\n"));
}
