// Numbers for searches and threads. A registry looks a number up before it touches anything: a wrong, old or
// foreign handle is harmless. Searches get the odd numbers and threads the even ones, so neither is taken for
// the other.
#pragma once

#include "platform/find.h"

namespace platform {

inline constexpr Handle kFirstSearch = 1;
inline constexpr Handle kFirstThread = 2;
inline constexpr Handle kHandleStep = 2;

}  // namespace platform
