// The source that a command line asks for.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include "host/recording/record_options.h"
#include "host/source/fix_source.h"

namespace host {

// Opened as far as it has to be there: a log, a document, a device that may not be read. A daemon and a device
// that is missing are waited for later. Otherwise says why not; nothing else has been touched then.
std::variant<std::unique_ptr<FixSource>, std::string> OpenSource(const RecordArguments& arguments, Say say);

}  // namespace host
