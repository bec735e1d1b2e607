#include "host/source/receivers.h"

#include <utility>

#include "host/source/gpsd_source.h"
#include "host/source/serial_device.h"

namespace host {

std::variant<std::unique_ptr<ByteSource>, std::string> OpenSerialLine(const std::string& path,
                                                                      std::optional<int> baud, Say say) {
    auto device = std::make_unique<SerialDevice>(path, baud, std::move(say));
    if (const auto problem = device->OpenFirst()) return *problem;
    return device;
}

std::variant<std::unique_ptr<FixSource>, std::string> OpenGpsd(const std::string& address, Say say) {
    return std::make_unique<GpsdSource>(GpsdAddress::From(address), std::move(say));
}

}  // namespace host
