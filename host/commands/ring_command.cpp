// `qtrace ring`: what the live recording's files hold, also while a recorder is writing them.
#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/App.hpp>

#include "host/program.h"
#include "host/recording/recording_view.h"
#include "host/settings/host_settings.h"
#include "host/text/display_width.h"
#include "host/text/json.h"
#include "host/text/number_text.h"
#include "host/text/text.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

struct Arguments {
    bool asJson = false;
    bool withRecords = false;
};

const char* NameOf(RecordState state) {
    switch (state) {
        case RecordState::Good:
            return "good";
        case RecordState::Empty:
            return "empty";
        default:
            return "damaged";
    }
}

const char* NameOf(NoteState state) {
    switch (state) {
        case NoteState::None:
            return "none";
        case NoteState::Waiting:
            return "waiting";
        default:
            return "damaged";
    }
}

std::vector<TckPt> GoodPoints(const RingImage& ring) {
    std::vector<TckPt> points;
    for (const RingRecord& record : ring.records)
        if (record.state == RecordState::Good) points.push_back(record.point);
    return points;
}

// --- Text ---

void PrintLine(const std::string& label, const std::string& text) {
    std::cout << label << std::string(label.size() < 12 ? 12 - label.size() : 1, ' ') << Printable(text)
              << '\n';
}

void PrintRecord(const RingRecord& record) {
    std::cout << "  slot " << record.slot << "  offset " << record.offset << "  " << NameOf(record.state);
    if (record.state == RecordState::Good)
        std::cout << "  " << UtcText(record.point.lTime) << "  " << Decimals(record.point.dLatitude, 6) << ' '
                  << Decimals(record.point.dLongitude, 6) << "  " << Decimals(record.point.dAltitude, 1)
                  << " m  " << Decimals(record.point.dSpeed, 1) << " m/s";
    std::cout << '\n';
}

void PrintSlices(const std::vector<std::vector<TckPt>>& slices) {
    PrintLine("  slices", std::to_string(slices.size()));
    for (const auto& slice : slices)
        std::cout << "    " << UtcText(slice.front().lTime) << " to " << UtcText(slice.back().lTime) << ", "
                  << Counted(slice.size(), "point", "points") << '\n';
}

std::string HealthText(const RingImage& ring) {
    std::string text = std::to_string(ring.Count(RecordState::Good)) + " good";
    if (const auto empty = ring.Count(RecordState::Empty); empty != 0)
        text += ", " + std::to_string(empty) + " empty";
    return text + ", " + std::to_string(ring.Count(RecordState::Damaged)) + " damaged";
}

std::string NoteText(NoteState state) {
    if (state == NoteState::Waiting) return "waiting: the next start completes the append";
    return NameOf(state);
}

void PrintFiles(const RecordingView& files) {
    const RingImage& ring = files.image;
    PrintLine("Ring", Utf8Of(files.ring));
    PrintLine("  recorder",
              files.recorder ? "process " + *files.recorder + " is recording" : "none is running");
    PrintLine("  state", ring.isConsistent ? "consistent"
                                           : "damaged: header and size do not agree; qtrace salvage reads it");
    PrintLine("  size", Counted(ring.size, "byte", "bytes"));
    PrintLine("  header", "start " + std::to_string(ring.start) + ", count " + std::to_string(ring.count));
    PrintLine("  capacity", std::to_string(kRingCapacity) + " records, " +
                                Decimals(100.0 * ring.count / static_cast<double>(kRingCapacity), 1) +
                                " % filled");
    PrintLine("  records", HealthText(ring));
    const auto slices = SlicesOf(GoodPoints(ring));
    PrintLine("  oldest", slices.empty() ? "none" : UtcText(slices.front().front().lTime));
    PrintLine("  newest", slices.empty() ? "none" : UtcText(slices.back().back().lTime));
    PrintSlices(slices);
    PrintLine("  head file", files.head ? "good, 96 bytes" : files.hasHeadFile ? "damaged" : "missing");
    PrintLine("  note", NoteText(files.note));
    PrintLine("  saved", files.isSaved ? "all of it" : "not all of it, or nothing");
}

// --- JSON ---

Json JsonOf(const RingRecord& record) {
    Json object = {{"slot", record.slot}, {"offset", record.offset}, {"state", NameOf(record.state)}};
    if (record.state != RecordState::Good) return object;
    object.update({{"time", IsoTime(record.point.lTime)},
                   {"latitude", record.point.dLatitude},
                   {"longitude", record.point.dLongitude},
                   {"altitude", record.point.dAltitude + 0.0},  // no -0 for the user
                   {"speed", record.point.dSpeed},
                   {"course", record.point.fCourse}});
    return object;
}

Json JsonOf(const std::vector<std::vector<TckPt>>& slices) {
    Json list = Json::array();
    for (const auto& slice : slices)
        list.push_back({{"start", IsoTime(slice.front().lTime)},
                        {"end", IsoTime(slice.back().lTime)},
                        {"points", slice.size()}});
    return list;
}

Json JsonOf(const std::optional<HeadImage>& head) {
    if (!head) return nullptr;
    return {{"name", ToUtf8(head->name)}, {"visible", head->visible}, {"color", ColorText(head->color)}};
}

Json JsonOf(const RecordingView& files) {
    const RingImage& ring = files.image;
    const auto slices = SlicesOf(GoodPoints(ring));
    return {{"file", Utf8Of(files.ring)},
            {"recorder", TextOrNull(files.recorder.value_or(""))},
            {"consistent", ring.isConsistent},
            {"saved", files.isSaved},
            {"size", ring.size},
            {"start", ring.start},
            {"count", ring.count},
            {"capacity", kRingCapacity},
            {"good", ring.Count(RecordState::Good)},
            {"empty", ring.Count(RecordState::Empty)},
            {"damaged", ring.Count(RecordState::Damaged)},
            {"oldest", slices.empty() ? Json(nullptr) : IsoTime(slices.front().front().lTime)},
            {"newest", slices.empty() ? Json(nullptr) : IsoTime(slices.back().back().lTime)},
            {"slices", JsonOf(slices)},
            {"head", JsonOf(files.head)},
            {"note", NameOf(files.note)}};
}

void PrintAsJson(const RecordingView& files, bool withRecords) {
    Json object = JsonOf(files);
    if (withRecords) {
        object["records"] = Json::array();
        for (const RingRecord& record : files.image.records) object["records"].push_back(JsonOf(record));
    }
    PrintJson(object);
}

int Show(const Arguments& arguments, const HostSettings& settings) {
    ApplySettings(settings);  // names are in its code page
    const RecordingView files = ViewRecording(DeviceFolder(settings));
    if (!files.exists) return Fail("ring", "there is no recording: " + Utf8Of(files.ring) + " does not exist");
    if (!files.problem.empty()) return Fail("ring", Utf8Of(files.ring) + " cannot be read: " + files.problem);
    if (arguments.asJson) {
        PrintAsJson(files, arguments.withRecords);
        return kDone;
    }
    PrintFiles(files);
    if (arguments.withRecords)
        for (const RingRecord& record : files.image.records) PrintRecord(record);
    return kDone;
}

}  // namespace

void AddRingCommand(Program& program) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App& command = AddCommand(program, "ring", "Look into the files of the live recording");
    command.add_flag("--records", arguments->withRecords, "Each record in the order of the track");
    command.add_flag("--json", arguments->asJson, "Say it as JSON");
    command.footer("Nothing is changed; a recorder that runs is not disturbed.");
    command.callback([arguments, &program] { program.exitCode = Show(*arguments, program.settings); });
}

}  // namespace host
