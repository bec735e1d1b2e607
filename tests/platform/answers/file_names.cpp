// Making folders, moving, deleting and opening: what exists, what is missing, what is no name, and paths around
// the longest.
#include <cstdio>
#include <initializer_list>

#include "platform/file.h"
#include "platform/find.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

// What stands at a path now: "-", "folder", or the content.
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

void Lengths() {
    std::wstring folder = L"\\Long";
    platform::CreateDirectoryW(folder.c_str());
    while (folder.size() < 200) {
        folder += L"\\" + std::wstring(19, L'f');
        platform::CreateDirectoryW(folder.c_str());
    }
    for (const std::size_t length : {240u, 247u, 248u, 249u, 258u, 259u, 260u, 261u, 264u, 300u}) {
        const std::wstring prefix = folder + L"\\";
        const std::wstring made = prefix + std::wstring(length - prefix.size(), L'd'),
                           file = prefix + std::wstring(length - prefix.size(), L'x'),
                           moved = prefix + std::wstring(length - prefix.size(), L'm');
        Print("make folder " + Quoted(made), YesNo(platform::CreateDirectoryW(made.c_str())));
        Put(file, "x");
        Print("content " + Quoted(file), Content(file));
        const bool isReplaced = platform::ReplaceFileContent(file.c_str(), "y");
        Print("replace " + Quoted(file), YesNo(isReplaced) + " " + Content(file));
        Print("move to " + Quoted(moved), YesNo(platform::MoveFileW(file.c_str(), moved.c_str())));
        Print("delete " + Quoted(moved), YesNo(platform::DeleteFileW(moved.c_str())));
    }
}

}  // namespace

void FileNames() {
    Folders();
    Deletions();
    Moves();
    Openings();
    Contents();
    Lengths();
}

}  // namespace answers
