#include "host/tracks/track_header.h"

namespace host {
namespace {

void ComputeFromPoints(CTrackProxy& stored, TrackHeader& header) {
    Points points;
    stored.GetPtList(points);
    CTrack track;
    for (const TckPt& point : points) track.AppendPt(point, false);
    track.Calculate(true);
    header.points = track.GetPtCount();
    header.length = track.GetLength();
    header.area = track.GetArea();
    header.start = track.GetStartTime();
    header.end = track.GetEndTime();
}

}  // namespace

TrackHeader HeaderOf(CTrackProxy& track) {
    TrackHeader header;
    header.name = track.GetName();
    header.file = track.GetTrkFileName();
    header.color = track.GetColor();
    header.shown = track.GetVisible();
    header.points = track.GetPtCount();
    header.length = track.GetLength();
    if (header.points == 0 || header.length == 0.0) {
        ComputeFromPoints(track, header);
    } else {
        header.area = track.GetArea();
        header.start = track.GetStartTime();
        header.end = track.GetEndTime();
    }
    track.SetName(header.name.c_str());
    track.SetVisible(header.shown);
    return header;
}

std::vector<TrackHeader> HeadersOf(const std::vector<CTrackProxy*>& tracks) {
    std::vector<TrackHeader> headers;
    for (CTrackProxy* track : tracks) headers.push_back(HeaderOf(*track));
    return headers;
}

}  // namespace host
