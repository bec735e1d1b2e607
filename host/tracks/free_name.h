// Names that no saved track has.
#pragma once

#include <string>

#include "host/settings/device_folder.h"
#include "qtrace.h"

namespace host {

// This name, or with a number behind it: no track of the manager's list and no file in the track folders has
// it. `name` as MakeTrackName gives it (host/tracks/track_name.h).
std::string FreeTrackName(CTrackMan& manager, const DeviceFolder& device, const std::string& name);

}  // namespace host
