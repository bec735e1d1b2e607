// CTrackMangSet: the settings of the track library. The library keeps them in memory only; the host sets them
// at start-up, above all the paths, and keeps them between runs where it likes.
#pragma once

#include <cstdint>

#include "util/export.h"

// How fixes become points of the recording (record/recording_strategy.h). Any other value records nothing.
enum EnumRecTrack : std::int32_t {
    RecTrackByDist = 0,  // each RecordDisBrk metres
    RecTrackByTime = 1,  // each RecordTimeBrk seconds
    RecTrackAuto = 2     // whichever comes first
};

// Where new tracks are stored.
enum EnumStoreTrack : std::int32_t {
    StoreTrkDevice = 0,  // in device memory
    StoreTrkSdCard = 1,  // on the storage card; nowhere when it is absent or full
    StoreTrkAuto = 2     // on the card when it is there and has room, otherwise in device memory
};

// One instance for the process, made by the first call of Instance() and never destroyed. Not guarded: the
// first call and every setter belong to the host's thread. Nothing is validated: a time break of 0 must not be
// set for a recording by time. A change of the recording values counts from the next start of recording.
class QTRACE_API CTrackMangSet {
 public:
    static CTrackMangSet* Instance();  // never null
    virtual ~CTrackMangSet();
    CTrackMangSet(const CTrackMangSet& other);             // copies every value and path
    CTrackMangSet& operator=(const CTrackMangSet& other);  // likewise

    // Back to the defaults stated below; the paths stay as they are.
    void Init();

    EnumRecTrack GetTrackRecordMode();           // default: automatic
    void SetTrackRecordMode(EnumRecTrack mode);  // counts from the next start of recording
    int GetRecordDisBrk();                       // [m] default 3
    void SetRecordDisBrk(int metres);            // likewise
    int GetRecordTimeBrk();                      // [s] default 1
    void SetRecordTimeBrk(int seconds);          // likewise
    void SetTrackRecordMode(EnumRecTrack mode, int disBrk, int timeBrk);     // the three values at once
    void GetTrackRecordMode(EnumRecTrack& mode, int& disBrk, int& timeBrk);  // likewise

    bool GetTrackOverWriteMode();                // default true: a full recording overwrites its oldest points
    void SetTrackOverWriteMode(bool overwrite);  // counts from the next LoadData
    unsigned int GetTrackDefaultColor();         // 0x00BBGGRR, default 0xFF0000
    void SetTrackDefaultColor(unsigned int color);  // likewise
    bool GetTrackRecordState();         // default true; a note of the host's, the library does not read it
    void SetTrackRecordState(bool on);  // kept for the host
    // Whether the recording is saved before its trip's first point is overwritten; default false.
    bool GetTmpTkIsSaveInFull();
    void SetTmpTkIsSaveInFull(bool saveInFull);  // counts at once
    int GetTmpTkStartPos();                      // default 0: slot of the first point of the current trip
    void SetTmpTkStartPos(int slot);             // counts at once
    void ReSetTmpTkStartPos();          // takes the slot where the live recording begins; 0 when it is not open
    bool GetbHasSdCard();               // default false
    void SetbHasSdCard(bool present);   // counts at once, and for the next scan
    EnumStoreTrack GetStoreTrkPlace();  // default: automatic
    void SetStoreTrkPlace(EnumStoreTrack place);  // counts for the next track stored

    // Paths: device paths in the ANSI code page. The getters hand out the buffer itself: 256 bytes, always
    // terminated, valid as long as the settings. The setters keep at most 255 bytes of the text and make the
    // folder that the whole text names (its last level only; a failure is not reported). Non-null. Sd: on the
    // storage card. Nd: in device memory; ExtTrack and UserData read "\" until they are set, the rest "".
    char* GetSdExtTrackPath();                   // saved tracks, on the card
    void SetSdExtTrackPath(char* path);          // makes the folder
    char* GetNdExtTrackPath();                   // saved tracks, in the device
    void SetNdExtTrackPath(char* path);          // makes the folder
    char* GetSdUserDataPath();                   // user data, on the card
    void SetSdUserDataPath(char* path);          // makes the folder
    char* GetNdUserDataPath();                   // user data, in the device
    void SetNdUserDataPath(char* path);          // makes the folder
    char* GetSdTmpTrackAutoSavePath();           // recordings saved as tracks, on the card
    void SetSdTmpTrackAutoSavePath(char* path);  // makes the folder
    char* GetNdTmpTrackAutoSavePath();           // recordings saved as tracks, in the device
    void SetNdTmpTrackAutoSavePath(char* path);  // makes the folder

    // The path for a medium: the storage card when `sd`, else device memory. Whether a card is present does not
    // matter.
    char* GetExtTrackPath(bool sd);          // SdExtTrackPath or NdExtTrackPath
    char* GetTmpTrackAutoSavePath(bool sd);  // SdTmpTrackAutoSavePath or NdTmpTrackAutoSavePath
    char* GetUserDataPath(bool sd);          // SdUserDataPath or NdUserDataPath
    // saved: the ExtTrack path, otherwise the TmpTrackAutoSave path.
    char* GetTrackSavePath(bool saved, bool sd);

 protected:
    CTrackMangSet();

 private:
    static constexpr int kPathSize = 256;

    EnumRecTrack m_eTrackRecordMode;
    std::int32_t m_iRecordDisBrk;
    std::int32_t m_iRecordTimeBrk;
    bool m_bTrackOverWriteMode;
    std::uint32_t m_uTrackDefaultColor;
    char m_szSdExtTrackPath[kPathSize] = {};
    char m_szSdUserDataPath[kPathSize] = {};
    char m_szSdTmpTrackAutoSavePath[kPathSize] = {};
    char m_szNdExtTrackPath[kPathSize];
    char m_szNdUserDataPath[kPathSize];
    char m_szNdTmpTrackAutoSavePath[kPathSize] = {};
    bool m_bTrackRecordState;
    bool m_bTmpTkIsSaveInFull;
    std::int32_t m_iTmpTkStartPos;
    bool m_bHasSdCard;
    EnumStoreTrack m_eStoreTrkPlace;

    static CTrackMangSet* m_pInstance;
};
