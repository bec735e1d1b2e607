// A library of stored tracks on a device of its own: folders, settings, room on the media, and a card to
// insert. Documents as text: tests/library/gpx_text.h. Private operations: tests/library/inside.h.
#pragma once

#include <ctime>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "library/track_manager.h"
#include "tests/library/gpx_text.h"
#include "tests/library/inside.h"
#include "tests/support/device.h"
#include "tests/support/machine.h"

using Points = std::vector<TckPt, je_allocator<TckPt>>;

class LibraryTest : public DeviceTest {
 protected:
    LibraryTest() {
        Settings().Init();
        Settings().SetNdUserDataPath(Text("\\App\\UserData"));
        Settings().SetNdExtTrackPath(Text("\\App\\UserData\\Track"));
        Settings().SetNdTmpTrackAutoSavePath(Text("\\App\\UserData\\AutoSave"));
        TakeUpLibrary();
    }

    ~LibraryTest() override {
        delete CTrackMan::Instance();
        Settings().Init();
        Settings().SetNdUserDataPath(Text("\\"));
        Settings().SetNdExtTrackPath(Text("\\"));
        for (auto set : {&CTrackMangSet::SetNdTmpTrackAutoSavePath, &CTrackMangSet::SetSdUserDataPath,
                         &CTrackMangSet::SetSdExtTrackPath, &CTrackMangSet::SetSdTmpTrackAutoSavePath})
            (Settings().*set)(Text(""));
        CTrack::SetDefaultColor(0x00FF0000);
    }

    static CTrackMan& Library() { return *CTrackMan::Instance(); }
    static CTrackMangSet& Settings() { return *CTrackMangSet::Instance(); }

    // The program ends and is started again.
    void Restart() {
        delete CTrackMan::Instance();
        TakeUpLibrary();
    }

    // Loads the library from storage and waits for it.
    static void Load() {
        Library().LoadData();
        WaitUntilLoaded();
    }
    static void WaitUntilLoaded() {
        for (int i = 0; Library().IsLoadingDataToMap(); ++i) {
            if (i == 60000) throw std::runtime_error("the library does not get loaded");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    void InsertCard() {
        std::filesystem::create_directories(OnDisk("\\SDMMC"));
        Settings().SetSdUserDataPath(Text("\\SDMMC\\UserData"));
        Settings().SetSdExtTrackPath(Text("\\SDMMC\\UserData\\Track"));
        Settings().SetSdTmpTrackAutoSavePath(Text("\\SDMMC\\UserData\\AutoSave"));
        Settings().SetbHasSdCard(true);
    }

    static std::string PathOf(const std::string& file) { return "\\App\\UserData\\Track\\" + file + ".gpx"; }
    static std::string OnCard(const std::string& file) { return "\\SDMMC\\UserData\\Track\\" + file + ".gpx"; }

    // A document in the device's folder of saved tracks.
    void Store(const std::string& file, const StoredTrack& track = {}) const {
        Write(PathOf(file), TextOf(track));
    }
    StoredTrack Stored(const std::string& file) const { return ReadBack(BytesOf(PathOf(file))); }

    void SetWritten(const std::string& devicePath, std::int64_t seconds) const {
        SetLastWriteTime(OnDisk(devicePath), seconds);
    }

    // Files of a folder, with their extension, by name.
    std::vector<std::string> FilesIn(const std::string& folder) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(OnDisk(folder)))
            names.insert(ToUtf8(entry.path().filename()));
        return {names.begin(), names.end()};
    }

    // A handle of its own, not in the library's list.
    static std::unique_ptr<CTrackProxy> Handle(const std::string& file) {
        return std::make_unique<CTrackProxy>(PathOf(file).c_str());
    }

    // Lists a handle that has a display name and no file.
    static CTrackProxy* List(const std::string& name) {
        auto proxy = std::make_unique<CTrackProxy>();
        proxy->SetName(name.c_str());
        return TrackManInside::List(Library(), std::move(proxy));
    }

    static std::vector<std::string> DisplayNames() {
        std::vector<std::string> names;
        for (unsigned long i = 0; i < Library().GetCnt(); ++i)
            names.push_back(Library().GetTrack(i)->GetName());
        return names;
    }

    // A track in memory: a right angle of about 111 m each way near the equator.
    static CTrack NewTrack(const std::string& name) {
        CTrack track;
        track.SetName(name.c_str());
        for (const auto& [latitude, longitude, time] :
             {std::tuple{0.0, 0.0, 1000}, {0.001, 0.0, 1010}, {0.001, 0.001, 1020}}) {
            TckPt fix{};
            fix.dLatitude = latitude;
            fix.dLongitude = longitude;
            fix.lTime = time;
            track.AppendPt(fix, false);
        }
        return track;
    }

    // Room on the media, as the host answers it.
    inline static bool s_roomInDevice = true;
    inline static bool s_roomOnCard = true;

 private:
    static char* Text(const std::string& text) {
        s_text = text;
        return s_text.data();
    }
    static void TakeUpLibrary() {
        s_roomInDevice = true;
        s_roomOnCard = true;
        Library().SetIsHasEnoughSpaceCallFun(
            [](bool onCard) { return onCard ? s_roomOnCard : s_roomInDevice; });
    }

    inline static std::string s_text;

    const TimeZone m_zone{"TST-05:45"};  // so that a local time is no UTC
};

// The local clock as "2014-05-01 140509", by the C library.
inline std::string LocalTimeText() {
    const std::tm now = LocalTime(Now());
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H%M%S", &now);
    return text;
}
