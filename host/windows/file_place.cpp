#include "host/text/file_place.h"

#include <windows.h>

#include <system_error>

#include "host/windows/wide_text.h"

namespace host {

// It has those of its folder.
bool TakeRightsOf(const std::string&, int) { return true; }

// A file that is read-only is not replaced.
std::string MoveToPlace(const std::string& from, const std::string& to, bool overwrite) {
    const DWORD how = MOVEFILE_WRITE_THROUGH | (overwrite ? MOVEFILE_REPLACE_EXISTING : 0);
    if (::MoveFileExW(WideText(from).c_str(), WideText(to).c_str(), how)) return "";
    return std::system_category().message(static_cast<int>(::GetLastError()));
}

unsigned long ProcessNumber() { return ::GetCurrentProcessId(); }

}  // namespace host
