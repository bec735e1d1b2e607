#include "library/track_proxy.h"

#include <cmath>
#include <cstring>

#include "gpx/gpx.h"
#include "gpx/gpx_stamp.h"
#include "library/track_manager.h"
#include "platform/clock.h"
#include "platform/file.h"
#include "util/kept_leak.h"
#include "util/paths.h"
#include "util/text.h"
#include "util/time.h"
#include "util/wide_path.h"

std::string CTrackProxy::g_strTrackFlag = "Qarvolent Trace H1.0";

namespace {

const std::string g_strTrackFolder = "Track";
const std::string g_strTrackExt = "gpx";

constexpr std::size_t kNameSize = 32;
constexpr double kWideSimplifyMetres = 25.0;
constexpr double kSimplifyMetres = 2.0;
constexpr int kMostVisibleTracks = 10;

long UtcNow() {
    SYSTEMTIME now{};
    platform::GetSystemTime(&now);
    return static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(now));
}

// The file of that name in the folder Track of the program's folder.
std::string PathInTrackFolder(const std::string& name) {
    const std::string relative = TrackFilePath(g_strTrackFolder, name);
    char path[2 * paths::kMaxPath + 2] = {};  // the folder, and the name behind it
    FileAbsolutPath(path, relative.c_str(), paths::kMaxPath, false);
    return path;
}

// The folder of a path, cut so that the path of a file called `name` in it keeps within the limit.
std::string FolderWithRoomFor(const std::string& path, const std::string& name) {
    const std::wstring wide = WidePath(path);
    const std::wstring folder = wide.substr(0, wide.rfind(L'\\'));
    const int room = paths::kMaxPath - static_cast<int>(name.size()) - static_cast<int>(g_strTrackExt.size());
    std::string narrow(static_cast<std::size_t>(room > 0 ? room : 0) + 1, '\0');
    WcharToChar(narrow.data(), folder.c_str(), room);
    return narrow.c_str();
}

}  // namespace

CTrackProxy::CTrackProxy() { CTrackProxy::Init(); }

CTrackProxy::CTrackProxy(const char* path) : m_strTrackPath(path) { CTrackProxy::Init(); }

CTrackProxy::CTrackProxy(CTrack& track, bool saved) {
    track.Calculate(false);
    track.SetIsSaveSus(StoreNewTrack(track, saved));
    if (!track.IsSaveSus()) return;
    m_strTrkFileName = track.GetName();
    TakeStatistics(track);
    m_ulColor = track.GetColor();
    m_iVisible = track.GetVisible() ? 1 : 0;
    m_lLstWriteTime = UtcNow();
}

CTrackProxy::CTrackProxy(const CTrackProxy& other) = default;

// KEPT: the other's display name becomes the file name, for a copy that is to be saved under it; and what was
// loaded is let go without being freed, since it may be borrowed. Pinned by
// TrackCreation.Assignment_MakesTheDisplayNameTheFileName and
// TrackCreation.Assignment_LetsALoadedTrackGoWithoutFreeingIt.
CTrackProxy& CTrackProxy::operator=(const CTrackProxy& other) {
    auto& source = const_cast<CTrackProxy&>(other);  // its getters may read its header
    m_strTrkFileName = source.GetName();
    m_ulPtCount = source.GetPtCount();
    m_lStartTime = source.GetStartTime();
    m_lEndTime = source.GetEndTime();
    m_dLength = source.GetLength();
    m_dArea = source.GetArea();
    m_ulColor = source.GetColor();
    m_iVisible = source.GetVisible() ? 1 : 0;
    m_uID = 0;
    m_strTrackPath = PathInTrackFolder(m_strTrkFileName);
    if (m_pTrack != nullptr) KeepLeaked(m_pTrack);
    m_pTrack = nullptr;
    return *this;
}

CTrackProxy::~CTrackProxy() { DeleteTrack(); }

void CTrackProxy::Init() {
    m_strTrkFileName.clear();
    m_iVisible = -1;
    m_ulPtCount = 0;
    m_lStartTime = 0;
    m_lEndTime = 0;
    m_dLength = 0.0;
    m_dArea = 0.0;
    m_ulColor = 0;
    m_uID = 0;
}

// Writes the track as a new file of its name. The path is remembered whether or not the file could be written.
bool CTrackProxy::StoreNewTrack(CTrack& track, bool saved) {
    if (track.GetName().empty()) return false;
    CTrackMan& manager = *CTrackMan::Instance();
    bool onCard = false;
    if (!manager.GetStoragePlace(onCard)) return false;
    CTrackMangSet& settings = *manager.GetTrackMangSet();
    const char* folder = settings.GetTrackSavePath(saved, onCard);
    if (!CreateDir(settings.GetUserDataPath(onCard)) || !CreateDir(folder)) return false;
    m_strTrackPath = TrackFilePath(folder, track.GetName());
    return track.Save(m_strTrackPath);
}

void CTrackProxy::TakeStatistics(CTrack& track) {
    m_ulPtCount = track.GetPtCount();
    m_lStartTime = track.GetStartTime();
    m_lEndTime = track.GetEndTime();
    m_dLength = track.GetLength();
    m_dArea = std::fabs(track.GetArea());
}

// KEPT: a value of 0 is read again at each query, a header that says 0 included: that is how a file that was
// written meanwhile is noticed. Pinned by TrackHeader.ZeroTimesLengthAndArea_AreReadAgainAtEveryQuery.
long CTrackProxy::GetStartTime() {
    if (m_lStartTime == 0) LoadTrackData();
    return m_lStartTime;
}

long CTrackProxy::GetEndTime() {
    if (m_lEndTime == 0) LoadTrackData();
    return m_lEndTime;
}

double CTrackProxy::GetLength() {
    if (m_dLength == 0.0) LoadTrackData();
    return m_dLength;
}

double CTrackProxy::GetArea() {
    if (m_dArea == 0.0) LoadTrackData();
    return m_dArea;
}

unsigned long CTrackProxy::GetPtCount() {
    if (m_ulPtCount == 0) LoadTrackData();
    return m_ulPtCount;
}

bool CTrackProxy::GetVisible() {
    if (m_iVisible == -1) LoadTrackData();
    return m_iVisible != 0;
}

unsigned long CTrackProxy::GetColor() { return m_ulColor; }
void CTrackProxy::SetColor(unsigned long color) { m_ulColor = color & 0xFFFFFFFFul; }
void CTrackProxy::SetVisible(bool visible) { m_iVisible = visible ? 1 : 0; }
unsigned int CTrackProxy::GetID() { return m_uID; }
void CTrackProxy::SetID(unsigned int id) { m_uID = id; }
long CTrackProxy::GetLstWriteTime() { return m_lLstWriteTime; }
void CTrackProxy::SetLstWriteTime(long time) { m_lLstWriteTime = time; }
const char* CTrackProxy::GetTrackPath() { return m_strTrackPath.c_str(); }
void CTrackProxy::SetTrackPath(std::string path) { m_strTrackPath = std::move(path); }

const std::string& CTrackProxy::GetName() {
    if (!m_strName.empty()) return m_strName;
    if (m_pTrack != nullptr)
        m_strName = m_pTrack->GetName();
    else if (!m_strTrackPath.empty())
        LoadTrackData();
    return m_strName;
}

const std::string& CTrackProxy::GetTrkFileName() {
    if (!m_strTrkFileName.empty()) return m_strTrkFileName;
    if (m_pTrack != nullptr)
        m_strTrkFileName = m_pTrack->GetName();
    else if (!m_strTrackPath.empty())
        LoadTrackData();
    return m_strTrkFileName;
}

void CTrackProxy::SetName(const char* text) { m_strName.assign(text, strnlen(text, kNameSize)); }

void CTrackProxy::SetTrkFileName(const char* newName) {
    if (newName == nullptr) return;
    const std::string newPath = TrackFilePath(FolderWithRoomFor(m_strTrackPath, newName), newName);
    if (!platform::MoveFileW(WidePath(m_strTrackPath).c_str(), WidePath(newPath).c_str())) return;
    m_strTrackPath = newPath;
    m_strTrkFileName = newName;
}

bool CTrackProxy::Save(void*) { return true; }

bool CTrackProxy::Load(void*) { return LoadTrackData(); }

void CTrackProxy::DestoryData() {
    if (!m_strTrackPath.empty()) platform::DeleteFileW(WidePath(m_strTrackPath).c_str());
}

// --- The header ---

bool CTrackProxy::LoadTrackData() { return LoadHeadInfo(m_strTrackPath); }

bool CTrackProxy::LoadHeadInfo(std::string path) {
    std::vector<TckPt, je_allocator<TckPt>> points;
    GpxTrackInfo info{};
    info.points = &points;
    CGPXTransmit transmit;
    if (!transmit.ImportGpxHead(WidePath(path), &info)) return false;

    m_iVisible = info.visible;
    m_ulColor = info.color;
    m_ulPtCount = static_cast<std::uint32_t>(info.number);
    m_dArea = std::fabs(info.area);
    m_dLength = info.length;
    m_lEndTime = info.endTime;
    m_lStartTime = info.startTime;
    m_strTrkFileName = FileStem(path);
    m_strName = info.name[0] != '\0' ? info.name : m_strTrkFileName;
    return true;
}

bool CTrackProxy::SaveTrackData() {
    if (!SaveHeadInfo(m_strTrackPath)) return false;
    m_lLstWriteTime = UtcNow();
    return true;
}

bool CTrackProxy::SaveHeadInfo(std::string path) {
    std::vector<TckPt, je_allocator<TckPt>> points;
    GpxTrackInfo info{};
    info.points = &points;
    CGPXTransmit transmit;
    if (!transmit.ImportGpx(WidePath(path), &info)) return false;

    std::memset(info.name, 0, sizeof info.name);
    m_strName.copy(info.name, kNameSize);
    // KEPT: not known counts as shown. Pinned by TrackSaving.HeaderNeverRead_IsWrittenAsItIsAndShown.
    info.visible = m_iVisible != 0 ? 1 : 0;
    info.number = static_cast<std::int32_t>(m_ulPtCount);
    info.color = static_cast<std::uint32_t>(m_ulColor);
    info.length = m_dLength;
    info.area = std::fabs(m_dArea);
    info.startTime = static_cast<std::int32_t>(m_lStartTime);
    info.endTime = static_cast<std::int32_t>(m_lEndTime);

    const GpxMetadata metadata = StampedMetadata();
    transmit.SetMetadata(&metadata);
    transmit.SetTrackInfo(&info);
    return transmit.ExportGpx(WidePath(m_strTrackPath));
}

// --- The points ---

// The loaded track; null when the file could not be read, and then an empty track stands in for it until
// DeleteTrack.
CTrack* CTrackProxy::GetTrack() {
    if (m_pTrack != nullptr) return m_pTrack;
    m_pTrack = new CTrack;
    if (!m_strTrackPath.empty() && !m_pTrack->Load(m_strTrackPath)) return nullptr;
    return m_pTrack;
}

void CTrackProxy::DeleteTrack() {
    delete m_pTrack;
    m_pTrack = nullptr;
}

void CTrackProxy::GetPtList(std::vector<TckPt, je_allocator<TckPt>>& out) {
    GetTrack();
    m_pTrack->GetPtList(out);
    DeleteTrack();
}

void CTrackProxy::GetPtList(TckPt* buffer, int count) {
    GetTrack();
    m_pTrack->GetPtList(buffer, count);
    DeleteTrack();
}

void CTrackProxy::GetKeyPtList(std::vector<TckPt, je_allocator<TckPt>>& out) {
    GetTrack();
    m_pTrack->GetKeyPtList(out);
    DeleteTrack();
}

void CTrackProxy::GetSimplifyPtLst(std::vector<TckPt, je_allocator<TckPt>>& out) {
    GetTrack();
    m_pTrack->SimplifyPt(out, 0, true);
    DeleteTrack();
}

void CTrackProxy::GetSimplifyPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int level, bool wide) {
    GetTrack();
    if (wide) m_pTrack->SetSimplifyDis(kWideSimplifyMetres);
    m_pTrack->SimplifyPt(out, level, wide);
    if (wide) m_pTrack->SetSimplifyDis(kSimplifyMetres);
    DeleteTrack();
}

void CTrackProxy::SimplyTrack() {
    GetTrack();
    m_pTrack->SimplifyPt();
}

void CTrackProxy::Caculate() {
    GetTrack();
    m_pTrack->Calculate(true);
    TakeStatistics(*m_pTrack);
    DeleteTrack();
}

// KEPT: the stream is written over the beginning of the file; what lies behind it stays, and readers of the
// stream do not look there. Pinned by TrackSaving.Points_GoOverTheBeginningOfTheFileAsARecordStream.
void CTrackProxy::SaveTrackPtLst() {
    std::FILE* file = platform::fopen(m_strTrackPath.c_str(), "rb+");
    if (m_pTrack != nullptr) {
        m_pTrack->Calculate(false);
        m_pTrack->Save(static_cast<void*>(file));
        m_strTrkFileName = m_pTrack->GetName();
        TakeStatistics(*m_pTrack);
        m_ulColor = m_pTrack->GetColor();
        m_iVisible = m_pTrack->GetVisible() ? 1 : 0;
    }
    platform::fclose(file);
}

bool CTrackProxy::Save(const char* name) {
    GetTrack();
    m_strTrackPath = PathInTrackFolder(name);
    m_strTrkFileName = name;
    std::FILE* file = platform::fopen(m_strTrackPath.c_str(), "wb+");
    bool saved = false;
    if (file != nullptr) {
        m_pTrack->SetName(name);
        saved = m_pTrack->Save(static_cast<void*>(file));
    }
    platform::fclose(file);
    DeleteTrack();
    return saved;
}

// KEPT: the file name is taken as it is known when it is needed, which it is not before the header was read:
// then the name of the handle's own file is a new one, and nothing is deleted. Pinned by
// TrackReversal.OfAnUnreadHandleUnderItsFilesName_IsANewTrackInItsPlace,
// TrackReversal.OfAnUnreadHandle_DeletesNothing.
bool CTrackProxy::ReverseTrack(const char* newName, bool deleteOriginal, bool showIfRoom, unsigned int color) {
    GetTrack();
    CTrack reversed(*m_pTrack);
    reversed.Reverse();
    m_lStartTime = reversed.GetStartTime();
    m_lEndTime = reversed.GetEndTime();
    DeleteTrack();
    if (newName == nullptr || m_strTrkFileName == newName) return SaveTrackData();

    CTrackMan& manager = *CTrackMan::Instance();
    reversed.SetName(newName);
    reversed.SetColor(color);
    reversed.SetVisible(showIfRoom && manager.GetVisibleTrkCnt() < kMostVisibleTracks);
    if (deleteOriginal) manager.DelTrack(std::string(m_strTrkFileName));  // this handle may be gone afterwards
    return manager.AddTrack(reversed);
}
