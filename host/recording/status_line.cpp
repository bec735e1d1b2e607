#include "host/recording/status_line.h"

#include <iostream>
#include <utility>

#include "host/text/display_width.h"
#include "host/text/terminal.h"

namespace host {
namespace {

constexpr auto kPause = std::chrono::milliseconds(100);
constexpr const char* kLineStart = "\r\x1b[K";  // to the first column, clear to the end

}  // namespace

StatusLine::StatusLine(std::string command, std::chrono::milliseconds plainPause)
    : m_command(std::move(command)),
      m_isTerminal(IsTerminalForMessages()),
      m_pause(m_isTerminal ? kPause : plainPause),
      m_begin(Clock::now()),
      m_next(m_isTerminal ? m_begin : m_begin + plainPause) {}

StatusLine::~StatusLine() { Clear(); }

void StatusLine::Clear() {
    if (std::exchange(m_isDrawn, false)) std::cerr << kLineStart << std::flush;
}

void StatusLine::Show(bool isLive, const std::function<Status()>& status) {
    const Clock::time_point now = Clock::now();
    if (now < m_next || (!m_isTerminal && !isLive)) return;
    const double elapsed = std::chrono::duration<double>(now - m_begin).count();
    const std::string text = isLive ? LiveText(status()) : FileText(status(), elapsed);
    if (m_isTerminal)
        Draw(text);
    else
        std::cerr << text + '\n';
    m_next = now + m_pause;
}

// The last column stays free: some terminals wrap as soon as it is filled.
void StatusLine::Draw(const std::string& text) {
    std::cerr << kLineStart + CutToWidth(text, WidthOfMessages() - 1) << std::flush;
    m_isDrawn = true;
}

void StatusLine::Say(const std::string& message) {
    Clear();
    std::cerr << "qtrace " + m_command + ": " + Printable(message) + '\n' << std::flush;
}

}  // namespace host
