// same_bytes: a drive recorded, saved and exported, whose files are the same bytes in every build.
//
//   same_bytes write FOLDER    makes Log.dat, LogHd.dat, track.bin and the GPX files in FOLDER\App
//   same_bytes read FOLDER     opens files that any build made, and prints what it finds in them
//
// scripts/compare-builds runs it. Every figure of a fix comes from whole numbers, so that all builds feed the
// same bits.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/file.h"
#include "qtrace.h"
#include "tests/support/machine.h"

namespace {

constexpr int kFixes = 12000;        // more than the ring holds
constexpr int kFixesOfTrack = 9000;  // no more than a record stream holds
constexpr const char* kTrackFolder = "\\App\\Track";

// A winding drive with stops, a pause now and then, and every field in use.
TckPt Fix(int i) {
    TckPt fix{};
    fix.dLatitude = 47.0 + (i * 7 + i * i % 113) / 131072.0;
    fix.dLongitude = 8.0 + (i * 5 - i * i % 97) / 131072.0;
    fix.dAltitude = 400.0 + i % 911 / 4.0;
    fix.dSpeed = i % 50 < 3 ? 0.0 : 5.0 + i % 40 / 2.0;
    fix.lTime = 1700000000 + i * 2 + i / 3000 * 7200;
    fix.fCourse = static_cast<float>(i * 11 % 360);
    return fix;
}

void SetUp(const std::string& folder) {
    SetDeviceRoot(folder);
    SetProgramFolder(L"\\App");
    std::string track = kTrackFolder;
    CTrackMangSet& settings = *CTrackMangSet::Instance();
    settings.SetNdUserDataPath(track.data());
    settings.SetNdExtTrackPath(track.data());
    settings.SetNdTmpTrackAutoSavePath(track.data());
    CTrackMan::Instance()->SetIsHasEnoughSpaceCallFun([](bool) { return true; });
}

// Waits for the list of tracks.
void Load() {
    CTrackMan& library = *CTrackMan::Instance();
    library.LoadData();
    while (library.IsLoadingDataToMap()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void Record() {
    CTrackMan& library = *CTrackMan::Instance();
    Load();
    library.Start();
    for (int i = 0; i < kFixes; ++i) library.SaveToTempTrack(Fix(i));
    library.Stop();
}

CTrack Whole() {
    CTrack track;
    track.SetName("\xB3\xA4\xB3\xC7");  // two Chinese characters
    for (int i = 0; i < kFixesOfTrack; ++i) track.AppendPt(Fix(i), false);
    track.Calculate(true);
    return track;
}

void SaveInEveryForm() {
    CTrack track = Whole();
    track.Save(std::string(kTrackFolder) + "\\whole.gpx");
    std::FILE* stream = platform::fopen("\\App\\track.bin", "wb+");
    track.Save(stream);
    platform::fclose(stream);
}

void PrintTrack(const char* what, CTrack& track) {
    double latitude = 0, longitude = 0;
    for (const TckPt& point : track.GetPtList()) {
        latitude += point.dLatitude;
        longitude += point.dLongitude;
    }
    std::printf("%s: %lu points, %a %a, length %a, area %a\n", what,
                static_cast<unsigned long>(track.GetPtCount()), latitude, longitude,
                static_cast<double>(track.GetLength()), static_cast<double>(track.GetArea()));
}

void Read() {
    CTrackMan& library = *CTrackMan::Instance();
    Load();
    PrintTrack("recording", *library.GetLogTrack());
    for (unsigned long i = 0; i < library.GetCnt(); ++i) {
        CTrackProxy& proxy = *library.GetTrack(i);
        std::printf("%s: length %a, area %a, from %d to %d\n", proxy.GetName().c_str(),
                    static_cast<double>(proxy.GetLength()), static_cast<double>(proxy.GetArea()),
                    static_cast<int>(proxy.GetStartTime()), static_cast<int>(proxy.GetEndTime()));
    }
    CTrack whole, stored;
    std::FILE* stream = platform::fopen("\\App\\track.bin", "rb");
    stored.Load(stream);
    platform::fclose(stream);
    PrintTrack("record stream", stored);
    whole.Load(std::string(kTrackFolder) + "\\whole.gpx");
    PrintTrack("document", whole);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const std::string action = arguments[1];
    if (action == "write") std::filesystem::create_directories(FromUtf8(arguments[2]) / "App");
    SetUp(arguments[2]);
    if (action == "write") {
        Record();
        SaveInEveryForm();
    } else {
        Read();
    }
    delete CTrackMan::Instance();
}
