// Files by the system's descriptors, as far as systems differ there. One form a system: host/posix,
// host/windows. Paths are UTF-8. What fails leaves its reason in errno.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

int OpenToRead(const std::string& path);   // also a device or a pipe; -1 when it fails
int OpenToWrite(const std::string& path);  // what is there already: a device, a pipe
// 0 at the end, -1 when it fails.
std::ptrdiff_t ReadSome(int descriptor, char* buffer, std::size_t size);

// A new file of this name, whose "XXXXXX" becomes something that no file there has; -1 when it fails.
int MakeNewFile(std::string& name);
// All of the text. False when it fails.
bool WriteAll(int descriptor, std::string_view text);
bool Commit(int descriptor);  // waits until it is on storage
void CloseFile(int descriptor);

// A new folder, named likewise; false when it fails.
bool MakeNewFolder(std::string& name);

}  // namespace host
