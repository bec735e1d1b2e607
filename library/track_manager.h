// CTrackMan: the one object through which a host drives the library: recording, stored tracks, callbacks.
// Recording: manager_core.cpp. The list of tracks: track_list.cpp, their names: track_names.cpp. Scan and
// loading thread: storage_scan.cpp.
#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <vector>

#include "library/track_proxy.h"
#include "record/log_track.h"
#include "record/settings.h"
#include "track/point.h"
#include "track/track.h"
#include "util/export.h"

class ITrackSaveStragy;

// One instance, made by the first Instance(). The host's thread calls everything; a thread of the manager's own
// rebuilds the list of tracks after LoadData. While IsLoadingDataToMap() is true, fixes are dropped and the
// host leaves the list alone; it takes the list when the load callback runs. No operation throws but for want
// of memory.
class QTRACE_API CTrackMan {
 public:
    static CTrackMan* Instance();  // never null; not guarded: the first call is the host's
    // Copies settings, callbacks and marks; tracks, recording and thread stay with the original.
    CTrackMan(const CTrackMan& other);
    CTrackMan& operator=(const CTrackMan&) = delete;
    // Stops a running load, writes what is pending, closes the recording; frees all tracks. Instance() then
    // makes anew.
    virtual ~CTrackMan();

    // Forgets tracks and callbacks (files stay); loading is true until the next load has ended.
    virtual void Init();
    virtual bool Load(void* ignored);  // true
    virtual bool Save(void* ignored);  // true
    void SaveConfig();                 // does nothing: settings are kept by the host

    // --- Recording ---

    bool Start();    // false when it is started already; the settings' record mode decides which fixes count
    bool Stop();     // writes what is pending; false when it is not started
    bool isStart();  // whether a recording is under way
    // Offers one fix. Recorded ones go to the map at once (point callback, on this thread) and to disk in
    // batches.
    void SaveToTempTrack(const TckPt& fix);
    void FlushOut();  // writes the points pending
    // Replaces `out` by the recorded points that are at most `seconds` old by the UTC clock, in time order.
    void GetTopTmpPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int seconds);
    // Stores the recording, each slice thinned, followed by the points of `pending`, as a track named
    // "AutoSaveTrk-" and the local time, in the auto-save folder. The recording goes on; the new file is listed
    // at the next load. False when no place, no folder or no document could be made; true also when the file
    // could not be written: look for it where it matters.
    bool SaveTempTrkToTrack(std::vector<TckPt, je_allocator<TckPt>>& pending);
    CTrackEx* GetLogTrack();           // the live recording, owned by the manager
    CTrackMangSet* GetTrackMangSet();  // the settings; CTrackMangSet::Instance()
    double GetSpaceRate();             // filled part of the recording, 0 to 1
    bool IsFull();                     // false

    // --- Callbacks; null clears one ---

    void SetTmpTrackPtShowInMapCallFun(
        void (*callback)(const TckPt&));                // a point was recorded: on the recording thread
    void SetLoadTrackToMapCallFun(void (*callback)());  // the tracks are loaded: on the loading thread
    void SetLoadSgTrackToMapCallFun(void (*callback)(CTrackProxy*));  // stored; never called by the library
    void SetIsHasEnoughSpaceCallFun(
        bool (*callback)(bool));       // is there room on the card (true), in the device (false)
    bool hasEnoughSpace(bool onCard);  // that callback's answer; false without one

    // --- Loading ---

    // Opens the live recording and rebuilds the list of tracks from storage on a thread of its own, from the
    // folders that the settings name now. May be called again at any time; a load that is under way is stopped
    // first.
    void LoadData();
    // Ends a load that is under way: waits, at most 5 s, for the file in hand or for a load callback that runs
    // already; the callback is not called any more, and loading stays true. A load callback may call it, and
    // then does not wait. A thread that takes longer ends later and changes nothing.
    void StopLoadDataToMapThread();
    bool IsLoadingDataToMap();  // any thread
    void InitTrackMap();        // calls the load callback, on this thread
    void RefreshFilelist();     // rebuilds the list from storage, on this thread; not while a load is under way
    bool GetStoragePlace(bool& onCard);  // where a new track goes; false, with onCard untouched, for nowhere

    // --- The list of tracks: handles are owned by the manager and valid until they are deleted or the list is
    // rebuilt ---

    unsigned long GetCnt() const;
    CTrackProxy* GetTrack(unsigned long index);  // null when out of range
    CTrackProxy* GetTrack(
        const std::string& name);  // the first of that display name, ignoring letter case; null if none
    CTrackProxy* GetTrackByFile(const std::string& fileName);  // likewise, by file name
    int GetTrackSel(const std::string& name);  // index of the first of exactly that display name; -1
    int GetVisibleTrkCnt();                    // number of tracks shown
    int GetUseable();                          // tracks that the library still has room for, of 20
    bool InUse(unsigned long index);           // false
    void SetInUse(bool inUse);                 // a mark of the host's
    bool GetInUse();                           // the mark as set last; false at first
    // Takes the handle over and puts it last. False, with the handle still the caller's, for null and for a
    // display name that exists exactly so.
    bool AddTrack(CTrackProxy* proxy);
    // Stores the track in the saved-tracks folder and lists it. False without a name, a storage place or its
    // folders, and when its display name exists; the file stays then. True also when the file could not be
    // written: look for it where it matters.
    bool AddTrack(CTrack& track);
    void DelTrack(unsigned long index);      // deletes file and handle
    void DelTrack(const std::string& name);  // the first of exactly that display name
    void DelAllTrack();                      // deletes all files and handles
    void SortTrackFile();                    // newest saved first
    std::string GetUnusedName();             // the local time as text

 private:
    friend struct TrackManInside;  // the tests' way to the operations below

    struct ScanRecord {
        std::string path;
        long lastWriteTime;  // [s]
    };

    CTrackMan();
    ITrackSaveStragy* CreateSaveStragy();
    void InitSetting();
    void DestroyTracks();
    void DestroyTrack(std::size_t index);
    void AppendSlices(CTrack& track);

    bool IsNameTaken(const std::string& name);
    bool GetTrackName(const std::string& name, std::string& out);
    void ConstructTrackName(const std::string& name, std::string& out);
    void CheckTrackIsSameName();

    bool StartLoadDataToMapThread();
    static unsigned long LoadThread(void* manager);
    void EndLoad();
    bool AdmitTrack(const ScanRecord& record, int& visible);
    std::vector<std::string> FoldersToScan() const;
    void RefreshFrom(const std::vector<std::string>& folders);
    void RefreshStorage(const char* folder, int maxLength);
    void LoadTrack();

    std::vector<CTrackProxy*> m_vecTracks;  // owned, never null
    CTrackEx m_logTrack;
    CTrackMangSet* m_pSettings = nullptr;
    std::list<ScanRecord> m_lstScan;
    ITrackSaveStragy* m_pStragy = nullptr;  // owned; null while not recording
    void (*m_pPointCallback)(const TckPt&) = nullptr;
    std::atomic<void (*)()> m_pLoadCallback{nullptr};
    void (*m_pSingleTrackCallback)(CTrackProxy*) = nullptr;
    bool (*m_pSpaceCallback)(bool) = nullptr;
    bool m_bInUse = false;
    int m_iReserved = 0;
    std::vector<std::string> m_vecLoadFolders;  // as the settings named them when the load was started
    std::mutex m_loadMutex;                     // taken to start, stop and end a load
    std::intptr_t m_hLoadThread = -1;           // -1 = none
    std::atomic<bool> m_bLoading{true};

    static CTrackMan* m_pInstance;
};
