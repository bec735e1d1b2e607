// A host outside the tree, in C++17: records a few fixes, saves them as a track, finds it in the list and
// exports it.
#include <qtrace.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

namespace {

constexpr int kFixes = 100;
constexpr unsigned long kPoints = kFixes - 1;  // the last one waits for the next

void Record(CTrackMan& manager) {
    manager.LoadData();
    while (manager.IsLoadingDataToMap()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    manager.Start();
    for (int second = 1; second <= kFixes; ++second) {
        TckPt fix{};
        fix.dLatitude = 47.0 + second * 1e-4;
        fix.dLongitude = 8.0;
        fix.lTime = 1000000000 + second;
        manager.SaveToTempTrack(fix);
    }
    manager.Stop();
}

bool Save(CTrackMan& manager) {
    std::vector<TckPt, je_allocator<TckPt>> nothingPending;
    return manager.GetLogTrack()->GetPtCount() == kPoints && manager.SaveTempTrkToTrack(nothingPending);
}

CTrack Read(const char* path) {
    CTrack track;
    track.Load(std::string(path));
    return track;
}

// What is stored is thinned: its ends at least are there.
bool Export(CTrackMan& manager) {
    manager.RefreshFilelist();
    if (manager.GetCnt() != 1) return false;
    CTrack stored = Read(manager.GetTrack(0UL)->GetTrackPath());
    stored.Save(std::string("\\UserData\\export.gpx"));
    return stored.GetPtCount() >= 2 && Read("\\UserData\\export.gpx").GetPtCount() == stored.GetPtCount();
}

}  // namespace

int main(int, char** arguments) {
    std::filesystem::create_directories(std::filesystem::path(arguments[1]) / "App");
    SetDeviceRoot(arguments[1]);
    SetProgramFolder(L"\\App");
    char userData[] = "\\UserData", tracks[] = "\\UserData\\Track";
    CTrackMan& manager = *CTrackMan::Instance();
    manager.GetTrackMangSet()->SetNdUserDataPath(userData);
    manager.GetTrackMangSet()->SetNdExtTrackPath(tracks);
    manager.GetTrackMangSet()->SetNdTmpTrackAutoSavePath(tracks);
    manager.SetIsHasEnoughSpaceCallFun([](bool onCard) { return !onCard; });
    Record(manager);
    return Save(manager) && Export(manager) ? 0 : 1;
}
