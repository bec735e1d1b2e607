// Documents as the tests of the GPX exchange see them: written to and read from files of a device of their own.
#pragma once

#include <string>

#include "tests/gpx/imported.h"
#include "tests/support/device.h"

using ImportWay = bool (CGPXTransmit::*)(const std::wstring&, GpxTrackInfo*);

class GpxTest : public DeviceTest {
 protected:
    GpxTest() { m_info.points = &m_points; }

    // The bytes of the document that is written for m_metadata, m_info and m_points.
    std::string Exported() {
        ExportTo(L"\\Track\\exported.gpx");
        return BytesOf("\\Track\\exported.gpx");
    }
    bool ExportTo(const std::wstring& path) {
        std::filesystem::create_directories(OnDisk("\\Track"));
        CGPXTransmit transmit;
        transmit.SetMetadata(&m_metadata);
        transmit.SetTrackInfo(&m_info);
        return transmit.ExportGpx(path);
    }

    // Puts the document into a file and imports it; what `imported` holds before is what it keeps where the
    // document says nothing.
    bool Import(const std::string& document, Imported& imported, ImportWay way = &CGPXTransmit::ImportGpx) {
        std::filesystem::remove(OnDisk("\\Track\\imported.gpx"));  // written over, it would wait for the disk
        Write("\\Track\\imported.gpx", document);
        return ImportFile(L"\\Track\\imported.gpx", imported, way);
    }
    bool ImportFile(const std::wstring& path, Imported& imported, ImportWay way = &CGPXTransmit::ImportGpx) {
        CGPXTransmit transmit;
        transmit.SetMetadata(&imported.metadata);
        imported.isRead = (transmit.*way)(path, &imported.info);
        imported.metadata = transmit.Metadata();
        imported.encoding = transmit.SourceEncoding();
        return imported.isRead;
    }

    GpxMetadata m_metadata{};
    GpxTrackInfo m_info{};
    Points m_points;
};

// A whole document around the children of a gpx element; lines end as the reader leaves them alone.
inline std::string Document(const std::string& children, const std::string& version = "1.0") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<gpx version=\"" + version + "\">" + children +
           "</gpx>\r\n";
}

// A whole document around the points of one segment.
inline std::string DocumentOfPoints(const std::string& points) {
    return Document("<trk><trkseg>" + points + "</trkseg></trk>");
}

// A fix with altitude and time.
inline TckPt Fix(double latitude, double longitude, double altitude, std::int32_t time) {
    TckPt fix{};
    fix.dLatitude = latitude;
    fix.dLongitude = longitude;
    fix.dAltitude = altitude;
    fix.lTime = time;
    return fix;
}
