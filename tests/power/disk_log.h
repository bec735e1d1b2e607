// What a program did to its files, as the shim writes it down (tests/power/shim.cpp) and the laboratory reads
// it (tests/power/disk.h). A file has a number of its own, which it keeps when it is renamed.
#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <vector>

namespace disk_log {

constexpr char kCreate = 'C', kExisting = 'E', kTruncate = 'T', kWrite = 'W', kSync = 'S', kSyncFolder = 'D',
               kRename = 'R', kUnlink = 'U', kFolder = 'K', kMark = 'M';

struct Record {
    char what = 0;
    int file = 0;
    long number = 0;   // offset of a write, size of a truncation
    std::string text;  // path, or the bytes written
    std::string more;  // the new path
};

inline std::string Line(char what, int file, long number, std::string_view text, std::string_view more) {
    std::string line(1, what);
    for (const long field :
         {static_cast<long>(file), number, static_cast<long>(text.size()), static_cast<long>(more.size())})
        line += ' ' + std::to_string(field);
    line += '\n';
    line += text;
    line += more;
    return line;
}

// Takes the records apart again; a last one that is not whole is left out.
inline std::vector<Record> Read(std::string_view log) {
    std::vector<Record> records;
    while (!log.empty()) {
        const std::size_t end = log.find('\n');
        if (end == std::string_view::npos) break;
        long fields[4] = {};
        const char* from = log.data() + 1;
        for (long& field : fields) from = std::from_chars(from + 1, log.data() + end, field).ptr;
        const auto text = static_cast<std::size_t>(fields[2]), more = static_cast<std::size_t>(fields[3]);
        if (log.size() < end + 1 + text + more) break;
        records.push_back({log[0], static_cast<int>(fields[0]), fields[1],
                           std::string(log.substr(end + 1, text)),
                           std::string(log.substr(end + 1 + text, more))});
        log.remove_prefix(end + 1 + text + more);
    }
    return records;
}

}  // namespace disk_log
