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
constexpr int kFixesOfRing = 10000;
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

// Waits for the list of tracks; false when it does not come in a minute.
bool Load() {
    using namespace std::chrono;
    CTrackMan& library = *CTrackMan::Instance();
    const auto end = steady_clock::now() + minutes(1);
    library.LoadData();
    while (library.IsLoadingDataToMap() && steady_clock::now() < end)
        std::this_thread::sleep_for(milliseconds(1));
    return !library.IsLoadingDataToMap();
}

bool Record() {
    CTrackMan& library = *CTrackMan::Instance();
    if (!Load()) return false;
    library.Start();
    for (int i = 0; i < kFixes; ++i) library.SaveToTempTrack(Fix(i));
    library.Stop();
    return true;
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

// All that the ring holds, in order.
CTrack Recording() {
    CTrackEx& recording = *CTrackMan::Instance()->GetLogTrack();
    CTrack all;
    for (int i = 0; i < recording.GetSliceNum(); ++i)
        for (const TckPt& point : recording.GetSliceTrace(i)->GetPtList()) all.AppendPt(point, false);
    return all;
}

CTrack RecordStream() {
    CTrack track;
    std::FILE* stream = platform::fopen("\\App\\track.bin", "rb");
    track.Load(stream);
    platform::fclose(stream);
    return track;
}

CTrack Document() {
    CTrack track;
    track.Load(std::string(kTrackFolder) + "\\whole.gpx");
    return track;
}

// False for another number of points than was written.
bool PrintTrack(const char* what, CTrack track, int count) {
    double latitude = 0, longitude = 0, altitude = 0;
    for (const TckPt& point : track.GetPtList()) {
        latitude += point.dLatitude;
        longitude += point.dLongitude;
        altitude += point.dAltitude;
    }
    std::printf("%s: %lu points, %a %a %a, length %a, area %a\n", what,
                static_cast<unsigned long>(track.GetPtCount()), latitude, longitude, altitude,
                static_cast<double>(track.GetLength()), static_cast<double>(track.GetArea()));
    return track.GetPtCount() == static_cast<decltype(track.GetPtCount())>(count);
}

void PrintTracks() {
    CTrackMan& library = *CTrackMan::Instance();
    for (unsigned long i = 0; i < library.GetCnt(); ++i) {
        CTrackProxy& proxy = *library.GetTrack(i);
        std::printf("%s: length %a, area %a, from %d to %d\n", proxy.GetName().c_str(),
                    static_cast<double>(proxy.GetLength()), static_cast<double>(proxy.GetArea()),
                    static_cast<int>(proxy.GetStartTime()), static_cast<int>(proxy.GetEndTime()));
    }
}

// False unless everything was found that was written: two builds that read nothing agree as well.
bool Read() {
    if (!Load()) return false;
    PrintTracks();
    const bool isRecorded = PrintTrack("recording", Recording(), kFixesOfRing);
    const bool isStored = PrintTrack("record stream", RecordStream(), kFixesOfTrack);
    const bool isExported = PrintTrack("document", Document(), kFixesOfTrack);
    return isRecorded && isStored && isExported && CTrackMan::Instance()->GetCnt() >= 1;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const std::string action = arguments[1];
    if (action == "write") std::filesystem::create_directories(FromUtf8(arguments[2]) / "App");
    SetUp(arguments[2]);
    bool isDone = false;
    if (action == "write") {
        isDone = Record();
        SaveInEveryForm();
    } else {
        isDone = Read();
    }
    delete CTrackMan::Instance();
    if (!isDone) std::fprintf(stderr, "same_bytes: not everything is there\n");
    return isDone ? 0 : 1;
}
