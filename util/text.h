// Conversions between the ANSI code page, UTF-8 and UTF-16, and folding of letter case. Plain functions without
// state; any thread. Buffers are the caller's; sizes count bytes for narrow buffers and elements for wide ones.
// Wide strings hold UTF-16 code units, one an element. Input that a code page lacks is replaced, never refused.
#pragma once

#include <string>

#include "util/export.h"

// ANSI code page to UTF-8, terminator included when it fits. Returns the number of UTF-16 units of `src` with
// its terminator, as a sign of success (not the bytes written), or -1, with dst untouched. A result that does
// not fit is not reported; what dst then holds is not defined. All pointers non-null.
QTRACE_API int AnsicToUTF_8(const char* src, char* dst, int dstSize);

// UTF-8 to ANSI code page, cut as WcharToChar cuts. Returns as AnsicToUTF_8 does.
QTRACE_API int UTF_8ToAnsic(const char* src, char* dst, int dstSize);

// ANSI code page to UTF-16. Writes no terminator and fills nothing up: clear dst first. Null src: nothing is
// done.
QTRACE_API void AnsciToWchar(const char* src, wchar_t* dst, int dstCount);

// UTF-16 to ANSI code page. A text of at most dstSize bytes: dst is cleared and gets the text and a terminator,
// which lies at dst[dstSize] when the text fills dst, so give dst room for one byte more. A longer text is cut
// before the first character that does not fit, counting one byte for U+0000 to U+00FF and two for all others;
// then dst is neither cleared nor terminated. Null src: nothing is done.
QTRACE_API void WcharToChar(char* dst, const wchar_t* src, int dstSize);

// ANSI code page to a wide string, for texts of at most 260 UTF-16 units.
QTRACE_API void ChangeStringToWString(std::wstring& out, const std::string& in);

// Upper case, in place, for the letters a to z; every other byte or unit stays, in every locale.
QTRACE_API void UpString(std::string& s);
QTRACE_API void UpWString(std::wstring& s);  // likewise
