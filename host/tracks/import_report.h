// What became of the files of an import: as text while it goes on, or as JSON at its end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/tracks/gpx_reader.h"

namespace host {

struct ImportedTrack {
    std::string name;    // in the library, UTF-8; empty when the track was not imported
    std::string wanted;  // that it was to have
    std::size_t points = 0;
    std::size_t segments = 0;
    std::uint64_t badPositions = 0, badTimes = 0, badNumbers = 0;
    std::uint64_t timesBack = 0;  // points that are older than the one before
    std::string skipped;          // why it was left out though nothing is wrong
    std::string problem;          // why it could not be imported
};

struct ImportedFile {
    std::string name;
    std::vector<ImportedTrack> tracks;
    GpxOutcome outcome;
    std::string problem;  // with the document, its place included; empty when it is whole

    std::size_t Imported() const;
    bool IsGood() const;  // nothing failed
};

// What to say about a file's document; empty when it is whole and held a track with points.
std::string ProblemOf(const ImportedFile& file);

void PrintImport(const ImportedFile& file);                      // standard output
void PrintImportAsJson(const std::vector<ImportedFile>& files);  // likewise

}  // namespace host
