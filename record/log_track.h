// CTrackEx: the live recording. It grows batch by batch, is on disk at every moment, and survives a restart.
// Its files, byte for byte: docs/formats/log-file.md. Slices: log_track.cpp. Files: log_track_files.cpp,
// log_track_restore.cpp. What an append writes is decided in record/ring_plan.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "track/track.h"
#include "util/export.h"

namespace log_file {
struct RingHeader;
class AppendRedo;
}  // namespace log_file

// In memory the recording is cut into slices: tracks of consecutive points without a gap of s_iDiffTime seconds
// or more. One instance lives in CTrackMan; the host's thread only. Owns its two streams and its slices.
// CloseEx() frees the slices, the destructor does not: close first. Failure is a false result; no exception but
// for want of memory.
class QTRACE_API CTrackEx : public CTrack {
 public:
    static constexpr int s_iDiffTime = 1800;  // [s] a gap of at least this begins a new slice

    CTrackEx();                                  // capacity 10000 points
    explicit CTrackEx(unsigned short capacity);  // points
    CTrackEx(const CTrackEx& other);  // copies what CTrack holds; files and slices stay with the other
    CTrackEx& operator=(const CTrackEx&) = delete;
    ~CTrackEx() override;  // closes the files

    long GetStartTime() override;         // of the first slice; 0 without slices
    long GetEndTime() override;           // of the last slice; 0 without slices
    double GetLength() override;          // [m] sum over the slices
    unsigned long GetPtCount() override;  // points in the recording

    // Names of the point file and the head file, without folder: they lie in the program's folder. Non-null.
    void SetFilePathEx(const char* pointFileName, const char* headFileName);
    // Whether a full recording overwrites its oldest points or takes no more.
    void SetOverWrt(bool overwrite);

    // Opens both files, making what is missing, and restores the recording from them, its points sorted by
    // time. A damaged point file is moved aside and what is valid in it is kept. An open recording is closed
    // first. False when a file can be neither opened nor made, or a name is not set.
    bool OpenEx();

    // Writes a batch and waits until the storage has it; stamps the check sequence into the caller's points.
    // False, with nothing recorded, when the files are not open, the batch is empty or holds capacity points or
    // more, or the recording is full and must not overwrite. One that must not overwrite and becomes full takes
    // the points that fit and drops the rest; that is true as well. So is a batch that the storage failed to
    // take: nobody looks at the writes.
    bool AppendEx(std::vector<TckPt, je_allocator<TckPt>>& pts);

    // Closes both files, frees the slices; true.
    bool CloseEx();

    void SavePropertyData();  // writes name, colour, visibility and statistics to the head file, when open
    // Writes both files anew from the slices, oldest point first; to be called after slices were cleared. False
    // when no name is set or the point file cannot be made or written: an older one then stays as it was.
    bool SaveSliceData();

    // The slot of the oldest point in the point file. False, with `start` untouched, when it cannot be read.
    bool GetTmpTrackStart(int& start);
    // Whether a batch of newCount points would overwrite the current trip's first point (settings:
    // TmpTkStartPos), while the settings ask for the recording to be saved in full.
    bool IsNeedSaveAllTmpTrk(int newCount);

    int GetSliceNum();                   // number of slices
    const CTrack* GetSliceTrace(int i);  // owned by the recording; null for an index out of range
    void ClearSliceTrace(int i);         // removes a slice from memory; SaveSliceData() then mends the file
    void ClearAllSliceTrace();           // likewise, all of them
    void DoSlice();                      // cuts the own point list into slices and empties it

    // Appends the points that are at most `seconds` old by the UTC clock, oldest first, back to the first older
    // one.
    void GetTopPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int seconds);

    // Replaces `out` by the whole recording from its end to its start, thinned to 25 m (times 2 for each step
    // of `level`, as CTrack::SimplifyPt takes it): the way back.
    void SimplifyAllTrackPtAndReverse(std::vector<TckPt, je_allocator<TckPt>>& out, int level);

 protected:
    // The files, by their streams; nothing is done for a null stream.
    void SavePtListInfo2(void* stream);  // the whole point file from the slices, not wrapped, then flushed
    // Into the own point list, oldest first. False when a record could not be read: zeros stand for it.
    bool LoadPtListInfo2(void* stream, int count, int start);
    // Salvages the valid records among `size` bytes into the own point list, sorted by time: at most the
    // capacity, the newest. `step` above 0: what an invalid record takes from those bytes.
    void RecoverPtList(void* stream, int step, int size);
    // Moves the point file to \TmpTk.bk in the saved-track folder. When that name is taken, to a numbered name
    // beside it; when it cannot go to that folder, beside the point file. It stays where it is once all these
    // names are taken.
    void BackTmpTrkFile();

    // Adds the first `count` points of a batch to the slices. lastPt: the newest point before the batch, null
    // when there was none; oldCount: the point file's record count before it.
    void AddPtLstToTrkLst(std::size_t count, const std::vector<TckPt, je_allocator<TckPt>>& pts,
                          const TckPt* lastPt, std::size_t oldCount);

 private:
    void InitData();  // drops the slices and measures the gaps of the own point list
    CTrack& AddSlice();
    void FreeSlices();
    void DropOldest(std::size_t excess);
    const TckPt* NewestPoint() const;  // null without points

    static std::string PathOf(const std::string& fileName);
    bool OpenHeadFile();
    bool OpenPointFile();
    void FinishLastAppend();  // what a power cut interrupted
    bool CommitPointFile();   // false when something could not be written
    void TakeBackAppend(const log_file::RingHeader& before);
    bool FinishLastSalvage();  // likewise
    bool IsSalvageLeft() const;
    bool RewritePointFile();  // from the slices; false, with the file as it was, when it cannot be written
    bool MendPointFile();
    bool KeepInMemory(const std::vector<TckPt, je_allocator<TckPt>>& pts);
    std::size_t RoomInMemory(std::size_t wanted) const;
    std::string PointFileFromSlices();
    bool RestoreRing();
    bool LoadRing(const log_file::RingHeader& header);
    bool SetRingAside();
    bool RingFitsCapacity(log_file::RingHeader& header);
    bool AidSaveFile();  // writes both files anew
    std::vector<TckPt, je_allocator<TckPt>> AllPoints() const;

    std::FILE* m_pPointFile = nullptr;
    std::string m_strPointFile;
    std::FILE* m_pHeadFile = nullptr;
    std::string m_strHeadFile;
    std::unique_ptr<log_file::AppendRedo> m_pRedo;  // the note of the append in hand
    std::vector<CTrack*> m_vecSlices;               // owned, oldest first, none without points
    std::vector<double> m_vecGaps;                  // [s] scratch: time before each of the own points
    bool m_bOverWrt = false;
    std::uint16_t m_usMaxPtCount;
    std::uint32_t m_uPtCount = 0;
    std::uint32_t m_uUnwritten = 0;  // points in memory for which the storage had no room
    bool m_bNoRing = false;          // the point file is none that can be appended to: a write to it failed
};
