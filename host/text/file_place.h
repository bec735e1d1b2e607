// How a new file takes its place, as far as systems differ there. One form a system: host/posix, host/windows.
// Paths are UTF-8.
#pragma once

#include <string>

namespace host {

// A new file gets owner and rights of the one that it is to replace, or those that new files have. False when
// it cannot, with the reason in errno.
bool TakeRightsOf(const std::string& file, int descriptor);

// Moves a file that is open nowhere, and waits until that is on storage. Whether the new name is taken is
// decided in the same step. Empty, or why it was not moved.
std::string MoveToPlace(const std::string& from, const std::string& to, bool overwrite);

// No other process that is running has it.
unsigned long ProcessNumber();

}  // namespace host
