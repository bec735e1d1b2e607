// Moving an entry of this machine without ever replacing another, also between two volumes.
#pragma once

#include <string>

namespace platform {

// False, with `from` where it was and `to` as it was, when `to` exists or the move is not possible.
// Between two volumes a file is copied, committed and then deleted at its old place; folders are not.
bool MoveWithoutReplacing(const std::wstring& from, const std::wstring& to);

}  // namespace platform
