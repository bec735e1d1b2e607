#include "host/settings/usage_message.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include <CLI/App.hpp>

#include "host/settings/command_line.h"
#include "host/text/display_width.h"

namespace host {
namespace {

// How many letters must be put in, taken out or exchanged to make one word of the other: a row of the table of
// all beginnings at a time.
std::size_t EditsBetween(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = std::exchange(row[j + 1], std::min({row[j] + 1, row[j + 1] + 1, exchanged}));
        }
    }
    return row.back();
}

// The first word that the program knows nothing about is meant as a command.
std::string WhatIsWrong(const CLI::App& app, const CLI::Error& problem) {
    const std::vector<std::string> unknown = app.remaining();
    if (!app.get_subcommands().empty() || unknown.empty()) return problem.what();
    const std::string& word = unknown.front();
    return word.starts_with('-') ? "no such option " + word : NoSuchCommand(app, word);
}

}  // namespace

std::string NoSuchCommand(const CLI::App& app, const std::string& name) {
    constexpr std::size_t kNear = 2;
    std::size_t least = std::min(kNear + 1, name.size());
    std::string nearest;
    for (const CLI::App* command : CommandsOf(app)) {
        const std::size_t edits = EditsBetween(name, command->get_name());
        if (edits < least) nearest = command->get_name();
        least = std::min(least, edits);
    }
    return "no such command " + name + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

std::string UsageMessage(const CLI::App* app, const CLI::Error& problem) {
    std::string called = app->get_name();
    for (const CLI::App* command : app->get_subcommands()) called += ' ' + command->get_name();
    return called + ": " + Printable(WhatIsWrong(*app, problem)) + "\nRun with --help for more information.\n";
}

}  // namespace host
