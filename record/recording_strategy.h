// The recording strategies: which fixes become points of the live recording. Inner to the library; the manager
// makes one when recording starts (library/track_manager.h), by the record mode of the settings. Where the
// chosen points go: record/log_track.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "track/point.h"
#include "util/je_allocator.h"

// Holds the points chosen and not yet handed on. Fixes without time, and fixes older than the one before, are
// ignored. The host's thread only.
class ITrackSaveStragy {
 public:
    virtual ~ITrackSaveStragy();

    // 0: nothing to do. 1: the fix was taken in. 2: the points chosen have reached the batch limit, hand them
    // on now.
    virtual int AddFixPt(const TckPt& fix) = 0;
    virtual void ClearSavePtLst() = 0;  // forgets the chosen points, not the run that is under way
    virtual void GetSavePtLst(
        std::vector<TckPt, je_allocator<TckPt>>& out) = 0;  // replaces the content of `out`
    // Appends the chosen points that are at most `seconds` old by the UTC clock.
    virtual void GetRecentPtLst(std::vector<TckPt, je_allocator<TckPt>>& out, int seconds);

 protected:
    // False for a fix that is to be ignored.
    bool IsTimely(const TckPt& fix) const;
    int BatchState(std::size_t limit) const { return m_vecSavePt.size() < limit ? 1 : 2; }

    std::int32_t m_lLastFixTime = 0;  // [s] 0 = no fix seen yet
    std::vector<TckPt, je_allocator<TckPt>> m_vecSavePt;
};

// What all strategies do alike with the points they have chosen.
class CChosenPoints : public ITrackSaveStragy {
 public:
    void ClearSavePtLst() override;
    void GetSavePtLst(std::vector<TckPt, je_allocator<TckPt>>& out) override;
};

// Chooses a fix every `interval` seconds.
class CTrackTimeStragy : public CChosenPoints {
 public:
    explicit CTrackTimeStragy(std::uint32_t interval);  // [s] 0 chooses every fix
    int AddFixPt(const TckPt& fix) override;  // nonzero for every timely fix, also for those not chosen

 private:
    static constexpr std::int32_t s_iBatchSeconds = 60;

    std::uint32_t m_uInterval;
    std::uint32_t m_uBatchSize;  // a minute's worth; 0 for intervals above a minute: every answer is 2
};

// Chooses a fix whenever the run since the last one chosen is complete; what completes a run is each strategy's
// own. The fix chosen is the one that began the run. Steps shorter than 5 s are measured by the reported
// speeds, longer ones by the positions.
class CRunStragy : public CChosenPoints {
 public:
    int AddFixPt(const TckPt& fix) override;

 protected:
    CRunStragy(double distanceBreak, std::size_t batchLimit);
    virtual bool IsRunComplete(const TckPt& fix) const = 0;

    std::vector<TckPt, je_allocator<TckPt>> m_vecPendingPt;  // the run's first fix and its newest
    double m_dDistanceBreak;                                 // [m]
    double m_dAccumulated = 0.0;                             // [m] length of the run

 private:
    int CompleteRun(const TckPt& fix);
    void ContinueRun(const TckPt& fix);

    std::size_t m_batchLimit;
};

// A run is complete when it is `distanceBreak` metres long.
class CTrackDistStragy : public CRunStragy {
 public:
    explicit CTrackDistStragy(double distanceBreak);

 protected:
    bool IsRunComplete(const TckPt& fix) const override;

 private:
    static constexpr std::int32_t s_iBatchLimit = 30;
};

// A run is complete when it is `distanceBreak` metres long or `timeBreak` seconds old.
class CTrackAutoStragy : public CRunStragy {
 public:
    CTrackAutoStragy(double distanceBreak, std::uint32_t timeBreak);

 protected:
    bool IsRunComplete(const TckPt& fix) const override;

 private:
    static constexpr std::int32_t s_iBatchLimit = 60;

    std::uint32_t m_uTimeBreak;  // [s]
};
