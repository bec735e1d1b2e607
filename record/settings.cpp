#include "record/settings.h"

#include <cstddef>
#include <cstring>
#include <string_view>

// The one place where the recording looks up at the library: the trip's start is asked of its live recording.
#include "library/track_manager.h"
#include "util/paths.h"

namespace {

// KEPT: the text is laid down as UTF-16 in a buffer that is read as narrow text, so the folder reads "\" until
// the host sets one. Hosts rely on tracks not being sought in a folder of the library's choosing. Pinned by
// SettingsTest.DefaultDevicePaths_ReadAsTheRoot.
template <std::size_t Size>
void FillWithUtf16(char (&buffer)[Size], std::u16string_view text) {
    std::memset(buffer, 0, Size);
    for (std::size_t i = 0; i < text.size() && 2 * i + 1 < Size; ++i) {
        buffer[2 * i] = static_cast<char>(text[i] & 0xFF);
        buffer[2 * i + 1] = static_cast<char>(text[i] >> 8);
    }
}

// The folder that is made is the one asked for, even when its path has to be cut to be kept. The path is
// copied before the buffer is cleared: it may be the buffer itself.
template <std::size_t Size>
void SetFolder(char (&buffer)[Size], const char* path) {
    char kept[Size] = {};
    std::string_view(path).copy(kept, Size - 1);
    CreateDir(path);
    std::memcpy(buffer, kept, Size);
}

}  // namespace

CTrackMangSet* CTrackMangSet::m_pInstance = nullptr;

CTrackMangSet* CTrackMangSet::Instance() {
    if (m_pInstance == nullptr) m_pInstance = new CTrackMangSet;
    return m_pInstance;
}

CTrackMangSet::CTrackMangSet() {
    Init();
    FillWithUtf16(m_szNdExtTrackPath, u"\\Program Files\\App\\UserData\\Track");
    FillWithUtf16(m_szNdUserDataPath, u"\\Program Files\\App\\UserData");
}

CTrackMangSet::~CTrackMangSet() = default;
CTrackMangSet::CTrackMangSet(const CTrackMangSet& other) = default;
CTrackMangSet& CTrackMangSet::operator=(const CTrackMangSet& other) = default;

void CTrackMangSet::Init() {
    m_eTrackRecordMode = RecTrackAuto;
    m_iRecordDisBrk = 3;
    m_iRecordTimeBrk = 1;
    m_bTrackOverWriteMode = true;
    m_uTrackDefaultColor = 0xFF0000;
    m_bTrackRecordState = true;
    m_bTmpTkIsSaveInFull = false;
    m_iTmpTkStartPos = 0;
    m_bHasSdCard = false;
    m_eStoreTrkPlace = StoreTrkAuto;
}

EnumRecTrack CTrackMangSet::GetTrackRecordMode() { return m_eTrackRecordMode; }
void CTrackMangSet::SetTrackRecordMode(EnumRecTrack mode) { m_eTrackRecordMode = mode; }

int CTrackMangSet::GetRecordDisBrk() { return m_iRecordDisBrk; }
void CTrackMangSet::SetRecordDisBrk(int metres) { m_iRecordDisBrk = metres; }

int CTrackMangSet::GetRecordTimeBrk() { return m_iRecordTimeBrk; }
void CTrackMangSet::SetRecordTimeBrk(int seconds) { m_iRecordTimeBrk = seconds; }

void CTrackMangSet::SetTrackRecordMode(EnumRecTrack mode, int disBrk, int timeBrk) {
    m_eTrackRecordMode = mode;
    m_iRecordDisBrk = disBrk;
    m_iRecordTimeBrk = timeBrk;
}

void CTrackMangSet::GetTrackRecordMode(EnumRecTrack& mode, int& disBrk, int& timeBrk) {
    mode = m_eTrackRecordMode;
    disBrk = m_iRecordDisBrk;
    timeBrk = m_iRecordTimeBrk;
}

bool CTrackMangSet::GetTrackOverWriteMode() { return m_bTrackOverWriteMode; }
void CTrackMangSet::SetTrackOverWriteMode(bool overwrite) { m_bTrackOverWriteMode = overwrite; }

unsigned int CTrackMangSet::GetTrackDefaultColor() { return m_uTrackDefaultColor; }
void CTrackMangSet::SetTrackDefaultColor(unsigned int color) { m_uTrackDefaultColor = color; }

bool CTrackMangSet::GetTrackRecordState() { return m_bTrackRecordState; }
void CTrackMangSet::SetTrackRecordState(bool on) { m_bTrackRecordState = on; }

bool CTrackMangSet::GetTmpTkIsSaveInFull() { return m_bTmpTkIsSaveInFull; }
void CTrackMangSet::SetTmpTkIsSaveInFull(bool saveInFull) { m_bTmpTkIsSaveInFull = saveInFull; }

int CTrackMangSet::GetTmpTkStartPos() { return m_iTmpTkStartPos; }
void CTrackMangSet::SetTmpTkStartPos(int slot) { m_iTmpTkStartPos = slot; }

void CTrackMangSet::ReSetTmpTkStartPos() {
    m_iTmpTkStartPos = 0;
    CTrackMan::Instance()->GetLogTrack()->GetTmpTrackStart(m_iTmpTkStartPos);
}

bool CTrackMangSet::GetbHasSdCard() { return m_bHasSdCard; }
void CTrackMangSet::SetbHasSdCard(bool present) { m_bHasSdCard = present; }

EnumStoreTrack CTrackMangSet::GetStoreTrkPlace() { return m_eStoreTrkPlace; }
void CTrackMangSet::SetStoreTrkPlace(EnumStoreTrack place) { m_eStoreTrkPlace = place; }

char* CTrackMangSet::GetSdExtTrackPath() { return m_szSdExtTrackPath; }
void CTrackMangSet::SetSdExtTrackPath(char* path) { SetFolder(m_szSdExtTrackPath, path); }

char* CTrackMangSet::GetNdExtTrackPath() { return m_szNdExtTrackPath; }
void CTrackMangSet::SetNdExtTrackPath(char* path) { SetFolder(m_szNdExtTrackPath, path); }

char* CTrackMangSet::GetSdUserDataPath() { return m_szSdUserDataPath; }
void CTrackMangSet::SetSdUserDataPath(char* path) { SetFolder(m_szSdUserDataPath, path); }

char* CTrackMangSet::GetNdUserDataPath() { return m_szNdUserDataPath; }
void CTrackMangSet::SetNdUserDataPath(char* path) { SetFolder(m_szNdUserDataPath, path); }

char* CTrackMangSet::GetSdTmpTrackAutoSavePath() { return m_szSdTmpTrackAutoSavePath; }
void CTrackMangSet::SetSdTmpTrackAutoSavePath(char* path) { SetFolder(m_szSdTmpTrackAutoSavePath, path); }

char* CTrackMangSet::GetNdTmpTrackAutoSavePath() { return m_szNdTmpTrackAutoSavePath; }
void CTrackMangSet::SetNdTmpTrackAutoSavePath(char* path) { SetFolder(m_szNdTmpTrackAutoSavePath, path); }

char* CTrackMangSet::GetExtTrackPath(bool sd) { return sd ? m_szSdExtTrackPath : m_szNdExtTrackPath; }

char* CTrackMangSet::GetTmpTrackAutoSavePath(bool sd) {
    return sd ? m_szSdTmpTrackAutoSavePath : m_szNdTmpTrackAutoSavePath;
}

char* CTrackMangSet::GetUserDataPath(bool sd) { return sd ? m_szSdUserDataPath : m_szNdUserDataPath; }

char* CTrackMangSet::GetTrackSavePath(bool saved, bool sd) {
    return saved ? GetExtTrackPath(sd) : GetTmpTrackAutoSavePath(sd);
}
