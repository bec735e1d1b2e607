// Log.dat.redo, the note of the append in hand. A ring file's header and its records lie in different places,
// so a power cut between the two writes would leave a file that fits neither, and is given up as damaged. So
// what an append will write is noted and committed before the ring is touched, and written once more when a
// recording is opened. The bytes: docs/formats/log-file.md. What an append writes: record/ring_plan.h. Inner to
// the library.
#pragma once

#include <cstdio>
#include <optional>
#include <vector>

#include "record/ring_plan.h"
#include "track/point.h"
#include "util/je_allocator.h"

namespace log_file {

inline constexpr char kRedoSuffix[] = ".redo";  // behind the point file's name

// The note, with its file. Where the file cannot be made or written, appends go on without the protection.
class AppendRedo {
 public:
    AppendRedo() = default;
    ~AppendRedo() { Close(); }
    AppendRedo(const AppendRedo&) = delete;
    AppendRedo& operator=(const AppendRedo&) = delete;

    void Open(const char* path);  // device path; makes the file when it is missing
    void Close();                 // a recording closed in order needs no note: it is made void, unless kept

    // Notes, and commits, what is about to be written to `ring`, whose header is `before`.
    void Note(std::FILE* ring, RingHeader before, const RingWrite& plan,
              const std::vector<TckPt, je_allocator<TckPt>>& batch);
    // Makes the note void, and commits that; to be called before the ring is written in any other way than by
    // an append.
    void Forget();
    // The ring is not as it should be, and cannot be mended now: closing leaves the note for the next start.
    void Keep() { m_bKept = true; }
    // Writes what is noted to the ring, when the note is whole and the ring is the one it was made for, before
    // or after the append or between; writing it twice does no harm. The header that the ring had before, or
    // nullopt when nothing was written. Flushing, and looking for write errors, is the caller's.
    std::optional<RingHeader> Replay(std::FILE* ring) const;

 private:
    std::FILE* m_pFile = nullptr;
    bool m_bNoted = false;
    bool m_bKept = false;
};

}  // namespace log_file
