// CTrackProxy: the handle of one stored track. It knows the file, the names and the header; points are read
// when asked for and let go again. The list of handles: library/track_manager.h. The file itself:
// docs/formats/gpx.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "track/itrack.h"
#include "track/track.h"
#include "util/export.h"

// Head only until an operation needs the points, and again once it is done; SimplyTrack and SaveTrackPtLst keep
// the track loaded. A header value of 0 counts as not known and is read from the file at each query: so does an
// empty track its point count. A file that cannot be read leaves the values as they are. Owns the track it has
// loaded. Threads: a handle of the manager's list belongs to the host's thread, or to the loading thread before
// it is in the list. A handle that the host made itself, of a path, may be used by any thread, one at a time,
// also beside others of the same file, as long as it stays away from the manager: storing, reversing and
// deleting tracks are for the host's thread. The settings of the device (platform/device.h) do not change
// meanwhile.
class QTRACE_API CTrackProxy : public ITrack {
 public:
    CTrackProxy();  // no file
    explicit CTrackProxy(
        const char* path);  // of a stored track; nothing is read yet. Device path, ANSI code page

    // Stores `track` as a new file of its name, in the saved-tracks folder or, unless `saved`, the auto-save
    // folder of the medium that the manager chooses, and becomes its handle. It failed when
    // track.IsSaveSus() is false afterwards: without a name, a storage place or its folders. It is true also
    // when the file could not be written, as on a full or read-only medium, or for a name that no file may
    // have: look for the file where it matters. The track stays the caller's in every case.
    CTrackProxy(CTrack& track, bool saved);

    // Copies every member. Copy only handles without a loaded track: both would own it.
    CTrackProxy(const CTrackProxy& other);
    // Takes the other's header values, and its display name as file name; the path becomes that name in the
    // folder Track of the program's folder, the identifier 0. Display name and write time stay. A loaded track
    // is let go, not freed.
    CTrackProxy& operator=(const CTrackProxy& other);
    ~CTrackProxy() override;

    long GetStartTime() override;  // [s]
    long GetEndTime() override;
    double GetLength() override;  // [m]
    double GetArea() override;    // [m^2]
    unsigned long GetPtCount() override;
    const std::string& GetName() override;    // display name; the document's, or the file's when that is empty
    void SetName(const char* text) override;  // at most 32 bytes are kept; in memory, until SaveTrackData
    unsigned long GetColor() override;        // as read last; never reads the file
    void SetColor(unsigned long color) override;
    bool GetVisible() override;              // true also while it cannot be read
    void SetVisible(bool visible) override;  // in memory, until SaveTrackData
    void GetKeyPtList(
        std::vector<TckPt, je_allocator<TckPt>>& out) override;  // untouched when there is no point
    bool Save(void* stream) override;                            // does nothing; true
    bool Load(void* ignored) override;  // reads the header; false, with nothing changed, when it cannot be read
    void Init() override;               // forgets file name, header and identifier; path and display name stay

    void SetID(unsigned int id);          // given by the manager; 0 = none
    unsigned int GetID();                 // 0 = none
    void SetLstWriteTime(long time);      // [s] of the last save
    long GetLstWriteTime();               // [s] 0 = never
    const char* GetTrackPath();           // valid until the path changes
    void SetTrackPath(std::string path);  // nothing is read or written
    const std::string& GetTrkFileName();  // without folder and extension
    // Renames the file. Nothing changes when that fails, for instance because the new name exists, or for null.
    // A name with backslashes leads to another folder: give names that a file may have (GetString_1 makes
    // them).
    void SetTrkFileName(const char* newName);

    void GetPtList(std::vector<TckPt, je_allocator<TckPt>>& out);  // replaces the content of `out`
    void GetPtList(TckPt* buffer, int count);                      // as CTrack::GetPtList
    void GetSimplifyPtLst(
        std::vector<TckPt, je_allocator<TckPt>>& out);  // thinned to 2 m; replaces the content
    // Thinned to 2 m, or 25 m when `wide`, doubled `level` times.
    void GetSimplifyPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int level, bool wide);
    void SimplyTrack();  // loads the track and thins it; it stays loaded
    void Caculate();     // header values anew from the points; nothing is written

    // Writes name, colour, visibility and header values into the file, whose points of its first trk stay.
    // False when the file cannot be read; then it is not written.
    bool SaveTrackData();
    // Writes the loaded track as a record stream over the beginning of the file; only for files of that form.
    void SaveTrackPtLst();
    void DestoryData();  // deletes the file

    // A reversed copy as a new track of that name and colour, shown while fewer than 10 tracks are;
    // deleteOriginal takes the track out of the library that is called like this file, after which this handle
    // may be gone. Without a new name, or under that of the file, only start and end time of this file are
    // written. Of a handle whose header was never read (Load does) no name of the file is known: then nothing
    // is deleted, and under the file's name the copy takes the file's place. False when nothing could be
    // stored.
    bool ReverseTrack(const char* newName, bool deleteOriginal, bool showIfRoom, unsigned int color);

    static std::string g_strTrackFlag;  // magic text of the record stream

 private:
    friend struct TrackProxyInside;  // the tests' way to the operations below

    CTrack* GetTrack();
    void DeleteTrack();
    bool LoadTrackData();
    bool LoadHeadInfo(std::string path);
    bool SaveHeadInfo(std::string path);
    bool Save(const char* name);
    bool StoreNewTrack(CTrack& track, bool saved);
    void TakeStatistics(CTrack& track);

    std::string m_strTrkFileName;
    std::string m_strName;
    std::string m_strTrackPath;
    CTrack* m_pTrack = nullptr;
    unsigned long m_ulPtCount = 0;
    long m_lStartTime = 0;
    long m_lEndTime = 0;
    double m_dLength = 0.0;
    double m_dArea = 0.0;
    unsigned long m_ulColor = 0;
    int m_iVisible = -1;  // -1 not known, 0 hidden, otherwise shown
    std::vector<TckPt, je_allocator<TckPt>> m_vecPtLst;
    unsigned int m_uID = 0;
    long m_lLstWriteTime = 0;
};
