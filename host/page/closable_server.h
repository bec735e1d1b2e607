// The HTTP server library's server, with connections that can be ended from outside: its own ones end when the
// client likes, and one that sends a byte now and then would keep the program from stopping. What is served:
// host/page/page_server.h.
#pragma once

#include <mutex>
#include <set>

#include <httplib.h>

namespace host {

class ClosableServer : public httplib::Server {
 public:
    // Stops listening and ends every connection, those that wait for a thread as well. Any thread, but not
    // before is_running().
    void Close();

 private:
    // One request, if the first byte of one comes in time; then the connection is over. The library calls it on
    // a thread of its own for each connection.
    bool process_and_close_socket(socket_t socket) override;

    bool Enter(socket_t socket);
    void CloseSocket(socket_t socket);

    std::mutex m_mutex;
    std::set<socket_t> m_open;
    bool m_isClosed = false;
};

}  // namespace host
