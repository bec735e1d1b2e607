// No page is served here: host/windows/left_out.cpp.
#include "host/page/page_server.h"

namespace host {

struct PageServer::Http {};

PageServer::PageServer(TrackIndex& index, LiveFeed& feed, const PageOptions&, const std::string&)
    : m_index(index), m_feed(feed) {}

PageServer::~PageServer() = default;

std::optional<std::string> PageServer::Start(int) { return "no page is served here"; }

std::string PageServer::Url() const { return ""; }

}  // namespace host
