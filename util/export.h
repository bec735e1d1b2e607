// QTRACE_API marks what libqtrace exports; everything else stays inside it.
// A host that links the static library on Windows defines QTRACE_STATIC.
#pragma once

#if defined(_WIN32)
#if defined(QTRACE_BUILDING)
#define QTRACE_API __declspec(dllexport)
#elif defined(QTRACE_STATIC)
#define QTRACE_API
#else
#define QTRACE_API __declspec(dllimport)
#endif
#else
#define QTRACE_API __attribute__((visibility("default")))
#endif
