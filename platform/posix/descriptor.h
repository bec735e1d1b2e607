// File descriptors: owned, written to the end, and brought to storage.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Closes its descriptor at the end; may hold none.
class Descriptor {
 public:
    explicit Descriptor(int descriptor) : m_iDescriptor(descriptor) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool IsOpen() const { return m_iDescriptor >= 0; }
    int Get() const { return m_iDescriptor; }
    int Release();

    // False when the system reports a late write error.
    bool Close();

 private:
    int m_iDescriptor;
};

// Writes all of it from the current position on, however many calls that takes.
bool WriteAll(int descriptor, std::string_view bytes);

// Waits until storage has the file's content and size.
bool Commit(int descriptor);

// Waits until storage has the names in a folder. File systems that cannot are left at that.
void CommitFolder(const std::string& folder);

// A new file of a name of its own in the folder; the name goes to `path`. None open when it cannot be made.
Descriptor MakeUniqueFile(const std::string& folder, unsigned mode, std::string& path);

}  // namespace platform
