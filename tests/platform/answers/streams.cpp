// What each mode does to the content of a file, what is left of one that was cut, and the program's own path in
// buffers of every size around its length.
#include <cstdio>
#include <string>

#include "platform/file.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

constexpr const wchar_t* kFile = L"\\Streams\\a.dat";

constexpr const wchar_t* kModes[] = {L"rb+",  L"rbc+", L"wb",  L"wb+",  L"wbc+",  L"ab",
                                     L"ab+",  L"abc+", L"wbx", L"wbx+", L"wbxc+", L"abx",
                                     L"rb+x", L"r+",   L"w+",  L"a+",   L"rb"};

std::string Read(std::FILE* stream, std::size_t most) {
    std::string text(most, '\0');
    text.resize(std::fread(text.data(), 1, most, stream));
    return text;
}

void Write(std::FILE* stream, const std::string& text) { std::fwrite(text.data(), 1, text.size(), stream); }

// From its start, and after what was read from it.
void WriteInEveryMode(const char* content) {
    for (const wchar_t* mode : kModes) {
        const std::string call =
            "write to [" + std::string(content == nullptr ? "-" : content) + "] " + Quoted(mode);
        for (const bool readsFirst : {false, true}) {
            platform::DeleteFileW(kFile);
            if (content != nullptr) Put(kFile, content);
            std::FILE* stream = platform::_wfopen(kFile, mode);
            const std::string read = stream != nullptr && readsFirst ? Read(stream, 2) : "";
            if (stream != nullptr && readsFirst) std::fseek(stream, 0, SEEK_CUR);
            if (stream != nullptr) Write(stream, "new\r\n\x1A.");
            platform::fclose(stream);
            const std::string written = Content(kFile);
            Print(call, YesNo(stream != nullptr) + " [" + read + "] [" + Hex(written) + "]");
        }
    }
}

// Cut with something written but not flushed, and with all of it in the file; then written on at the cut's end.
void Cut(std::int64_t size, bool isFlushed) {
    Put(kFile, "abcdef");
    std::FILE* stream = platform::_wfopen(kFile, L"rbc+");
    std::fseek(stream, 3, SEEK_SET);
    Write(stream, "UVWXYZ");
    if (isFlushed) platform::fflush(stream);
    const bool isCut = platform::CutBack(stream, size);
    std::fseek(stream, static_cast<long>(size), SEEK_SET);
    Write(stream, "on");
    const bool isDone = platform::fflush(stream) == 0;
    platform::fclose(stream);
    Print("cut to " + std::to_string(size) + (isFlushed ? " flushed" : ""),
          YesNo(isCut) + " " + YesNo(isDone) + " [" + Hex(Content(kFile)) + "]");
}

void CutAndClose(std::int64_t size) {
    Put(kFile, "abcdef");
    std::FILE* stream = platform::_wfopen(kFile, L"rbc+");
    Write(stream, "UVWXYZ");
    const bool isCut = platform::CutBack(stream, size);
    platform::fclose(stream);
    Print("cut and close " + std::to_string(size), YesNo(isCut) + " [" + Hex(Content(kFile)) + "]");
}

// Of the path itself only what does not depend on where the program lies.
void ModulePaths() {
    constexpr unsigned kRoom = 1024;
    wchar_t whole[kRoom];
    const unsigned length = platform::GetModuleFileNameW(whole, kRoom);
    const auto print = [&](const std::string& call, unsigned size) {
        wchar_t path[kRoom + 1];
        for (wchar_t& unit : path) unit = L'#';
        const unsigned result = platform::GetModuleFileNameW(path, size);
        const unsigned kept = size == 0 ? 0 : result < size ? result : size - 1;
        const bool isFront = std::wstring(whole, kept) == std::wstring(path, kept);
        Print("module path in " + call, (result == length ? "length"
                                         : result == size ? "size"
                                                          : "neither") +
                                            std::string(" ") + YesNo(isFront) + " " +
                                            YesNo(size != 0 && path[kept] == L'\0') + " " +
                                            YesNo(path[size] == L'#'));
    };
    for (const unsigned size : {0u, 1u, 2u, 5u}) print(std::to_string(size), size);
    print("length - 1", length - 1);
    print("length", length);
    print("length + 1", length + 1);
    print("length + 2", length + 2);
}

}  // namespace

void Streams() {
    platform::CreateDirectoryW(L"\\Streams");
    for (const char* content : {static_cast<const char*>(nullptr), "", "abcdefghijkl"})
        WriteInEveryMode(content);
    for (const std::int64_t size : {0, 2, 3, 5, 6, 8, 9, 12})
        for (const bool isFlushed : {false, true}) Cut(size, isFlushed);
    for (const std::int64_t size : {0, 3, 6, 8}) CutAndClose(size);
    ModulePaths();
}

}  // namespace answers
