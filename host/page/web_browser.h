// The user's browser.
#pragma once

#include <string>

namespace host {

// Asks the desktop to show a page; does not wait for it. False when there is nothing to ask.
bool OpenInBrowser(const std::string& url);

}  // namespace host
