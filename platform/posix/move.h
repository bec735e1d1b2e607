// Moving an entry of this machine without ever replacing another, also between two file systems.
#pragma once

#include <string>

namespace platform {

// False, with `from` where it was and `to` as it was, when `to` exists or the move is not possible.
// Between two file systems a file is copied, committed and then deleted at its old place; folders are not.
bool MoveWithoutReplacing(const std::string& from, const std::string& to);

}  // namespace platform
