// What we state about a document when we write it: the time of writing, and a name made of it.
#pragma once

#include "gpx/gpx.h"

// Metadata with name "track" and the local clock's time text, and that text as time; everything else empty.
GpxMetadata StampedMetadata();
