// Where a document goes: standard output, or a file that appears whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// Takes a document piece by piece. False when there is no use in going on.
using TextSink = std::function<bool(std::string_view)>;

// Makes a file in that folder that nothing else has, ".qtrace-PROCESS-XXXXXX.tmp": by this name one that a
// killed process has left behind is known. The descriptor and the path; negative, and errno says why, when it
// cannot be.
int MakeTemporary(const std::filesystem::path& folder, std::string& path);

// A file is written under a temporary name beside its place and takes the place when it is complete and on
// storage; a file that is there already is left alone unless `overwrite`, and its owner and rights stay. A link
// keeps leading to its file, which is made where it is missing. Devices and pipes are written to as they are.
class OutputFile {
 public:
    // A path, or "-" for standard output.
    OutputFile(const std::string& path, bool overwrite);
    ~OutputFile();  // without Finish(): nothing has happened
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool Write(std::string_view text);  // false after a problem
    TextSink Sink() {
        return [this](std::string_view text) { return Write(text); };
    }

    // Puts the file in its place. Otherwise says what went wrong, now or earlier.
    std::optional<std::string> Finish();
    const std::optional<std::string>& Problem() const { return m_problem; }

 private:
    void OpenTemporary();
    void WriteOut();
    void TakePlace();
    void Remember(const char* what);

    std::string m_path;
    std::string m_temporary;  // empty when the bytes go straight to the path
    std::string m_waiting;
    std::optional<std::string> m_problem;
    bool m_overwrite;
    int m_descriptor = -1;
};

// Makes `text` the content of the file, in the same way; its folders, too, where they are missing. Otherwise
// says why not, and the file is as it was.
std::optional<std::string> ReplaceContent(const std::filesystem::path& file, std::string_view text);

}  // namespace host
