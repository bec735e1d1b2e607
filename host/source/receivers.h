// Receivers at work: on a serial line, and behind the GPS daemon. Where a system has none of them here, there
// are no speeds, and opening tells so. One form a system: host/posix, host/windows.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/source/byte_source.h"
#include "host/source/fix_source.h"

namespace host {

// The speeds of a line that --baud may name.
std::vector<int> BaudRates();

// Whether the path names a serial line, also one that is not there now.
bool IsSerialDevice(const std::string& path);

// `say` hears that the receiver is gone, and that it is back. A device that may not be read: why.
std::variant<std::unique_ptr<ByteSource>, std::string> OpenSerialLine(const std::string& path,
                                                                      std::optional<int> baud, Say say);

// "HOST:PORT", or what is missing of it as usual. A daemon that is not there is waited for.
std::variant<std::unique_ptr<FixSource>, std::string> OpenGpsd(const std::string& address, Say say);

}  // namespace host
