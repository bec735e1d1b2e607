// Searches: with and without wildcards, in every letter case, of folders that are missing, with separators
// before, between and behind.
#include <string>

#include "platform/file.h"
#include "platform/find.h"
#include "tests/platform/answers/answers.h"

namespace answers {

namespace {

void Make(const wchar_t* file) { platform::fclose(platform::_wfopen(file, L"wb")); }

void Search(const std::wstring& pattern) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW(pattern.c_str(), &entry);
    std::string found = search == platform::kInvalidHandle ? "nothing" : "";
    for (bool isOne = search != platform::kInvalidHandle; isOne;
         isOne = platform::FindNextFileW(search, &entry))
        found += Quoted(entry.name) + (entry.attributes == platform::kDirectoryAttribute ? "/ " : " ");
    Print("search " + Quoted(pattern), found);
    Print("close " + Quoted(pattern), YesNo(platform::FindClose(search)));
}

void MakeWhatIsSearched() {
    for (const wchar_t* folder : {L"\\Search", L"\\Search\\Sub", L"\\Search\\x.gpx", L"\\Search\\empty"})
        platform::CreateDirectoryW(folder);
    for (const wchar_t* name : {L"a.gpx",
                                L"B.GPX",
                                L"c.Gpx",
                                L"with space.gpx",
                                L"h.x.gpx",
                                L"\x4E2D\x6587.gpx",
                                L".gpx",
                                L"gpx",
                                L"f.gp",
                                L"g.gpx.bak",
                                L"d.gpx2",
                                L"e.gpxx",
                                L"plain",
                                L"_.gpx",
                                L"10.gpx",
                                L"9.gpx",
                                L"\xC4.gpx",
                                L"\xE9.gpx",
                                L"\x0416.gpx",
                                L"\x03B1.gpx",
                                L"\xFF21.gpx",
                                L"\xD83D\xDE00.gpx",
                                L"averylongnameofatrack.gpx"})
        Make((L"\\Search\\" + std::wstring(name)).c_str());
    Make(L"\\Search\\Sub\\in.gpx");
}

const wchar_t* const kNames[] = {L"",
                                 L"*",
                                 L"*.*",
                                 L"*.gpx",
                                 L"*.GPX",
                                 L"*.gp?",
                                 L"*.gpx*",
                                 L"*.g*",
                                 L"?.gpx",
                                 L"??.gpx",
                                 L"a*",
                                 L"A*",
                                 L"*a*",
                                 L"*.x.*",
                                 L"**",
                                 L"*x*x*",
                                 L"a.gpx",
                                 L"A.GPX",
                                 L"a.gpx ",
                                 L"a.gpx.",
                                 L"a.gpx. ",
                                 L"gpx",
                                 L".gpx",
                                 L"*.bak",
                                 L"*.no",
                                 L"no",
                                 L"plain",
                                 L"PLAIN",
                                 L"p*n",
                                 L"Sub",
                                 L"sub",
                                 L"SUB.",
                                 L"x.gpx",
                                 L"X.GPX",
                                 L".",
                                 L"..",
                                 L"...",
                                 L"a<b",
                                 L"a|b",
                                 L"a:b",
                                 L"a\"b",
                                 L"a\tb",
                                 L"\x4E2D*",
                                 L"*\x6587.gpx",
                                 L"\xE4*",
                                 L"\xC9*",
                                 L"\x0436*",
                                 L"\x0391*",
                                 L"\xFF41*",
                                 L"\xD83D\xDE00*",
                                 L"averyl~1.gpx",
                                 L"AVERYL~1.GPX",
                                 L"empty",
                                 L"in.gpx",
                                 L"a?px",
                                 L"*?",
                                 L"?*",
                                 L"10.gpx",
                                 L"1?.gpx",
                                 L"c.*",
                                 L"*.Gpx"};

}  // namespace

void Searches() {
    MakeWhatIsSearched();
    for (const wchar_t* folder :
         {L"\\Search\\", L"\\SEARCH\\", L"/Search/", L"\\Search\\\\", L"\\\\Search\\", L"Search\\",
          L"\\Search\\.\\", L"\\Search\\Sub\\..\\", L"\\..\\Search\\", L"\\Search\\Sub\\", L"\\Search\\empty\\",
          L"\\No\\", L"\\Sea*\\", L"\\Search.\\", L"\\Search \\", L"\\Search\\a.gpx\\", L"\\", L"\\\\", L""})
        for (const std::wstring name : kNames) {
            Search(folder + name);
            Search(folder + name + L"\\");
        }
    for (const wchar_t* path :
         {L"\\.", L"\\..", L"\\..\\..", L"\\Search\\..", L"\\Search\\.", L"\\Search", L"\\Search\\"})
        Search(path);
    for (const std::size_t length : {258u, 259u, 260u, 261u, 300u})
        for (const wchar_t* name : {L"a.gpx", L"A.GPX", L"*.gpx", L"no.gpx"})
            for (const std::wstring& path : Lengthened(L"\\Search", name, length)) Search(path);
    for (const platform::Handle none : {platform::kInvalidHandle, platform::Handle{0}, platform::Handle{99999}})
        Print("close " + std::to_string(none), YesNo(platform::FindClose(none)));
}

}  // namespace answers
