// What the library asks of the storage, seen and made to fail by a test: the program's own definitions of these
// calls come before the C library's, note what is asked for, and then do the real thing.
#pragma once

#include <string>
#include <vector>

namespace storage_calls {

inline std::vector<std::string> commits;  // names of the files, in order
inline std::string failingCommit;         // the file that the storage does not take
inline bool allCommitsFail = false;
inline bool cutsFail = false;
inline int moves = 0;
inline int movesToFail = 0;  // the next so many

}  // namespace storage_calls
