#include "host/recording/recorder_lock.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cerrno>
#include <cstring>

#include "host/text/descriptor.h"
#include "host/text/file_bytes.h"
#include "host/text/utf8_path.h"

namespace host {
namespace {

enum class Locking { Done, Taken, Failed };

HANDLE HandleOf(int descriptor) { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

// One byte far behind the end: locked bytes could not be read by others, who look for the holder there.
OVERLAPPED LockedByte() {
    OVERLAPPED place{};
    place.OffsetHigh = 1;
    return place;
}

Locking Lock(int descriptor, DWORD how) {
    OVERLAPPED place = LockedByte();
    if (::LockFileEx(HandleOf(descriptor), how | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return Locking::Done;
    const DWORD problem = ::GetLastError();
    return problem == ERROR_LOCK_VIOLATION || problem == ERROR_IO_PENDING ? Locking::Taken : Locking::Failed;
}

// The holder by its number, as the file tells it. One that has just begun has not written it yet.
std::string HolderIn(const std::string& file) {
    const std::string note = ReadWholeFile(file, 100).bytes;
    const std::string number = note.substr(0, note.find('\n'));
    const bool isNumber = !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? "process " + number : "another process";
}

}  // namespace

RecorderLock::RecorderLock(const DeviceFolder& device) {
    const std::filesystem::path path = device.Recording() / "recorder.lock";
    const std::string file = Utf8Of(path);
    m_descriptor = _wopen(path.c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (m_descriptor < 0) {
        m_problem = file + " cannot be opened: " + std::strerror(errno);
        return;
    }
    const Locking locking = Lock(m_descriptor, LOCKFILE_EXCLUSIVE_LOCK);
    if (locking == Locking::Failed) m_problem = file + " cannot be locked";
    if (locking == Locking::Taken)
        m_problem = HolderIn(file) + " is recording in " + Utf8Of(device.Root()) + " already";
    if (locking != Locking::Done) return;
    _chsize(m_descriptor, 0);
    WriteAll(m_descriptor, std::to_string(::GetCurrentProcessId()) + '\n');
}

RecorderLock::~RecorderLock() {
    if (m_descriptor >= 0) CloseFile(m_descriptor);
}

bool IsLocked(const std::string& file) {
    const int descriptor = OpenToRead(file);
    if (descriptor < 0) return false;
    const bool isLocked = Lock(descriptor, 0) == Locking::Taken;
    CloseFile(descriptor);
    return isLocked;
}

// A process that we may not ask for is another's.
bool IsAlive(int process) {
    if (process <= 0) return false;
    const HANDLE opened = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (opened == nullptr) return ::GetLastError() == ERROR_ACCESS_DENIED;
    const bool isAlive = ::WaitForSingleObject(opened, 0) == WAIT_TIMEOUT;
    ::CloseHandle(opened);
    return isAlive;
}

}  // namespace host
