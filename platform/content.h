// What a file is to hold, handed over piece by piece, so that nobody needs all of it in memory at once.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace platform {

// Takes the next piece of a content, which is the caller's and need not outlive the call. False when no more is
// wanted, and from then on.
using TakePiece = std::function<bool(std::string_view piece)>;

// Hands all pieces over, in order, and stops when no more is wanted. May be asked more than once, and says the
// same each time. What it throws goes through to whoever asked for the file to be written.
using ContentInPieces = std::function<void(const TakePiece& take)>;

// `bytes` outlives the result.
ContentInPieces InOnePiece(const std::string& bytes);

// All pieces in memory.
std::string Whole(const ContentInPieces& content);

}  // namespace platform
