// A client that sends exactly the bytes it is told to, for tests of servers of this machine. Every wait is
// bounded.
#pragma once

#include <functional>
#include <string>
#include <string_view>

// What came back on one connection, until the server closed it, `until` was satisfied or the time was up.
std::string RawHttp(int port, const std::string& request,
                    const std::function<bool(const std::string&)>& until = nullptr, int seconds = 20);

struct HttpAnswer {
    int status = 0;          // 0: none
    std::string head, body;  // the body without the framing of its chunks
};

// A request as browsers send it, with the server's own name as Host.
HttpAnswer Ask(int port, const std::string& path, const std::string& method = "GET",
               const std::string& moreHeaders = "");
HttpAnswer AnswerIn(const std::string& bytes);

// A connection that stays open while it lives.
class OpenConnection {
 public:
    OpenConnection(int port, const std::string& request);
    ~OpenConnection();
    OpenConnection(const OpenConnection&) = delete;
    OpenConnection& operator=(const OpenConnection&) = delete;
    void Send(std::string_view bytes);  // as many as are taken
    // Reads on until `until` holds for all that came so far.
    std::string ReadUntil(const std::function<bool(const std::string&)>& until, int seconds = 20);

 private:
    int m_socket;
    std::string m_read;
};
