// Making folders, moving, deleting and opening: what exists, what is missing, what is no name, and names that
// mean something else to the system below. Paths around the longest: tests/platform/answers/lengths.cpp.
#include <cstdio>
#include <initializer_list>

#include "platform/file.h"
#include "platform/find.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

// Of a file that nobody else has touched; of a state that is none where there is no file.
bool Exchange(const std::wstring& path, const char* content) {
    std::FILE* stream = platform::_wfopen(path.c_str(), L"rb");
    const auto read = platform::StateOf(stream).value_or(platform::FileState{});
    platform::fclose(stream);
    return platform::ExchangeFileContent(path.c_str(), read, content);
}

// Some files and folders, put back before every call.
void Restore() {
    for (const wchar_t* folder : {L"\\Files", L"\\Files\\dir", L"\\Files\\full", L"\\Files\\full\\in"})
        platform::CreateDirectoryW(folder);
    for (const wchar_t* file : {L"\\Files\\new", L"\\Files\\dir\\new", L"\\Files\\dir\\A.dat"})
        platform::DeleteFileW(file);
    Put(L"\\Files\\a.dat", "a");
    Put(L"\\Files\\b.dat", "b");
}

constexpr std::initializer_list<const wchar_t*> kPaths = {
    L"",
    L"\\",
    L"\\\\",
    L"\\.",
    L"\\..",
    L"\\Files",
    L"\\FILES",
    L"\\Files\\",
    L"\\Files\\a.dat",
    L"\\FILES\\A.DAT",
    L"/Files/a.dat",
    L"Files\\a.dat",
    L"\\\\Files\\\\a.dat",
    L"\\Files\\a.dat\\",
    L"\\Files\\a.dat.",
    L"\\Files\\a.dat ",
    L"\\Files\\a.dat\\x",
    L"\\Files\\b.dat",
    L"\\Files\\dir",
    L"\\Files\\DIR\\",
    L"\\Files\\dir\\.",
    L"\\Files\\full",
    L"\\Files\\full\\in",
    L"\\Files\\new",
    L"\\Files\\NEW",
    L"\\Files\\new\\",
    L"\\Files\\new.",
    L"\\Files\\dir\\new",
    L"\\Files\\dir\\..\\new",
    L"\\..\\Files\\new",
    L"\\No\\new",
    L"\\Files\\*",
    L"\\Files\\*.dat",
    L"\\Files\\a?dat",
    L"\\Fil*\\a.dat",
    L"\\Files\\x<",
    L"\\Files\\x>",
    L"\\Files\\x|",
    L"\\Files\\x\"",
    L"\\Files\\x:y",
    L"\\Files\\a.dat:y",
    L"\\Files\\x\ty",
    L"\\Files\\\xD83D",
    L"\\Files\\...",
    L"\\Files\\ ",
    L"\\Files.\\a.dat",
    L"\\Files \\a.dat",
};

void CleanUp(const std::wstring& path) {
    for (const wchar_t* name : {L"\\Files\\new", L"\\Files\\dir\\new"}) platform::DeleteFileW(name);
    platform::DeleteFileW(path.c_str());
}

void Folders() {
    int number = 0;
    for (const std::wstring path : kPaths) {
        Restore();
        const bool isMade = platform::CreateDirectoryW(path.c_str());
        Print("make folder " + Quoted(path), YesNo(isMade) + " " + Content(path));
        const std::wstring away = L"\\Files\\away" + std::to_wstring(number++);
        if (Content(L"\\Files\\new") == "folder") platform::MoveFileW(L"\\Files\\new", away.c_str());
        if (Content(L"\\Files\\dir\\new") == "folder") platform::MoveFileW(L"\\Files\\dir\\new", away.c_str());
    }
}

void Deletions() {
    for (const std::wstring path : kPaths) {
        Restore();
        const bool isDeleted = platform::DeleteFileW(path.c_str());
        Print("delete " + Quoted(path), YesNo(isDeleted) + " " + Content(L"\\Files\\a.dat") + " " +
                                            Content(L"\\Files\\b.dat") + " " + Content(L"\\Files\\dir"));
    }
}

void Moves() {
    for (const std::wstring from : kPaths)
        for (const std::wstring to : kPaths) {
            const bool isFolderMove = Content(from) == "folder" && from.find(L"Files\\") == std::wstring::npos;
            if (isFolderMove && to.find(L"Files") == std::wstring::npos) continue;  // the ground stays
            Restore();
            const bool isMoved = platform::MoveFileW(from.c_str(), to.c_str());
            Print("move " + Quoted(from) + " to " + Quoted(to),
                  YesNo(isMoved) + " " + Content(L"\\Files\\a.dat") + " " + Content(L"\\Files\\b.dat") + " " +
                      Content(from) + " " + Content(to));
            if (isMoved) platform::MoveFileW(to.c_str(), from.c_str());
            CleanUp(L"\\Files\\new");
        }
}

void Openings() {
    for (const std::wstring path : kPaths)
        for (const wchar_t* mode : {L"rb", L"rb+", L"rbc+", L"wb", L"wb+", L"wbc+", L"ab", L"ab+", L"wbx", L"r",
                                    L"w", L"", L"b", L"q"}) {
            Restore();
            std::FILE* stream = platform::_wfopen(path.c_str(), mode);
            Print("open " + Quoted(path) + " " + Quoted(mode), YesNo(stream != nullptr));
            platform::fclose(stream);
            CleanUp(path);
        }
}

void Contents() {
    for (const std::wstring path : kPaths) {
        Restore();
        const bool isReplaced = platform::ReplaceFileContent(path.c_str(), "new");
        Print("replace " + Quoted(path), YesNo(isReplaced) + " " + Content(path));
        CleanUp(path);
        Restore();
        const bool isExchanged = Exchange(path, "new");
        Print("exchange " + Quoted(path), YesNo(isExchanged) + " " + Content(path));
        CleanUp(path);
    }
}

// The system below has a meaning of its own for these; a device's files may have them.
void ReservedNames() {
    for (const wchar_t* name : {L"con", L"CON", L"nul", L"NUL.gpx", L"aux.gpx", L"prn", L"com1", L"COM1.gpx",
                                L"lpt9", L"com\xB9", L"conin$", L"clock$", L"con.tar.gz", L"nul ", L"aux."}) {
        const std::wstring path = std::wstring(L"\\Files\\") + name, moved = path + L".moved";
        const auto print = [&](const std::string& call, bool answer) {
            Print(call + " " + Quoted(path), YesNo(answer) + " " + Content(path) + " " + Content(moved));
        };
        Put(path, "x");
        print("make", true);
        print("replace", platform::ReplaceFileContent(path.c_str(), "new"));
        print("make folder", platform::CreateDirectoryW(path.c_str()));
        print("move from", platform::MoveFileW(path.c_str(), moved.c_str()));
        print("move to", platform::MoveFileW(moved.c_str(), path.c_str()));
        print("delete", platform::DeleteFileW(path.c_str()));
    }
}

// As it is stored, in its own letter case.
std::string StoredName(const std::wstring& path) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW(path.c_str(), &entry);
    return platform::FindClose(search) ? Quoted(entry.name) : "-";
}

void LetterCases() {
    Restore();
    Put(L"\\Files\\A.DAT", "x");
    Print("overwrite in capitals", StoredName(L"\\Files\\a.dat"));
    platform::ReplaceFileContent(L"\\Files\\B.DAT", "new");
    Print("replace in capitals", StoredName(L"\\Files\\b.dat") + " " + Content(L"\\Files\\b.dat"));
    for (const wchar_t* path : {L"\\Files\\A.dat", L"\\FILES\\a.DAT", L"\\Files\\DIR"}) {
        const bool isMoved = platform::MoveFileW(path, path);
        Print("respell " + Quoted(path), YesNo(isMoved) + " " + StoredName(path));
    }
}

}  // namespace

std::string Content(const std::wstring& path) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW(path.c_str(), &entry);
    if (search == platform::kInvalidHandle) return "-";
    platform::FindClose(search);
    if (entry.attributes == platform::kDirectoryAttribute) return "folder";
    std::FILE* stream = platform::_wfopen(path.c_str(), L"rb");
    if (stream == nullptr) return "closed";
    char text[32] = {};
    const std::size_t size = std::fread(text, 1, sizeof text, stream);
    platform::fclose(stream);
    return std::string(text, size);
}

void Put(const std::wstring& path, const char* content) {
    std::FILE* stream = platform::_wfopen(path.c_str(), L"wb");
    if (stream == nullptr) return;
    std::fputs(content, stream);
    platform::fclose(stream);
}

void FileNames() {
    Folders();
    Deletions();
    Moves();
    Openings();
    Contents();
    ReservedNames();
    LetterCases();
}

}  // namespace answers
