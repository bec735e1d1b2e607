// No receiver is read here: host/windows/left_out.cpp.
#include "host/source/receivers.h"

#include <algorithm>

namespace host {

std::vector<int> BaudRates() { return {}; }

// COM3, or \\.\COM12 as those above nine are called.
bool IsSerialDevice(const std::string& path) {
    std::string name = path.starts_with("\\\\.\\") ? path.substr(4) : path;
    for (char& c : name)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return name.size() > 3 && name.starts_with("COM") &&
           std::all_of(name.begin() + 3, name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::variant<std::unique_ptr<ByteSource>, std::string> OpenSerialLine(const std::string&, std::optional<int>,
                                                                      Say) {
    return "serial lines are not read here";
}

std::variant<std::unique_ptr<FixSource>, std::string> OpenGpsd(const std::string&, Say) {
    return "the GPS daemon is not asked here";
}

}  // namespace host
