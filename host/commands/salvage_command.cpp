// `qtrace salvage`: what is left of a damaged recording becomes a GPX file. How records are found:
// host/recording/salvage.h.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/recording/ring_image.h"
#include "host/recording/salvage.h"
#include "host/text/display_width.h"
#include "host/text/file_bytes.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"
#include "host/tracks/track_document.h"

namespace host {
namespace {

constexpr std::uint64_t kLargest = 1'000'000'000;

struct Arguments {
    std::vector<std::string> files;
    std::string output;
    bool force = false;
};

int Fail(const std::string& message) { return host::Fail("salvage", message); }

// Where the records stand: unbroken runs of them, by their offsets.
void PrintRuns(const std::vector<SalvagedRecord>& records, std::ostream& out) {
    for (std::size_t first = 0, last = 0; first < records.size(); first = ++last) {
        while (last + 1 < records.size() && records[last + 1].offset == records[last].offset + kRecordSize)
            ++last;
        out << "  offset " << records[first].offset << ": " << Counted(last - first + 1, "record", "records")
            << '\n';
    }
}

bool SearchFile(const std::string& name, std::vector<SalvagedRecord>& found, std::ostream& out) {
    const FileBytes file = ReadWholeFile(name, kLargest);
    const bool isWhole = file.problem.empty();
    if (!isWhole) Fail(name + " cannot be read" + (file.bytes.empty() ? ": " : " to its end: ") + file.problem);
    if (file.bytes.empty() && !isWhole) return false;
    const std::vector<SalvagedRecord> records = FindRecords(file.bytes);
    out << Printable(name) << ": " << Counted(records.size(), "record", "records") << " in "
        << Counted(file.bytes.size(), "byte", "bytes") << '\n';
    PrintRuns(records, out);
    found.insert(found.end(), records.begin(), records.end());
    return isWhole;
}

void PrintSummary(const std::string& file, std::size_t records, const std::vector<Segment>& slices,
                  std::ostream& out) {
    std::size_t points = 0;
    for (const Segment& slice : slices) points += slice.size();
    out << "Written     " << Printable(file) << '\n'
        << "  points    " << points << '\n'
        << "  repeated  " << records - points << '\n'
        << "  slices    " << slices.size() << '\n'
        << "  start     " << UtcText(slices.front().front().lTime) << '\n'
        << "  end       " << UtcText(slices.back().back().lTime) << '\n';
}

// What is found is told on standard output, unless the document goes there.
int Salvage(const Arguments& arguments) {
    std::ostream& out = arguments.output == "-" ? std::cerr : std::cout;
    std::vector<SalvagedRecord> records;
    bool allWhole = true;
    for (const std::string& file : arguments.files) {
        std::error_code unknown;
        if (std::filesystem::equivalent(PathOf(file), PathOf(arguments.output), unknown))
            return Fail(arguments.output + " is one of the files to be read");
        allWhole = SearchFile(file, records, out) && allWhole;
    }
    const std::vector<TckPt> points = PointsOf(records);
    if (points.empty()) return Fail("no valid record is left; nothing was written");
    const std::vector<Segment> slices = SlicesOf(points);
    OutputFile output(arguments.output, arguments.force);
    if (!output.Problem()) WriteGpx({{"Salvaged", 0xff0000, slices}}, output.Sink());
    if (const auto problem = output.Finish()) return Fail(*problem);
    PrintSummary(arguments.output, records.size(), slices, out);
    return allWhole ? kDone : kFailed;
}

}  // namespace

void AddSalvageCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command =
        AddCommand(program, "salvage", "Take what is left of a damaged recording to a GPX file");
    command.add_option("FILE", arguments->files, "Log.dat, its backup TmpTk.bk, or what else may hold records")
        ->type_name("FILE...")
        ->required()
        ->configurable(false);
    command.add_option("-o,--output", arguments->output, "The GPX file")
        ->type_name("OUT.gpx")
        ->required()
        ->configurable(false);
    command.add_flag("--force", arguments->force, "Replace the file if it is there");
    command.footer(
        "Records are found at whatever offset they stand and by their own check sequences: a flipped bit "
        "costs\n"
        "one record, lost or added bytes cost the record that they are in. The files given are only read.");
    command.callback([arguments, &program] { program.exitCode = Salvage(*arguments); });
}

}  // namespace host
