// ITrack: what every track can do, whether it holds its points (track/track.h, record/log_track.h) or is the
// handle of a stored one (library/track_proxy.h).
#pragma once

#include <string>
#include <vector>

#include "track/point.h"
#include "util/export.h"
#include "util/je_allocator.h"

// Times are seconds since 1970 without time-zone shift, lengths metres, areas square metres, colours
// 0x00BBGGRR, names in the ANSI code page. No operation is guarded: one thread at a time for each track.
class QTRACE_API ITrack {
 public:
    ITrack() = default;
    ITrack(const ITrack&) = default;             // copies name and title
    ITrack& operator=(const ITrack&) = default;  // copies name and title
    virtual ~ITrack();

    virtual long GetStartTime() = 0;           // [s] 0 = not known
    virtual long GetEndTime() = 0;             // [s] 0 = not known
    virtual double GetLength() = 0;            // [m]
    virtual double GetArea() = 0;              // [m^2] never negative
    virtual unsigned long GetPtCount() = 0;    // number of points
    virtual const std::string& GetName();      // owned by the track, valid until its name changes
    virtual void SetName(const char*) = 0;     // non-null
    virtual unsigned long GetColor() = 0;      // 32 bits
    virtual void SetColor(unsigned long) = 0;  // the low 32 bits count
    virtual bool GetVisible() = 0;             // whether the map shows it
    virtual void SetVisible(bool) = 0;         // likewise
    // The points where the motion starts, stops or turns, and one about every 10 s of movement, in track order.
    // Replaces the vector's content, but leaves it alone when there is no point.
    virtual void GetKeyPtList(std::vector<TckPt, je_allocator<TckPt>>&) = 0;
    virtual bool Save(void*) = 0;  // what the argument is, and what false means, is told by each kind of track
    virtual bool Load(void*) = 0;  // likewise
    virtual void Init() = 0;       // back to the values of a new track

 protected:
    std::string m_strName;   // what GetName hands out
    std::string m_strTitle;  // second text, the name in a GPX document
};
