// The bytes of a file that is only looked at: never opened for writing, never changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace host {

// Reads a file, or standard input for "-", in pieces. Owns its descriptor.
class FileReader {
 public:
    explicit FileReader(const std::string& path);
    ~FileReader();
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    // Why it cannot be opened, or could not be read on; empty as long as all is well.
    const std::string& Problem() const { return m_problem; }

    // Fills the buffer as far as the file goes; 0 at its end and after a problem.
    std::size_t Read(char* buffer, std::size_t size);

 private:
    int m_descriptor = -1;
    std::string m_problem;
};

struct FileBytes {
    std::string bytes;
    std::string problem;  // empty when all of the file is there
};

// The whole file, read in one go. A file of more than `limit` bytes is a problem.
FileBytes ReadWholeFile(const std::string& path, std::uint64_t limit);

}  // namespace host
