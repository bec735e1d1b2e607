// CTrack: a track that holds its points, with its header and cached statistics.
// Its two file forms: record_stream.cpp (raw records) and gpx_file.cpp. Thinning: thinning.cpp. Key points:
// key_points.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "track/itrack.h"
#include "track/point.h"
#include "util/export.h"
#include "util/je_allocator.h"

// An ordered list of points with name, title, colour, visibility and cached length, area, start and end time.
// The cache is valid while the calculated flag is set; while it is clear, and whenever a cached value is
// exactly 0, the getters compute anew from the points. Owns everything it holds. One thread at a time. Nothing
// here throws but for want of memory. Caches are kept as they are by clear() and Init(), on purpose: see each
// operation.
class QTRACE_API CTrack : public ITrack {
 public:
    CTrack();                     // as after Init(), no name
    CTrack(const CTrack& other);  // copies everything
    ~CTrack() override;

    // Copies name (not the title), length, area, colour, visibility and simplify distance, and takes the
    // other's points. Title, start and end time, calculated flag, epurate flag and IsSaveSus stay as they are.
    // Assigning to itself changes nothing.
    CTrack& operator=(const CTrack& other);

    // First and last point's time, whichever is smaller / larger; points between do not count. 0 without
    // points.
    long GetStartTime() override;
    long GetEndTime() override;
    double GetLength() override;  // [m] AidCalLength of the points
    double GetArea() override;    // [m^2] magnitude of AidCalArea of the points
    unsigned long GetPtCount() override;
    const std::string& GetName() override;
    void SetName(const char* name) override;  // sets name and title; any length
    unsigned long GetColor() override;
    void SetColor(unsigned long color) override;
    bool GetVisible() override;              // a new track is visible
    void SetVisible(bool visible) override;  // kept with the track's files
    void GetKeyPtList(std::vector<TckPt, je_allocator<TckPt>>& out) override;

    // The record stream, a 96-byte header and the raw points (docs/formats/record-stream.md), on an open FILE*.
    // Save writes at offset 0 with the cached statistics as they stand, so call Calculate first; above 10000
    // points it writes the header alone. False for a null stream only: write errors are not looked for.
    bool Save(void* stream) override;
    // Reads from the stream's position. False, with the track unchanged, for a null stream or one that does not
    // begin with our magic text. The statistics are the header's; the calculated flag stays as it is.
    bool Load(void* stream) override;

    // Back to a new track: no points, length and area 0, visible, default colour, epurate on, 2 m simplify
    // distance. Name and title stay, and so do the cached times, which are computed anew when asked for.
    void Init() override;

    // GPX 1.0 (docs/formats/gpx.md) at a device path in the ANSI code page. An empty title becomes the name
    // first. Length and area are the cached ones as they stand, so call Calculate first. True also when the
    // file could not be opened: look for the file where it matters. False when memory ran out. A char* that is
    // not const would be taken for a stream, here and below: pass a std::string.
    bool Save(std::string path);
    // Reads the first trk of a GPX file; the name becomes the file's, the title the document's. False for a
    // file that is no readable GPX; then the track holds no points.
    bool Load(std::string path);

    // The colour of tracks made from now on; 0x00FF0000 at first. Process-wide.
    static void SetDefaultColor(unsigned long color);

    void clear();  // no points; cached statistics stay, flagged as not calculated

    const std::vector<TckPt, je_allocator<TckPt>>& GetPtList() const;  // valid until the track changes
    // Copies the first n points to buf, which has room for them. Copies nothing unless buf is non-null and
    // 0 < n <= number of points.
    void GetPtList(TckPt* buf, int n) const;
    void GetPtList(std::vector<TckPt, je_allocator<TckPt>>& out) const;  // replaces the content of `out`

    // Computes area, length, start and end time and sets the calculated flag. `force` computes them in any
    // case.
    void Calculate(bool force);

    // Appends a point. Incremental: adds to the cached length and area as they stand and sets the calculated
    // flag; otherwise clears it.
    void AppendPt(const TckPt& pt, bool incremental);
    void AppendPt(const CTrack& other);  // appends all its points; clears the calculated flag

    // Deletes points first..last (0-based, inclusive), from the last down, or one point. Length and area are
    // mended from their cached values; the calculated flag ends up set. False, with nothing changed, for an
    // index out of range.
    bool DeletePoint(int first, int last);
    bool DeletePoint(int index);  // likewise, for one point

    // Turns the order of the points round. Cached length and area stay, the area's sign included.
    void Reverse();

    bool IsSaveSus() const;         // whether the last attempt to store this track worked, as its user set it
    void SetIsSaveSus(bool saved);  // the track itself never reads it

    // Thins the track's own points; the line moves by no more than the simplify distance. Clears the calculated
    // flag.
    void SimplifyPt();
    // Replaces `out` by a thinned copy. `level`: each step doubles the distance, 0 and below take it as set.
    // `wide` has no effect of its own: who wants the wider distance sets it. The track stays as it is.
    void SimplifyPt(std::vector<TckPt, je_allocator<TckPt>>& out, int level, bool wide) const;
    void SetSimplifyDis(double metres);  // 2 m at first; held in degrees of arc
    bool bEpurate() const;          // whether thinning also removes points that repeat the previous position
    void SetEpurate(bool epurate);  // true at first

    bool IsFreeSpaceCanStoreData();  // always true

 protected:
    void SaveHeadInfo(void* stream);  // the 96 bytes at offset 0, then a flush; nothing for a null stream
    bool LoadHeadInfo(
        void* stream);  // from the stream's position; false, with nothing changed, without the magic text
    void SavePtListInfo(void* stream);  // count and points, or nothing above 10000 points
    void LoadPtListInfo(void* stream);  // replaces the points; none for a missing, negative or too large count

    std::vector<TckPt, je_allocator<TckPt>>& OwnPoints() { return m_vecPtLst; }  // the list itself
    void ForgetStatistics() { m_bCalculated = false; }                           // clears the calculated flag

    static std::string g_strTrackFlag;  // the magic text at the start of a record stream

 private:
    static double CalTwoPointLength(const TckPt& a, const TckPt& b);   // [m]
    static double CalTwoPointChaChen(const TckPt& a, const TckPt& b);  // cross product [deg^2]
    double CalArea(const TckPt& newPt) const;  // signed area once newPt is appended [m^2]
    class Remaining;                           // the points but for a run of deleted ones
    void MendLength(const TckPt& deleted, std::size_t index, const Remaining& left);
    void MendArea(const TckPt& deleted, std::size_t index, const Remaining& left);
    void RefreshTimes();

    bool m_bSaveSus = false;
    std::vector<TckPt, je_allocator<TckPt>> m_vecPtLst;
    bool m_bCalculated = false;
    double m_dLength = 0.0;  // [m]
    double m_dArea = 0.0;    // [m^2] signed
    std::int32_t m_lStartTime = 0;
    std::int32_t m_lEndTime = 0;
    std::uint32_t m_ulColor = 0;
    std::uint32_t m_iVisible = 1;  // any nonzero value is visible, and is stored as it is
    bool m_bEpurate = true;
    double m_dSimplifyDis = 0.0;  // [deg] of arc

    static std::uint32_t s_ulDefaultColor;
};
