// Line ends of random files against a plain walk through the bytes.
#include <random>
#include <string>
#include <string_view>

#include "tests/gpx/source_fixture.h"
#include "tests/support/files_in_memory.h"
#include "tests/support/rounds.h"
#include "tests/support/seed.h"

namespace {

bool HasLineFeedAlone(const std::string& text) {
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) return true;
    return false;
}

// What a file holds once it has been read.
std::string Mended(const std::string& text) {
    if (!HasLineFeedAlone(text.substr(0, 256)) || text.find('\0') != text.npos) return text;
    std::string mended, line;
    for (const char c : text + '\n') {
        if (c != '\n') {
            line += c;
        } else if (!line.empty()) {
            mended += line + "\r\n";
            line.clear();
        }
    }
    return mended;
}

}  // namespace

class GpxLineEndsReference : private FilesInMemory, public GpxSource {
 protected:
    // Lines of any length and end. The first line feed that counts may stand anywhere, and the last line go on.
    std::string AnyText() {
        std::string text = Below(4) == 0 ? Line(200 + Below(60)) : "";
        const bool isEven = Below(4) == 0;  // each line ends as the reader leaves it alone
        for (auto count = Below(Below(50) == 0 ? 30000 : 20); count > 0; --count)
            text += Line(Below(3) == 0 ? 0 : Below(40)) + (isEven ? "\r\n" : AnyEnd());
        if (Below(2) == 0) text += Line(Below(10));
        if (Below(40) == 0 && !text.empty()) text[Below(text.size())] = '\0';
        return text;
    }

 private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    std::string AnyEnd() {
        constexpr std::string_view kEnds[] = {"\n", "\n", "\r\n", "\n\n", "\r", "\r\r\n", "\n\r"};
        return std::string(kEnds[Below(std::size(kEnds))]);
    }
    std::string Line(std::size_t size) {
        std::string line(size, ' ');
        for (char& c : line) c = "<trkpt/>ab 0\t\xE4\r"[Below(15)];
        return line;
    }

    std::mt19937 m_random{Seed(1986)};
};

TEST_F(GpxLineEndsReference, RandomText_IsRewrittenAsByAPlainWalk) {
    int rewritten = 0;
    for (int i = 0; i < Rounds(5000); ++i) {
        const std::string text = AnyText(), mended = Mended(text);
        Write("\\Track\\a.gpx", text);
        ASSERT_TRUE(Parsed() == mended.substr(0, mended.find('\0'))) << "text " << i;  // too long to print
        ASSERT_TRUE(BytesOf("\\Track\\a.gpx") == mended) << "text " << i;
        rewritten += mended != text ? 1 : 0;
    }
    EXPECT_GT(rewritten, Rounds(1000));
    EXPECT_LT(rewritten, Rounds(4000));
}
