// Shows how the recording goes on standard error: on a terminal one line that is written over, elsewhere a line
// a minute while a receiver is at work, and nothing for files. What it says: host/recording/status.h.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "host/recording/status.h"

namespace host {

class StatusLine {
 public:
    // `command`: who speaks, in front of what is said. `plainPause`: between lines where there is no terminal.
    explicit StatusLine(std::string command, std::chrono::milliseconds plainPause = std::chrono::minutes(1));
    ~StatusLine();  // clears the line
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    // Cheap to call for every fix: `status` is asked for ten times a second at most.
    void Show(bool isLive, const std::function<Status()>& status);

    void Say(const std::string& message);  // what goes wrong: "qtrace record: MESSAGE", for good

    void Clear();

 private:
    using Clock = std::chrono::steady_clock;

    void Draw(const std::string& text);

    std::string m_command;
    bool m_isTerminal;
    std::chrono::milliseconds m_pause;
    bool m_isDrawn = false;
    Clock::time_point m_begin, m_next;
};

}  // namespace host
