// `qtrace serve`: what its server answers, and what it refuses.
#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "host/page/page_server.h"
#include "host/text/json.h"
#include "tests/host/page_process.h"

namespace host {
namespace {

class ServeCommand : public PageTest {
 protected:
    void Start() {
        m_server = std::make_unique<Process>(Served("serve", {"--port", "0"}));
        m_port = Port();
        ASSERT_GT(m_port, 0) << ReadFile(Output());
    }
    HttpAnswer Request(const std::string& headers) const {
        return AnswerIn(RawHttp(m_port, "GET / HTTP/1.1\r\n" + headers + "\r\n"));
    }
    std::string OurName() const { return "127.0.0.1:" + std::to_string(m_port); }

    std::unique_ptr<Process> m_server;
    int m_port = 0;
};

TEST_F(ServeCommand, Page_ComesWithItsPolicy) {
    Start();
    const HttpAnswer page = Ask(m_port, "/");
    EXPECT_EQ(page.status, 200);
    EXPECT_TRUE(page.body.starts_with("<!DOCTYPE html>"));
    EXPECT_TRUE(page.body.ends_with("</html>\n"));
    for (const char* header : {"default-src 'none'", "connect-src 'self'", "frame-ancestors 'none'",
                               "X-Content-Type-Options: nosniff", "Referrer-Policy: no-referrer",
                               "Cross-Origin-Resource-Policy: same-origin", "Cache-Control: no-store"})
        EXPECT_NE(page.head.find(header), std::string::npos) << header;
}

TEST_F(ServeCommand, Tracks_AreListedAndRead) {
    Store("weg nach s\u00fcd", Way(47, 8, 20));
    Start();
    const Json list = Json::parse(Ask(m_port, "/api/tracks").body);
    ASSERT_EQ(list["tracks"].size(), 1u);
    EXPECT_EQ(list["tracks"][0]["id"], "weg nach s\u00fcd.gpx");
    const HttpAnswer points = Ask(m_port, "/api/tracks/weg%20nach%20s%C3%BCd.gpx/points");
    ASSERT_EQ(points.status, 200);
    EXPECT_EQ(Json::parse(points.body)["points"]["lat"].size(), 20u);
    EXPECT_EQ(Json::parse(points.body)["statistics"]["points"], 20);
}

TEST_F(ServeCommand, Head_HasNoBody) {
    Start();
    for (const char* path : {"/", "/api/tracks", "/events"}) {
        const HttpAnswer answer = Ask(m_port, path, "HEAD");
        EXPECT_EQ(answer.status, 200) << path;
        EXPECT_TRUE(answer.body.empty()) << path;
    }
}

TEST_F(ServeCommand, OtherMethods_AreRefused) {
    Start();
    for (const char* method : {"POST", "PUT", "DELETE", "PATCH", "OPTIONS", "TRACE"}) {
        const HttpAnswer answer = Ask(m_port, "/api/tracks", method, "Content-Length: 0\r\n");
        EXPECT_EQ(answer.status, 405) << method;
        EXPECT_NE(answer.head.find("Allow: GET, HEAD"), std::string::npos);
    }
}

TEST_F(ServeCommand, UnknownPathsAndTraversal_FindNothing) {
    Store("one", Way(47, 8, 20));
    WriteFile(m_device / "secret.gpx", ReadFile(File("one.gpx")));
    Start();
    for (const char* path :
         {"/x", "/index.html", "/api", "/api/tracks/", "/api/tracks//points", "/api/tracks/one.gpx",
          "/api/tracks/none.gpx/points", "/api/tracks/..%2f..%2fsecret.gpx/points",
          "/api/tracks/../../secret.gpx/points", "/api/tracks/..%5C..%5Csecret.gpx/points",
          "/api/tracks/%2e%2e/points", "/api/tracks/one.gpx%00/points", "/App/Log.dat", "//", "/%2f"})
        EXPECT_EQ(Ask(m_port, path).status, 404) << path;
    EXPECT_EQ(Ask(m_port, "/api/tracks/one.gpx/points").status, 200);
}

TEST_F(ServeCommand, ForeignHost_IsRefused) {
    Start();
    const std::string port = std::to_string(m_port);
    for (const std::string& good : {OurName(), "localhost:" + port, "LOCALHOST:" + port, "[::1]:" + port})
        EXPECT_EQ(Request("Host: " + good + "\r\n").status, 200) << good;
    for (const std::string& bad : {std::string("evil.example"), "evil.example:" + port,
                                   std::string("127.0.0.1"), std::string("127.0.0.1:1"), std::string(""),
                                   "127.0.0.1:" + port + ".evil.example", "localhost.evil.example:" + port})
        EXPECT_EQ(Request("Host: " + bad + "\r\n").status, 403) << bad;
    EXPECT_EQ(Request("").status, 403);
    EXPECT_EQ(Request("Host: " + OurName() + "\r\nHost: evil.example\r\n").status, 403);
}

TEST_F(ServeCommand, ForeignOrigin_IsRefused) {
    Start();
    const std::string host = "Host: " + OurName() + "\r\n";
    EXPECT_EQ(Request(host + "Origin: http://" + OurName() + "\r\n").status, 200);
    EXPECT_EQ(Request(host + "Origin: http://localhost:" + std::to_string(m_port) + "\r\n").status, 200);
    for (const std::string& bad : {std::string("http://evil.example"), std::string("null"),
                                   "https://" + OurName(), "http://" + OurName() + ".evil.example"})
        EXPECT_EQ(Request(host + "Origin: " + bad + "\r\n").status, 403) << bad;
}

TEST_F(ServeCommand, Nonsense_DoesNotStopTheServer) {
    Start();
    RawHttp(m_port, "\r\n\r\n");
    RawHttp(m_port, std::string("\x16\x03\x01\x00\xff\r\n\r\n", 9));
    RawHttp(m_port, "GET " + std::string(100'000, 'a') + " HTTP/1.1\r\n\r\n");
    RawHttp(m_port, "GET / HTTP/1.1\r\n" + std::string(50'000, 'h') + ": x\r\n\r\n");
    { const OpenConnection halfSaid(m_port, "GET / HT"); }
    EXPECT_EQ(Ask(m_port, "/").status, 200);
}

TEST_F(ServeCommand, Events_TellWhenTheFolderChanges) {
    Start();
    OpenConnection events(m_port, Get(m_port, "/events"));
    events.ReadUntil(Has("event: library"));
    Store("new", Way(47, 8, 20));
    const auto toldTwice = [](const std::string& text) {
        return text.find("event: library", text.find("event: library") + 1) != std::string::npos;
    };
    EXPECT_TRUE(toldTwice(events.ReadUntil(toldTwice)));
    EXPECT_EQ(Json::parse(Ask(m_port, "/api/tracks").body)["tracks"][0]["name"], "new");
}

TEST_F(ServeCommand, ManyListeners_AreLimitedAndLeaveRoomForOthers) {
    Start();
    std::vector<std::unique_ptr<OpenConnection>> listeners;
    for (int i = 0; i < PageServer::kMostListeners; ++i) {
        listeners.push_back(std::make_unique<OpenConnection>(m_port, Get(m_port, "/events")));
        ASSERT_NE(listeners.back()->ReadUntil(Has("event: status")).find("200 OK"), std::string::npos);
    }
    EXPECT_EQ(Ask(m_port, "/events").status, 503);
    EXPECT_EQ(Ask(m_port, "/").status, 200);
    listeners.clear();
    EXPECT_TRUE(Eventually([&] {
        return RawHttp(m_port, Get(m_port, "/events"), Has("\r\n\r\n")).find(" 200 ") != std::string::npos;
    }));
}

TEST_F(ServeCommand, ManyIdleConnections_DoNotKeepOthersOutForGood) {
    Start();
    std::vector<std::unique_ptr<OpenConnection>> idle;
    for (int i = 0; i < PageServer::kMostConnections; ++i)
        idle.push_back(std::make_unique<OpenConnection>(m_port, ""));
    EXPECT_EQ(Ask(m_port, "/").status, 200);
}

TEST_F(ServeCommand, Stop_EndsOpenStreamsAndTheProgram) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Start();
        OpenConnection events(m_port, Get(m_port, "/events"));
        events.ReadUntil(Has("event: status"));
        m_server->Send(signal);
        const ProcessResult run = m_server->Wait(std::chrono::seconds(20));
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.signal, 0);
    }
}

// More of them than there are threads, so that one is held back; each sends a byte often enough to be waited
// for.
TEST_F(ServeCommand, Stop_DoesNotWaitForSlowClients) {
    Start();
    ASSERT_EQ(Ask(m_port, "/").status, 200);  // with its first request the server's library makes its tables
    std::vector<std::unique_ptr<OpenConnection>> slow;
    for (int i = 0; i < PageServer::kMostConnections + 2; ++i)
        slow.push_back(std::make_unique<OpenConnection>(m_port, "GET / HTTP/1.1\r\nSlow: "));
    std::atomic<bool> isOver = false;
    std::thread sender([&] {
        while (!isOver) {
            for (const auto& client : slow) client->Send("x");
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    m_server->Send(SIGTERM);
    const ProcessResult run = m_server->Wait(std::chrono::seconds(20));
    isOver = true;
    sender.join();
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.exitCode, 0) << run.err;
}

TEST_F(ServeCommand, PortThatIsTaken_FailsWithTheReason) {
    Start();
    const ProcessResult run = RunProcess(Command("serve", {"--port", std::to_string(m_port)}));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "qtrace serve: port " + std::to_string(m_port) +
                           " of 127.0.0.1 cannot be used: Address already in use\n");
    EXPECT_EQ(RunProcess(Command("serve", {"--port", "65536"})).exitCode, 2);
    EXPECT_EQ(RunProcess(Command("serve", {"x"})).exitCode, 2);
}

}  // namespace
}  // namespace host
