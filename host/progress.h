// One line on the terminal that is written over while fixes are read; nothing where standard error is no
// terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace host {

struct ProgressState {
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> size;  // of the input, when it is known
    std::uint64_t fixes = 0;
    std::uint64_t points = 0;  // written to the recording's files
    long time = 0;             // of the newest recorded fix [s since 1970]
};

class Progress {
 public:
    Progress();
    ~Progress();  // clears the line
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Cheap to call for every fix: draws ten times a second at most.
    void Show(const ProgressState& state);

 private:
    bool m_isTerminal;
    bool m_drawn = false;
    std::chrono::steady_clock::time_point m_next;
};

}  // namespace host
