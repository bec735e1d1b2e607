// `qtrace serve`: the saved tracks as a page that stays up to date, for this machine alone.
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/page/live_feed.h"
#include "host/page/map_options.h"
#include "host/page/page_server.h"
#include "host/page/track_index.h"
#include "host/page/web_browser.h"
#include "host/program.h"
#include "host/recording/stop_signals.h"

namespace host {
namespace {

struct Arguments {
    int port = kUsualPort;
    bool open = false;
    MapOptions options;
};

int Serve(const Arguments& arguments, const HostSettings& settings) {
    StopSignals stop;  // before the server's threads
    ApplySettings(settings);
    TrackIndex index(settings);
    LiveFeed feed;
    const std::string title = arguments.options.title.empty() ? "Tracks" : arguments.options.title;
    PageServer server(index, feed, {title, true, TilesOf(arguments.options)}, settings.color);
    if (const auto problem = server.Start(arguments.port)) return Fail("serve", *problem);
    std::cout << "serving " << server.Url() << " until Ctrl-C" << std::endl;
    if (arguments.open && !OpenInBrowser(server.Url())) Fail("serve", "no browser could be started");
    while (stop.Sleep(std::chrono::hours(1))) continue;
    return kDone;
}

}  // namespace

void AddServeCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "serve", "Show the saved tracks as a live page");
    command.footer(
        "The page is for the programs of this machine: it is served on 127.0.0.1 alone, it only reads, and\n"
        "it answers no page from elsewhere.");
    command.add_option("--port", arguments->port, "Port to serve on; 0 takes a free one")
        ->check(CLI::Range(0, 65535).description(""))
        ->capture_default_str();
    command.add_flag("--open", arguments->open, "Open the page in the browser");
    AddMapOptions(command, arguments->options);
    command.callback([arguments, &program] { program.exitCode = Serve(*arguments, program.settings); });
}

}  // namespace host
