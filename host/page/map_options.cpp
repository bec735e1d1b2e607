#include "host/page/map_options.h"

#include <CLI/App.hpp>

namespace host {

void AddMapOptions(CLI::App& command, MapOptions& options) {
    command.add_option("--title", options.title, "Title of the page")->type_name("TEXT");
    auto* tiles = command
                      .add_option("--tiles", options.tiles,
                                  "Map in the background, from a server: https://host/{z}/{x}/{y}.png")
                      ->type_name("URL")
                      ->check(CLI::Validator(CheckTilesUrl, ""));
    command.add_option("--attribution", options.attribution, "Whose map that is; shown with it")
        ->type_name("TEXT")
        ->needs(tiles);
}

std::optional<Tiles> TilesOf(const MapOptions& options) {
    if (options.tiles.empty()) return std::nullopt;
    return Tiles{options.tiles, options.attribution};
}

}  // namespace host
