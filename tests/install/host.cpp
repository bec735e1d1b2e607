// A host outside the tree, in C++17: records a few fixes and saves them as a track.
#include <qtrace.h>

#include <chrono>
#include <filesystem>
#include <thread>

int main(int, char** arguments) {
    std::filesystem::create_directories(std::filesystem::path(arguments[1]) / "App");
    SetDeviceRoot(arguments[1]);
    SetProgramFolder(L"\\App");
    char userData[] = "\\UserData", tracks[] = "\\UserData\\Track";
    CTrackMan& manager = *CTrackMan::Instance();
    manager.GetTrackMangSet()->SetNdUserDataPath(userData);
    manager.GetTrackMangSet()->SetNdTmpTrackAutoSavePath(tracks);
    manager.SetIsHasEnoughSpaceCallFun([](bool onCard) { return !onCard; });
    manager.LoadData();
    while (manager.IsLoadingDataToMap()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    manager.Start();
    for (int second = 1; second <= 100; ++second) {
        TckPt fix{};
        fix.dLatitude = 47.0 + second * 1e-4;
        fix.dLongitude = 8.0;
        fix.lTime = 1000000000 + second;
        manager.SaveToTempTrack(fix);
    }
    manager.Stop();
    std::vector<TckPt, je_allocator<TckPt>> nothingPending;
    return manager.GetLogTrack()->GetPtCount() == 99 && manager.SaveTempTrkToTrack(nothingPending) ? 0 : 1;
}
