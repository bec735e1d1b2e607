// A file's whole content exchanged in one step, and files in the system's temporary folder.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <tuple>

#include "platform/file.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/file_kind.h"
#include "platform/posix/host_path.h"

namespace platform {

namespace {

// The file that is to get the content: what a link leads to, not the link.
struct Target {
    std::string path;
    std::string folder;
    std::optional<struct stat> existing;
};

std::optional<Target> FindTarget(const wchar_t* path) {
    const auto file = FindFileOnHost(path);
    if (!file) return std::nullopt;
    Target target{file->Text(), file->folder, std::nullopt};
    struct stat status;
    if (!file->exists) return target;
    char* real = ::realpath(target.path.c_str(), nullptr);
    if (real == nullptr) return std::nullopt;
    target.path = real;
    std::free(real);
    target.folder = target.path.substr(0, target.path.rfind('/'));
    if (::stat(target.path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || IsReadOnly(status))
        return std::nullopt;
    target.existing = status;
    return target;
}

// The owner and rights of the file that is replaced, as far as process and file system can give them; content
// is not lost for the sake of rights. A change of owner takes the set-id bits away: so it comes first.
void TakeOver(const struct stat& existing, int descriptor) {
    constexpr auto kSameUser = static_cast<uid_t>(-1);
    if (::fchown(descriptor, existing.st_uid, existing.st_gid) != 0)
        std::ignore = ::fchown(descriptor, kSameUser, existing.st_gid);
    std::ignore = ::fchmod(descriptor, existing.st_mode & 07777);
}

void TakeOverTimes(const struct stat& existing, int descriptor) {
    const struct timespec times[2] = {existing.st_atim, existing.st_mtim};
    std::ignore = ::futimens(descriptor, times);
}

bool WritePieces(int descriptor, const ContentInPieces& content) {
    bool isWritten = true;
    content([&](std::string_view piece) {
        isWritten = isWritten && WriteAll(descriptor, piece);
        return isWritten;
    });
    return isWritten;
}

// `keepsTimes`: those of the file that is replaced.
bool Fill(Descriptor& file, const Target& target, const ContentInPieces& content, bool keepsTimes) {
    if (target.existing) TakeOver(*target.existing, file.Get());
    if (!WritePieces(file.Get(), content)) return false;
    if (target.existing && keepsTimes) TakeOverTimes(*target.existing, file.Get());
    return Commit(file.Get()) && file.Close();
}

// Room first, then content: on a full storage the old content is still whole.
bool WriteDirectly(const Target& target, const std::string& bytes) {
    Descriptor file(::open(target.path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
    const auto size = static_cast<off_t>(bytes.size());
    if (!file.IsOpen()) return false;
    if (target.existing && size > target.existing->st_size && ::posix_fallocate(file.Get(), 0, size) != 0) {
        std::ignore = ::ftruncate(file.Get(), target.existing->st_size);
        return false;
    }
    return WriteAll(file.Get(), bytes) && ::ftruncate(file.Get(), size) == 0 && Commit(file.Get()) &&
           file.Close();
}

// Errors of a folder, or of a file mounted by itself, that say nothing about writing the file.
bool IsFolderClosed(int error) { return error == EACCES || error == EPERM || error == EROFS || error == EBUSY; }

enum class Exchanged { Yes, FolderClosed, No };

Exchanged Refused(int error) { return IsFolderClosed(error) ? Exchanged::FolderClosed : Exchanged::No; }

bool IsStill(const FileState& read, const std::string& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && StateIn(status) == read;
}

bool ChangePlaces(const std::string& a, const std::string& b) {
    return ::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
}

// A file on its way to another's place; gone at the end unless it stays.
class Draft {
 public:
    explicit Draft(const std::string& path) : m_path(path) {}
    ~Draft() { Discard(); }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    const std::string& Path() const { return m_path; }
    void Stay() { m_stays = true; }
    void Discard() {
        if (!m_stays) ::unlink(m_path.c_str());
        m_stays = true;
    }
    bool RenameTo(const std::string& path) {
        m_stays = ::rename(m_path.c_str(), path.c_str()) == 0;
        return m_stays;
    }

 private:
    const std::string& m_path;
    bool m_stays = false;
};

// Somebody may come between a look and a rename, all the more as one commit of the storage may wake both. So
// the files change places, and what was replaced is looked at once more: if it is not what was read, it goes
// back. A file system that cannot do that has the look alone.
bool PutInPlaceOf(const FileState& read, Draft& draft, const std::string& path) {
    if (!IsStill(read, path)) return false;
    if (!ChangePlaces(draft.Path(), path)) return (errno == EINVAL || errno == ENOSYS) && draft.RenameTo(path);
    if (IsStill(read, draft.Path())) {
        draft.Discard();
        return true;
    }
    if (!ChangePlaces(draft.Path(), path)) draft.Stay();  // somebody else's, and there is no other of it
    return false;
}

// Whatever file is there, when none was `read`. Anything but Yes leaves it as it was.
Exchanged Exchange(const Target& target, const ContentInPieces& content, const FileState* read) {
    std::string path;
    Descriptor file = MakeUniqueFile(target.folder, target.existing ? 0600 : 0666, path);
    if (!file.IsOpen()) return Refused(errno);
    Draft draft(path);
    if (!Fill(file, target, content, read != nullptr)) return Exchanged::No;
    const bool isInPlace =
        read == nullptr ? draft.RenameTo(target.path) : PutInPlaceOf(*read, draft, target.path);
    if (!isInPlace) return Refused(errno);
    CommitFolder(target.folder);
    return Exchanged::Yes;
}

std::string TemporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

}  // namespace

bool ExchangeFileContent(const wchar_t* path, const FileState& read, const std::string& bytes) {
    const auto target = FindTarget(path);
    const bool isStillThere = target && target->existing && StateIn(*target->existing) == read;
    return isStillThere && Exchange(*target, InOnePiece(bytes), &read) == Exchanged::Yes;
}

bool ReplaceFileContent(const wchar_t* path, const ContentInPieces& content) {
    const auto target = FindTarget(path);
    if (!target) return false;
    const Exchanged exchanged = Exchange(*target, content, nullptr);
    return exchanged == Exchanged::Yes ||
           (exchanged == Exchanged::FolderClosed && WriteDirectly(*target, Whole(content)));
}

std::FILE* CreateTemporaryFile(std::string& path) {
    std::string pattern = TemporaryFolder() + "/qtrace-XXXXXX";
    Descriptor made(::mkostemp(pattern.data(), O_CLOEXEC));
    std::FILE* stream = made.IsOpen() ? ::fdopen(made.Get(), "wb+") : nullptr;
    if (stream != nullptr) {
        made.Release();
        path = pattern;
    } else if (made.IsOpen()) {
        ::unlink(pattern.c_str());
    }
    return stream;
}

std::FILE* OpenTemporaryFile(const std::string& path) { return std::fopen(path.c_str(), "rbe"); }

bool DeleteTemporaryFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

}  // namespace platform
