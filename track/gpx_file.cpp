// A track as a GPX file: what it puts into the document's records and takes from them. The document: gpx/gpx.h.
#include <cmath>

#include "gpx/gpx.h"
#include "gpx/gpx_stamp.h"
#include "track/track.h"
#include "util/wide_path.h"

bool CTrack::Save(std::string path) {
    if (m_strTitle.empty()) m_strTitle = GetName();

    GpxTrackInfo info{};
    m_strTitle.copy(info.name, 32);
    info.number = static_cast<std::int32_t>(m_vecPtLst.size());
    info.visible = m_iVisible != 0 ? 1 : 0;
    info.color = m_ulColor;
    info.startTime = static_cast<std::int32_t>(GetStartTime());
    info.endTime = static_cast<std::int32_t>(GetEndTime());
    info.length = m_dLength;
    info.area = std::fabs(m_dArea);
    info.points = &m_vecPtLst;

    const GpxMetadata metadata = StampedMetadata();
    CGPXTransmit transmit;
    transmit.SetMetadata(&metadata);
    transmit.SetTrackInfo(&info);
    return transmit.ExportGpx(WidePath(path));
}

bool CTrack::Load(std::string path) {
    clear();
    GpxTrackInfo info{};
    info.color = m_ulColor;  // a document without our extensions leaves colour and visibility as they are
    info.visible = static_cast<std::int32_t>(m_iVisible);
    info.points = &m_vecPtLst;

    CGPXTransmit transmit;
    if (!transmit.ImportGpx(WidePath(path), &info)) {
        clear();
        return false;
    }
    m_strTitle = info.name;
    m_ulColor = info.color;
    m_iVisible = static_cast<std::uint32_t>(info.visible);
    m_lStartTime = info.startTime;
    m_lEndTime = info.endTime;
    m_dLength = info.length;
    m_dArea = info.area;
    m_strName = FileStem(path);
    return true;
}
