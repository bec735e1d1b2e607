// What the manual page says beyond commands and options, in roff. Commands and options: host/settings/manual.h.
#pragma once

namespace host {

inline constexpr const char* kManualDescription = R"(.SH DESCRIPTION
.B qtrace
records the route of a GPS receiver fix by fix, keeps a library of recorded tracks, and exchanges them with other
programs as GPX.
A power cut or a kill costs no more than the points of the batch that was waiting; the recording is continued where it
stood, until it has been saved as a track.
.PP
Everything lies in one folder, the device folder: the recording that is under way and the saved tracks.
Saved tracks are plain GPX files.
A track is named as
.B "qtrace list"
shows it, or by its file; letter case does not matter.
.PP
Times are UTC.
Results go to standard output; messages and questions to standard error.
)";

inline constexpr const char* kManualSections = R"(.SH CONFIGURATION
Every setting may stand in a configuration file in the TOML format, under the name of its option without the dashes; what
belongs to a command stands below the command's name.
The command line goes before the file.
.PP
.nf
.RS
color = "ff8000"
code\-page = 65001

[record]
mode = "distance"
distance = 10
.RE
.fi
.SH FILES
.TP
.I $XDG_CONFIG_HOME/qtrace/config.toml
The settings, unless
.B \-\-config
or
.B QTRACE_CONFIG
names another file.
.TP
.I $XDG_DATA_HOME/qtrace
The device folder, unless
.B \-\-device
or
.B QTRACE_DEVICE
names another.
In it lie:
.RS
.TP
.I App/Log.dat
The recording: a ring of up to 10000 points.
.TP
.I App/LogHd.dat
Its name and color.
.TP
.I App/Log.dat.saved
Says that all of the recording is in a saved track.
.TP
.I App/Log.dat.redo
The note of the batch in hand, for the case that the power goes while it is written.
.TP
.I UserData/Track/*.gpx
The saved tracks.
.TP
.I UserData/Track/TmpTk*.bk
A damaged recording, kept as it was found.
.TP
.I SDMMC/Track/*.gpx
The saved tracks on the storage card.
.RE
.SH ENVIRONMENT
.TP
.B QTRACE_DEVICE
The device folder.
.TP
.B QTRACE_CONFIG
The configuration file.
.TP
.B XDG_DATA_HOME
Where the device folder is if
.B QTRACE_DEVICE
is not set;
.I \(ti/.local/share
if it is not set either.
.TP
.B XDG_CONFIG_HOME
Where the configuration is if
.B QTRACE_CONFIG
is not set;
.I \(ti/.config
if it is not set either.
.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Failed; the message says why, and nothing that was recorded is lost.
.TP
.B 2
Wrong usage: nothing was touched.
.SH EXAMPLES
Record a log, and see what came of it:
.PP
.nf
.RS
qtrace record drive.nmea
qtrace list
.RE
.fi
.PP
Record from a receiver at a serial port until Ctrl\-C, a point every ten metres:
.PP
.nf
.RS
qtrace record \-\-mode distance \-\-distance 10 /dev/ttyUSB0
.RE
.fi
.PP
Keep the tracks of a bicycle apart from the others:
.PP
.nf
.RS
QTRACE_DEVICE=\(ti/bicycle qtrace record ride.nmea
.RE
.fi
)";

}  // namespace host
