// Rebuilding the list of tracks from storage, and the thread that does it. Each file is a step: a thread that
// was asked to stop ends after the one in hand and touches the manager no more.
#include <cstdint>
#include <memory>

#include "library/track_manager.h"
#include "platform/find.h"
#include "platform/thread.h"
#include "util/paths.h"
#include "util/text.h"
#include "util/time.h"
#include "util/wide_path.h"

namespace {

constexpr int kMostVisibleTracks = 10;
constexpr int kPathLimit = 256;
constexpr int kBelowNormal = 4;

long TimeOf(platform::FileTime ticks) {
    SYSTEMTIME calendar{};
    platform::FileTimeToSystemTime(&ticks, &calendar);
    return static_cast<std::int32_t>(
        ChangeSYSTIMEToTime_T(calendar));  // signed: before 1970 is older than 1970
}

}  // namespace

void CTrackMan::LoadData() {
    StopLoadDataToMapThread();
    InitSetting();
    StartLoadDataToMapThread();
}

bool CTrackMan::StartLoadDataToMapThread() {
    const std::lock_guard lock(m_loadMutex);
    m_bLoading = true;
    m_vecLoadFolders = FoldersToScan();
    m_hLoadThread = platform::CreateThread(&CTrackMan::LoadThread, this);
    if (m_hLoadThread == platform::kInvalidHandle) return false;
    return platform::SetThreadPriority(m_hLoadThread, kBelowNormal);
}

unsigned long CTrackMan::LoadThread(void* manager) {
    auto* self = static_cast<CTrackMan*>(manager);
    const std::vector<std::string> folders = self->m_vecLoadFolders;
    self->RefreshFrom(folders);
    if (platform::StopRequested()) return 0;
    self->InitTrackMap();
    if (platform::StopRequested()) return 0;
    self->EndLoad();
    return 0;
}

// The handle goes first: once loading is over, the host may start the next load.
void CTrackMan::EndLoad() {
    const std::lock_guard lock(m_loadMutex);
    if (m_hLoadThread == platform::kInvalidHandle) return;  // stopped meanwhile
    m_hLoadThread = platform::kInvalidHandle;
    m_bLoading = false;
}

void CTrackMan::StopLoadDataToMapThread() {
    platform::Handle thread = platform::kInvalidHandle;
    {
        const std::lock_guard lock(m_loadMutex);
        if (!m_bLoading) return;
        std::swap(thread, m_hLoadThread);
    }
    if (thread == platform::kInvalidHandle) return;
    platform::TerminateThread(thread);
    platform::CloseHandle(thread);
}

bool CTrackMan::IsLoadingDataToMap() { return m_bLoading; }

void CTrackMan::InitTrackMap() {
    if (void (*callback)() = m_pLoadCallback) callback();
}

void CTrackMan::RefreshFilelist() { RefreshFrom(FoldersToScan()); }

// The device's folder, then the card's.
std::vector<std::string> CTrackMan::FoldersToScan() const {
    std::vector<std::string> folders{m_pSettings->GetNdExtTrackPath()};
    if (m_pSettings->GetbHasSdCard()) folders.emplace_back(m_pSettings->GetSdExtTrackPath());
    return folders;
}

void CTrackMan::RefreshFrom(const std::vector<std::string>& folders) {
    DestroyTracks();
    m_lstScan.clear();
    for (const std::string& folder : folders) {
        RefreshStorage(folder.c_str(), kPathLimit);
        if (platform::StopRequested()) return;
    }
    LoadTrack();
    if (platform::StopRequested()) return;
    CheckTrackIsSameName();
    SortTrackFile();
}

void CTrackMan::RefreshStorage(const char* folder, int maxLength) {
    wchar_t wide[kPathLimit + 1] = {};
    AnsciToWchar(folder, wide, maxLength);
    const std::wstring prefix = std::wstring(wide) + L"\\";

    platform::FindData entry{};
    const platform::Handle search = platform::FindFirstFileW((prefix + L"*.gpx").c_str(), &entry);
    bool found = search != platform::kInvalidHandle;
    while (found && !platform::StopRequested()) {
        char path[paths::kMaxPath + 1] = {};
        WcharToChar(path, (prefix + entry.name).c_str(), maxLength);
        m_lstScan.push_back({path, TimeOf(entry.lastWriteTime)});
        found = platform::FindNextFileW(search, &entry);
    }
    platform::FindClose(search);
}

void CTrackMan::LoadTrack() {
    int visible = 0;
    for (const ScanRecord& record : m_lstScan)
        if (!AdmitTrack(record, visible)) return;
}

// Lists the file when its header can be read; the eleventh visible track and those behind it are hidden. False
// when the loading is to stop.
bool CTrackMan::AdmitTrack(const ScanRecord& record, int& visible) {
    auto track = std::make_unique<CTrackProxy>();
    track->SetTrackPath(record.path);
    track->SetLstWriteTime(record.lastWriteTime);
    const bool readable = track->Load(nullptr);
    if (platform::StopRequested()) return false;
    if (!readable) return true;

    std::string name = track->GetName();
    if (ReplaceInvalidFileNameCharacters(name)) track->SetName(name.c_str());
    if (track->GetVisible() && visible++ >= kMostVisibleTracks) track->SetVisible(false);
    m_vecTracks.push_back(track.release());
    return true;
}

bool CTrackMan::GetStoragePlace(bool& onCard) {
    const EnumStoreTrack place = CTrackMangSet::Instance()->GetStoreTrkPlace();
    if (m_pSettings->GetbHasSdCard() && hasEnoughSpace(true) && place != StoreTrkDevice) {
        onCard = true;
        return true;
    }
    if (!hasEnoughSpace(false) || place == StoreTrkSdCard) return false;
    onCard = false;
    return true;
}
