#include "host/page/page_server.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <functional>
#include <semaphore>
#include <string_view>

#include "host/page/closable_server.h"
#include "host/page/event_stream.h"
#include "host/text/json.h"

namespace host {
namespace {

using std::chrono::milliseconds;

constexpr auto kLookAtFolders = milliseconds(1000);
constexpr auto kSignOfLife = milliseconds(2000);    // a listener that went away is noticed by then
constexpr auto kBetweenEvents = milliseconds(150);  // points that come faster travel together

// Holds back the next connection while all threads are busy; the system lets a few wait. When the server is
// closed, the threads come free, and so nothing is held back for long.
class Connections : public httplib::TaskQueue {
 public:
    void enqueue(std::function<void()> connection) override {
        m_free.acquire();
        m_threads.enqueue([this, connection = std::move(connection)] {
            connection();
            m_free.release();
        });
    }
    void shutdown() override { m_threads.shutdown(); }

 private:
    std::counting_semaphore<> m_free{PageServer::kMostConnections};
    httplib::ThreadPool m_threads{PageServer::kMostConnections};
};

// A port that somebody listens on already is refused, also when that is ourselves.
void ReuseAddressOnly(socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

std::string Lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

constexpr int kUsualPort = 80;  // browsers leave it out

bool IsOurHost(const std::string& host, int port) {
    const std::string suffix = ':' + std::to_string(port);
    const std::array<std::string, 3> ours = {"127.0.0.1", "localhost", "[::1]"};
    return std::any_of(ours.begin(), ours.end(), [&](const std::string& name) {
        return Lower(host) == name + suffix || (port == kUsualPort && Lower(host) == name);
    });
}

bool IsOurOwn(const httplib::Request& request, int port) {
    if (request.get_header_value_count("Host") != 1 || !IsOurHost(request.get_header_value("Host"), port))
        return false;
    if (!request.has_header("Origin")) return true;
    const std::string origin = request.get_header_value("Origin");
    constexpr std::string_view kScheme = "http://";
    return request.get_header_value_count("Origin") == 1 && origin.starts_with(kScheme) &&
           IsOurHost(origin.substr(kScheme.size()), port);
}

void Refuse(httplib::Response& response, int status, const std::string& why) {
    response.status = status;
    response.set_content(why + '\n', "text/plain; charset=utf-8");
}

// Handed out by pieces, since the library would else spend a second on packing it for the way to the same
// machine.
void Send(httplib::Response& response, std::shared_ptr<const std::string> text, const char* type) {
    response.set_content_provider(text->size(), type,
                                  [text](std::size_t at, std::size_t count, httplib::DataSink& sink) {
                                      return sink.write(text->data() + at, std::min<std::size_t>(count, 65536));
                                  });
}

void SendJson(httplib::Response& response, const Json& json) {
    auto text = std::make_shared<std::string>(json.dump(-1, ' ', false, Json::error_handler_t::replace));
    Send(response, std::move(text), "application/json");
}

httplib::Headers SafeHeaders() {
    return {{"Cache-Control", "no-store"},
            {"X-Content-Type-Options", "nosniff"},
            {"X-Frame-Options", "DENY"},
            {"Referrer-Policy", "no-referrer"},
            {"Cross-Origin-Opener-Policy", "same-origin"},
            {"Cross-Origin-Resource-Policy", "same-origin"}};
}

}  // namespace

struct PageServer::Http {
    ClosableServer server;
    std::shared_ptr<const std::string> page;
    std::string policy;
    std::string color;
    std::atomic<int> listeners{0};

    void Answer(const httplib::Request& request, httplib::Response& response, int port, TrackIndex& index,
                LiveFeed& feed);
    void SendPoints(const std::string& id, httplib::Response& response, TrackIndex& index) const;
    void SendEvents(const httplib::Request& request, httplib::Response& response, LiveFeed& feed);
};

PageServer::PageServer(TrackIndex& index, LiveFeed& feed, const PageOptions& options, const std::string& color)
    : m_index(index), m_feed(feed), m_http(std::make_unique<Http>()) {
    m_http->page = std::make_shared<std::string>(WebPage(options, Json::array()));
    m_http->policy = PagePolicy(options) + "; frame-ancestors 'none'";
    m_http->color = color;
    httplib::Server& server = m_http->server;
    server.new_task_queue = [] { return new Connections; };
    server.set_socket_options(ReuseAddressOnly);
    server.set_default_headers(SafeHeaders());
    server.set_keep_alive_timeout(1);  // an idle connection holds a thread
    server.set_read_timeout(2);
    server.set_write_timeout(5);
    server.set_payload_max_length(0);
    server.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        m_http->Answer(request, response, m_port, m_index, m_feed);
        return httplib::Server::HandlerResponse::Handled;
    });
}

PageServer::~PageServer() {
    m_feed.Close();
    if (m_watching.joinable()) m_watching.join();
    m_http->server.Close();
    if (m_listening.joinable()) m_listening.join();
}

std::optional<std::string> PageServer::Start(int port) {
    errno = 0;
    const int bound = port == 0 ? m_http->server.bind_to_any_port("127.0.0.1")
                                : (m_http->server.bind_to_port("127.0.0.1", port) ? port : -1);
    if (bound <= 0) {
        const std::string why = errno == 0 ? "" : std::string(": ") + std::strerror(errno);
        return "port " + std::to_string(port) + " of 127.0.0.1 cannot be used" + why;
    }
    m_port = bound;
    m_index.Refresh();
    m_listening = std::thread([this] { m_http->server.listen_after_bind(); });
    m_watching = std::thread([this] { Watch(); });
    while (!m_http->server.is_running()) std::this_thread::yield();  // a stop before that would be lost
    return std::nullopt;
}

std::string PageServer::Url() const { return "http://127.0.0.1:" + std::to_string(m_port) + '/'; }

void PageServer::Watch() {
    while (!m_feed.IsClosedWithin(kLookAtFolders))
        if (m_index.Refresh()) m_feed.LibraryChanged();
}

void PageServer::Http::Answer(const httplib::Request& request, httplib::Response& response, int port,
                              TrackIndex& index, LiveFeed& feed) {
    constexpr std::string_view kTracks = "/api/tracks/", kPoints = "/points";
    const std::string& path = request.path;
    if (!IsOurOwn(request, port)) return Refuse(response, 403, "this page is for this machine alone");
    if (request.method != "GET" && request.method != "HEAD") {
        response.set_header("Allow", "GET, HEAD");
        return Refuse(response, 405, "this page only reads");
    }
    if (path == "/") {
        response.set_header("Content-Security-Policy", policy);
        return Send(response, page, "text/html; charset=utf-8");
    }
    if (path == "/api/tracks") return SendJson(response, {{"tracks", index.List()}});
    if (path == "/events") return SendEvents(request, response, feed);
    if (path.starts_with(kTracks) && path.ends_with(kPoints) && path.size() > kTracks.size() + kPoints.size())
        return SendPoints(path.substr(kTracks.size(), path.size() - kTracks.size() - kPoints.size()), response,
                          index);
    Refuse(response, 404, "there is nothing here");
}

void PageServer::Http::SendPoints(const std::string& id, httplib::Response& response, TrackIndex& index) const {
    const auto track = index.Read(id);
    if (!track) return Refuse(response, 404, "there is no such track");
    SendJson(response,
             {{"statistics", StatisticsJson(track->statistics)}, {"points", DrawnPointsJson(track->drawn)}});
}

void PageServer::Http::SendEvents(const httplib::Request& request, httplib::Response& response,
                                  LiveFeed& feed) {
    if (listeners.fetch_add(1) >= kMostListeners) {
        --listeners;
        response.set_header("Retry-After", "2");
        return Refuse(response, 503, "too many pages are open");
    }
    const auto place = std::make_shared<FeedPlace>(PlaceOf(request.get_header_value("Last-Event-ID")));
    const auto next = [this, &feed, place](std::size_t, httplib::DataSink& sink) {
        const FeedNews news = feed.WaitForNews(*place, kSignOfLife);
        *place = news.place;
        const std::string text = EventText(news, color);
        if (news.isClosed || !sink.write(text.data(), text.size())) return false;
        feed.IsClosedWithin(kBetweenEvents);
        return true;
    };
    response.set_chunked_content_provider("text/event-stream", next, [this](bool) { --listeners; });
}

}  // namespace host
