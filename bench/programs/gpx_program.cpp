// What bench_processes starts: a program of ours, linked statically, as a device's application may be.
//   gpx_program ROOT FILE [COPY]         reads a GPX file, and writes it again; device paths below the root
#include "qtrace.h"

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    SetDeviceRoot(argv[1]);
    CTrack track;
    if (!track.Load(std::string(argv[2]))) return 1;
    if (argc == 3) return 0;
    track.Calculate(true);
    return track.Save(std::string(argv[3])) ? 0 : 1;
}
