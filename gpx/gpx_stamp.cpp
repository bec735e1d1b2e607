#include "gpx/gpx_stamp.h"

#include <cstdio>

#include "platform/clock.h"

GpxMetadata StampedMetadata() {
    SYSTEMTIME now{};
    platform::GetLocalTime(&now);
    GpxMetadata metadata{};
    // KEPT: the Z would mean UTC, but every device writes its local clock so.
    // Pinned by TrackGpxSave.Metadata_IsTheLocalClockAndATrackTextOfIt.
    std::snprintf(metadata.time, sizeof metadata.time, "%d-%02d-%02dT%02d:%02d:%02dZ", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond);
    std::snprintf(metadata.name, sizeof metadata.name, "track%.58s", metadata.time);
    return metadata;
}
