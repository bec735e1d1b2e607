// What `map` and `serve` let the user say of their page.
#pragma once

#include <optional>
#include <string>

#include "host/page/web_page.h"
#include "host/settings/cli_names.h"

namespace host {

struct MapOptions {
    std::string title;
    std::string tiles;  // URL with {z}, {x} and {y}; empty: no map in the background
    std::string attribution;
};

void AddMapOptions(CLI::App& command, MapOptions& options);
std::optional<Tiles> TilesOf(const MapOptions& options);

}  // namespace host
