// Qtrace: records the route of a navigation device, keeps a library of tracks, exchanges GPX.
// The one header to include.
//
// clang-format off
//   CTrackMan       the library as a whole: recording, list of tracks, callbacks   library/track_manager.h
//   CTrackMangSet   its settings                                                   record/settings.h
//   CTrackProxy     the handle of a stored track                                   library/track_proxy.h
//   CTrackEx        the live recording                                             record/log_track.h
//   CTrack, ITrack  a track in memory                                              track/track.h, track/itrack.h
//   TckPt           one recorded fix                                               track/point.h
//   free functions  geodesy, text, time and paths                                  track/geodesy.h, util/*.h
//   device          where the device's file tree lies on this machine              platform/device.h
// clang-format on
#pragma once

#include "library/track_manager.h"
#include "library/track_proxy.h"
#include "platform/device.h"
#include "record/log_track.h"
#include "record/settings.h"
#include "track/geodesy.h"
#include "track/itrack.h"
#include "track/point.h"
#include "track/track.h"
#include "util/je_allocator.h"
#include "util/paths.h"
#include "util/text.h"
#include "util/time.h"
