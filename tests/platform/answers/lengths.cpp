// Paths around the longest: of names that are long themselves, and of short names that can be reached in more
// characters than they need, so that nothing but the length tells one call from the other.
#include <cstdio>

#include "platform/file.h"
#include "platform/find.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

constexpr std::size_t kLengths[] = {240, 247, 248, 249, 258, 259, 260, 261, 264, 300};

std::string EntriesOf(const std::wstring& folder) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW((folder + L"\\*").c_str(), &entry);
    int count = 0;
    for (bool isOne = search != platform::kInvalidHandle; isOne;
         isOne = platform::FindNextFileW(search, &entry))
        ++count;
    platform::FindClose(search);
    return std::to_string(count) + " entries";
}

std::wstring MakeDeepFolder() {
    std::wstring folder = L"\\Long";
    platform::CreateDirectoryW(folder.c_str());
    while (folder.size() < 200) {
        folder += L"\\" + std::wstring(19, L'f');
        platform::CreateDirectoryW(folder.c_str());
    }
    return folder;
}

void LongNames(const std::wstring& folder, std::size_t length) {
    const auto named = [&](wchar_t letter) {
        return folder + L"\\" + std::wstring(length - folder.size() - 1, letter);
    };
    const std::wstring made = named(L'd'), file = named(L'x'), moved = named(L'm');
    const auto print = [&](const std::string& call, const std::wstring& path, const std::string& answer) {
        Print(call + " " + Quoted(path), answer + ", " + EntriesOf(folder));
    };
    print("make folder", made, YesNo(platform::CreateDirectoryW(made.c_str())));
    Put(file, "x");
    print("content", file, Content(file));
    print("replace", file, YesNo(platform::ReplaceFileContent(file.c_str(), "y")));
    print("move to", moved, YesNo(platform::MoveFileW(file.c_str(), moved.c_str())));
    print("delete", moved, YesNo(platform::DeleteFileW(moved.c_str())));
}

void Restore() {
    for (const wchar_t* folder : {L"\\Lengths", L"\\Lengths\\dir"}) platform::CreateDirectoryW(folder);
    platform::DeleteFileW(L"\\Lengths\\new");
    Put(L"\\Lengths\\a.dat", "a");
}

// Of a path that leads to a file with the content "a".
void ExistingFile(const std::wstring& path) {
    const std::wstring file = L"\\Lengths\\a.dat", target = L"\\Lengths\\new";
    const auto print = [&](const std::string& call, bool answer) {
        Print(call + " " + Quoted(path), YesNo(answer) + " " + Content(file) + " " + Content(target));
        Restore();
    };
    Restore();
    Print("content " + Quoted(path), Content(path));
    for (const wchar_t* mode : {L"rb", L"rb+", L"wb", L"ab"}) {
        std::FILE* stream = platform::_wfopen(path.c_str(), mode);
        platform::fclose(stream);
        print("open " + Quoted(mode), stream != nullptr);
    }
    print("replace", platform::ReplaceFileContent(path.c_str(), "new"));
    print("move from", platform::MoveFileW(path.c_str(), target.c_str()));
    print("delete", platform::DeleteFileW(path.c_str()));
}

// Of paths that lead to nothing yet.
void NewNames(std::size_t length) {
    for (const std::wstring& path : Lengthened(L"\\Lengths", L"new", length)) {
        const std::wstring target = L"\\Lengths\\new";
        Restore();
        Put(path, "made");
        Print("make " + Quoted(path), Content(target));
        Restore();
        const bool isReplaced = platform::ReplaceFileContent(path.c_str(), "new");
        Print("replace missing " + Quoted(path), YesNo(isReplaced) + " " + Content(target));
        Restore();
        const bool isMoved = platform::MoveFileW(L"\\Lengths\\a.dat", path.c_str());
        Print("move to " + Quoted(path), YesNo(isMoved) + " " + Content(target));
    }
    for (const std::wstring& path : Lengthened(L"\\Lengths", L"dir", length))
        Print("make existing folder " + Quoted(path), YesNo(platform::CreateDirectoryW(path.c_str())));
    for (const std::size_t way : {0u, 1u}) {
        const std::wstring name = L"made" + std::to_wstring(length) + L"-" + std::to_wstring(way);
        const std::wstring path = Lengthened(L"\\Lengths", name, length)[way];
        const bool isMade = platform::CreateDirectoryW(path.c_str());
        Print("make folder " + Quoted(path), YesNo(isMade) + " " + EntriesOf(L"\\Lengths"));
    }
}

}  // namespace

std::vector<std::wstring> Lengthened(const std::wstring& folder, const std::wstring& name, std::size_t length) {
    const std::size_t missing = length - folder.size() - name.size();
    std::wstring stays(missing % 2 == 0 ? L"\\\\" : L"\\");
    while (stays.size() < missing) stays += L".\\";
    return {folder + std::wstring(missing, L'\\') + name, folder + stays + name};
}

void Lengths() {
    const std::wstring folder = MakeDeepFolder();
    for (const std::size_t length : kLengths) LongNames(folder, length);
    for (const std::size_t length : {258u, 259u, 260u, 261u, 300u}) {
        for (const std::wstring& path : Lengthened(L"\\Lengths", L"a.dat", length)) ExistingFile(path);
        NewNames(length);
    }
    // In UTF-8 these are longer than a name may be on many a file system.
    Restore();
    for (const std::size_t units : {84u, 85u, 86u, 100u, 200u}) {
        const std::wstring path = L"\\Lengths\\" + std::wstring(units, L'\x4E2D');
        Put(path, "x");
        Print("content " + Quoted(path), Content(path));
        platform::DeleteFileW(path.c_str());
    }
}

}  // namespace answers
