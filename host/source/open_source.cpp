#include "host/source/open_source.h"

#include <utility>

#include "host/source/gpx_source.h"
#include "host/source/input.h"
#include "host/source/nmea_source.h"
#include "host/source/receivers.h"

namespace host {
namespace {

using Opened = std::variant<std::unique_ptr<FixSource>, std::string>;

std::string Unreadable(const std::string& name, const std::string& why) {
    return name + " cannot be read: " + why;
}

Opened OpenGpx(const std::string& file) {
    auto source = std::make_unique<GpxSource>(file);
    if (source->WhyUnreadable()) return Unreadable(file, *source->WhyUnreadable());
    return source;
}

Opened OpenDevice(const RecordArguments& arguments, Say say) {
    auto opened = OpenSerialLine(arguments.file, arguments.baud, std::move(say));
    if (const auto* problem = std::get_if<std::string>(&opened)) return Unreadable(arguments.file, *problem);
    return std::make_unique<NmeaSource>(std::move(std::get<std::unique_ptr<ByteSource>>(opened)));
}

Opened OpenStream(const std::string& file) {
    auto input = std::make_unique<Input>(file);
    if (!input->IsOpen()) return Unreadable(input->Name(), input->Problem());
    return std::make_unique<NmeaSource>(std::move(input));
}

}  // namespace

Opened OpenSource(const RecordArguments& arguments, Say say) {
    if (arguments.gpsd) return OpenGpsd(*arguments.gpsd, std::move(say));
    if (!arguments.gpx.empty()) return OpenGpx(arguments.gpx);
    const bool isDevice = arguments.file != "-" && (arguments.baud || IsSerialDevice(arguments.file));
    return isDevice ? OpenDevice(arguments, std::move(say)) : OpenStream(arguments.file);
}

}  // namespace host
