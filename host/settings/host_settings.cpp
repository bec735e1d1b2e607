#include "host/settings/host_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include <CLI/App.hpp>

#include "host/settings/device_path.h"
#include "host/text/choice.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

const std::map<std::string, EnumStoreTrack> kPlaces = {
    {"device", StoreTrkDevice}, {"card", StoreTrkSdCard}, {"auto", StoreTrkAuto}};

// Only the library knows which pages there are, so the answer is whether it takes this one.
std::string CheckCodePage(const std::string& number) {
    unsigned page = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), page);
    const bool good = read.ec == std::errc() && *read.ptr == 0 && SetAnsiCodePage(page);
    return good ? "" : "code page " + number + " is not known";
}

std::string CheckDevice(const std::string& folder) {
    return folder.empty() ? "the device folder needs a name" : "";
}

std::string CheckFolder(const std::string& folder) {
    const std::filesystem::path path = PathOf(folder);
    const bool good = !path.empty() && !path.has_root_path() && folder.find('\\') == std::string::npos &&
                      std::none_of(path.begin(), path.end(), [](const auto& step) {
                          return step.empty() || step == "." || step == "..";
                      });
    return good ? "" : folder + " does not lie below the device folder";
}

void SetFolders(CTrackMangSet& library, const HostSettings& settings) {
    std::string userData = kUserDataFolder, tracks = DevicePath(settings.tracks);
    library.SetNdUserDataPath(userData.data());
    library.SetNdExtTrackPath(tracks.data());
    library.SetNdTmpTrackAutoSavePath(tracks.data());
    library.SetbHasSdCard(settings.card);
    if (!settings.card) return;
    std::string cardTracks = DevicePath(settings.cardTracks);
    library.SetSdUserDataPath(cardTracks.data());
    library.SetSdExtTrackPath(cardTracks.data());
    library.SetSdTmpTrackAutoSavePath(cardTracks.data());
}

}  // namespace

void AddSettings(CLI::App& app, HostSettings& settings) {
    settings.device = Utf8Of(DefaultDeviceFolder());
    const auto add = [&app](const std::string& name, auto& value, const std::string& help) {
        return app.add_option(name, value, help)->group("Settings")->capture_default_str();
    };
    auto* device = add("--device", settings.device, "Folder of the recording and the saved tracks")
                       ->type_name("DIR")
                       ->check(CLI::Validator(CheckDevice, ""));
    if (settings.device.empty()) device->required();  // there is no home folder
    add("--tracks", settings.tracks, "Folder of the saved tracks in it")
        ->type_name("DIR")
        ->check(CLI::Validator(CheckFolder, ""));
    app.add_flag("--card,!--no-card", settings.card, "The storage card is there")
        ->group("Settings")
        ->default_str(settings.card ? "true" : "false");
    add("--card-tracks", settings.cardTracks, "Folder of the saved tracks on the card")
        ->type_name("DIR")
        ->check(CLI::Validator(CheckFolder, ""));
    AddChoice(app, "--storage", settings.storage, kPlaces, "device|card|auto", "Where new tracks go")
        ->group("Settings");
    add("--color", settings.color, "Color of new tracks")
        ->type_name("RRGGBB")
        ->check(CLI::Validator(CheckColor, ""));
    add("--code-page", settings.codePage, "Code page of names and paths")
        ->type_name("NUMBER")
        ->check(CLI::Validator(CheckCodePage, ""));
}

CTrackMan& ApplySettings(const HostSettings& settings) {
    SetAnsiCodePage(settings.codePage);
    const std::string program = kProgramFolder;
    SetDeviceRoot(Utf8Of(DeviceFolder(settings).Root()));
    SetProgramFolder(std::wstring(program.begin(), program.end()));
    CTrackMan& manager = *CTrackMan::Instance();
    CTrackMangSet& library = *manager.GetTrackMangSet();
    SetFolders(library, settings);
    library.SetStoreTrkPlace(settings.storage);
    library.SetTrackDefaultColor(ColorValue(settings.color));
    library.SetTrackRecordMode(settings.record.mode, settings.record.distance, settings.record.time);
    library.SetTrackOverWriteMode(settings.record.overwrite);
    CTrack::SetDefaultColor(ColorValue(settings.color));
    return manager;
}

std::string CheckColor(const std::string& color) {
    const std::size_t begin = color.starts_with('#') ? 1 : 0;
    const bool good = color.size() == begin + 6 &&
                      color.find_first_not_of("0123456789abcdefABCDEF", begin) == std::string::npos;
    return good ? "" : color + " is no color like 0000ff";
}

unsigned ColorValue(const std::string& color) {
    unsigned rgb = 0;
    std::from_chars(color.data() + (color.starts_with('#') ? 1 : 0), color.data() + color.size(), rgb, 16);
    return (rgb & 0xff) << 16 | (rgb & 0xff00) | rgb >> 16;
}

std::string ColorText(unsigned long value) {
    const std::array<unsigned long, 3> parts = {value & 0xff, value >> 8 & 0xff, value >> 16 & 0xff};
    std::string text = "#";
    for (const unsigned long part : parts)
        for (const unsigned long digit : {part / 16, part % 16}) text += "0123456789abcdef"[digit];
    return text;
}

}  // namespace host
