#include "host/progress.h"

#include <unistd.h>

#include <iostream>
#include <string>

#include "host/text.h"

namespace host {
namespace {

constexpr auto kPause = std::chrono::milliseconds(100);
constexpr const char* kLineStart = "\r\x1b[K";  // to the first column, clear to the end

std::string Share(const ProgressState& state) {
    if (!state.size || *state.size == 0) return "";
    return std::to_string(100 * state.bytes / *state.size) + " %  ";
}

}  // namespace

Progress::Progress() : m_isTerminal(isatty(STDERR_FILENO) != 0), m_next(std::chrono::steady_clock::now()) {}

Progress::~Progress() {
    if (m_drawn) std::cerr << kLineStart << std::flush;
}

void Progress::Show(const ProgressState& state) {
    if (!m_isTerminal || std::chrono::steady_clock::now() < m_next) return;
    std::cerr << kLineStart << Share(state) << Counted(state.fixes, "fix", "fixes") << "  "
              << Counted(state.points, "point", "points") << " on disk  " << UtcText(state.time) << std::flush;
    m_drawn = true;
    m_next = std::chrono::steady_clock::now() + kPause;
}

}  // namespace host
