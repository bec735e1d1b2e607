// Streams: modes, and which of them are committed. How a system opens and commits: platform/stream_on_system.h.
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/code_page.h"
#include "platform/device_path.h"
#include "platform/file.h"
#include "platform/stream_on_system.h"

namespace platform {

namespace {

// As the runtime takes it for a descriptor that is open already.
const char* ForRuntime(wchar_t kind, bool isUpdated) {
    if (kind == L'r') return isUpdated ? "rb+" : "rb";
    if (kind == L'w') return isUpdated ? "wb+" : "wb";
    return isUpdated ? "ab+" : "ab";
}

// Nothing for a mode that starts with none of r, w and a.
std::optional<StreamMode> ParseMode(std::wstring_view mode) {
    const auto has = [mode](wchar_t letter) { return mode.find(letter) != std::wstring_view::npos; };
    const wchar_t kind = mode.empty() ? L'\0' : mode.front();
    if (kind != L'r' && kind != L'w' && kind != L'a') return std::nullopt;
    return StreamMode{.reads = kind == L'r' || has(L'+'),
                      .writes = kind != L'r' || has(L'+'),
                      .creates = kind != L'r',
                      .truncates = kind == L'w',
                      .appends = kind == L'a',
                      .isExclusive = has(L'x'),
                      .isCommitted = has(L'c'),
                      .forRuntime = ForRuntime(kind, has(L'+'))};
}

// The streams that are committed by each flush. Never destroyed: streams may be closed while the process ends.
struct CommittedStreams {
    std::mutex guard;
    std::unordered_set<const std::FILE*> streams;
};

CommittedStreams& TheCommittedStreams() {
    static CommittedStreams& committed = *new CommittedStreams;
    return committed;
}

// For every opened stream: it may have the address of one that was closed behind our back.
void SetCommitted(const std::FILE* stream, bool isCommitted) {
    CommittedStreams& committed = TheCommittedStreams();
    const std::lock_guard lock(committed.guard);
    if (isCommitted)
        committed.streams.insert(stream);
    else
        committed.streams.erase(stream);
}

bool IsCommitted(const std::FILE* stream) {
    CommittedStreams& committed = TheCommittedStreams();
    const std::lock_guard lock(committed.guard);
    return committed.streams.count(stream) != 0;
}

// A path or mode in the ANSI code page; empty when it does not convert or is too long for a path.
std::wstring Wide(const char* text) {
    wchar_t wide[kPathLimit];
    if (MultiByteToWideChar(kAnsiCodePage, text, -1, wide, static_cast<int>(kPathLimit)) == 0) return {};
    return wide;
}

}  // namespace

std::FILE* fopen(const char* path, const char* mode) { return _wfopen(Wide(path).c_str(), Wide(mode).c_str()); }

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    const auto parsed = mode == nullptr ? std::nullopt : ParseMode(mode);
    if (!parsed) return nullptr;
    bool isNew = false;
    const int descriptor = OpenDescriptor(path, *parsed, isNew);
    std::FILE* stream = descriptor < 0 ? nullptr : StreamOf(descriptor, *parsed);
    if (stream == nullptr) return nullptr;
    SetCommitted(stream, parsed->isCommitted);
    // What is committed later would be lost with the name of a file that storage does not know yet.
    if (parsed->isCommitted && isNew) CommitName(path);
    return stream;
}

int fflush(std::FILE* stream) {
    if (stream == nullptr || std::fflush(stream) != 0) return EOF;
    return !IsCommitted(stream) || CommitContent(stream) ? 0 : EOF;
}

bool CutBack(std::FILE* stream, std::int64_t size) {
    std::clearerr(stream);
    return DropAndCut(stream, size);
}

int fclose(std::FILE* stream) {
    if (stream == nullptr) return EOF;
    SetCommitted(stream, false);
    return std::fclose(stream);
}

}  // namespace platform
