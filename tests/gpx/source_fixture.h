// A file as it is on its way to the parser.
#pragma once

#include "gpx/gpx_source.h"
#include "tests/gpx/gpx_fixture.h"
#include "tests/support/machine.h"
#include "tests/support/meanwhile.h"

class GpxSource : public GpxTest {
 protected:
    GpxSource() { Write("\\Track\\a.gpx", ""); }

    // The file after it was read.
    std::string Rewritten(const std::string& text) {
        Write("\\Track\\a.gpx", text);
        Parsed();
        return BytesOf("\\Track\\a.gpx");
    }
    // What goes to the parser.
    std::string Parsed() {
        gpx::TextWindow text = gpx::LoadSource(L"\\Track\\a.gpx", m_encoding);
        text.ReadRest();
        return std::string(text.Text());
    }
    std::int32_t EncodingOf(const std::string& text) {
        Write("\\Track\\a.gpx", text);
        Parsed();
        return m_encoding;
    }

    std::int32_t m_encoding = -1;
};

using GpxLineEnds = GpxSource;
using GpxEncoding = GpxSource;

// So long that it is still being written when the other comes. Between the last look at it and its exchange
// nobody comes where files can change places.
class GpxLineEndsOfALongFile : public GpxSource {
 protected:
    void SetUp() override {
        if (!FilesCanChangePlaces()) GTEST_SKIP() << "files cannot change places here";
    }
    GpxLineEndsOfALongFile() {
        std::string text;
        while (text.size() < 4'000'000) text += "<a>of 1,000 lines and more</a>\n";
        Write("\\Track\\a.gpx", text);
    }
    template <typename Other>
    void ParseWhile(Other other) {
        WithOther(
            OnDisk("\\Track"), [this] { Parsed(); }, other);
    }
};
