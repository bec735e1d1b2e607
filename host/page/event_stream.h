// The events of a live page as text/event-stream: "track" (the recording so far), "points" (behind it),
// "status", "library" (fetch the list anew). Each carries the place behind it as its id, with which a page that
// lost the connection resumes.
#pragma once

#include <optional>
#include <string>

#include "host/page/live_feed.h"

namespace host {

// `color`: of the recording, "#rrggbb". Empty news are a comment that keeps the connection alive.
std::string EventText(const FeedNews& news, const std::string& color);

// The place in a Last-Event-ID; a fresh listener's for anything else.
FeedPlace PlaceOf(const std::string& eventId);

}  // namespace host
