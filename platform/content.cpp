#include "platform/content.h"

#include "platform/file.h"

namespace platform {

ContentInPieces InOnePiece(const std::string& bytes) {
    return [&bytes](const TakePiece& take) { take(bytes); };
}

std::string Whole(const ContentInPieces& content) {
    std::string whole;
    content([&](std::string_view piece) {
        whole += piece;
        return true;
    });
    return whole;
}

bool ReplaceFileContent(const wchar_t* path, const std::string& bytes) {
    return ReplaceFileContent(path, InOnePiece(bytes));
}

}  // namespace platform
