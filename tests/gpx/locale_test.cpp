// Documents are the same in every locale of the process.
#include <locale>

#include "tests/gpx/gpx_fixture.h"
#include "tests/support/german_locale.h"
#include "tests/support/golden.h"

namespace {

// The C++ side of a locale, which always can be made: comma, points between thousands.
class CommaPunctuation : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class CommaLocale {
 public:
    CommaLocale() : m_before(std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation))) {}
    ~CommaLocale() { std::locale::global(m_before); }

 private:
    std::locale m_before;
};

}  // namespace

class GpxLocale : public GpxTest {
 protected:
    // The document written by hand, read and written again.
    void ExpectGoldenDocumentIsUnchanged() {
        Write("\\Track\\golden.gpx", ReadFile(GoldenFile("track.gpx")));
        CGPXTransmit transmit;
        ASSERT_TRUE(transmit.ImportGpx(L"\\Track\\golden.gpx", &m_info));
        ASSERT_TRUE(transmit.ExportGpx(L"\\Track\\written.gpx"));
        // A point takes over what it does not state, so these two lines come to points that had none.
        std::string expected = ReadFile(GoldenFile("track.gpx"));
        const auto put = [&expected](const std::string& behind, const std::string& added) {
            expected.insert(expected.find(behind) + behind.size(), added);
        };
        put("<ele>-0.000000</ele>\n", "\t\t\t\t<time>2001-09-09T01:46:40Z</time>\n");
        put("<trkpt lat=\"0.000000\" lon=\"0.000000\">\n", "\t\t\t\t<ele>-0.000000</ele>\n");
        const std::string last = "<trkpt lat=\"90.000000\" lon=\"180.000000\"";
        expected.replace(
            expected.find(last), last.size() + 2,
            last +
                ">\n\t\t\t\t<ele>-0.000000</ele>\n\t\t\t\t<time>1969-12-31T23:59:59Z</time>\n\t\t\t</trkpt>");
        EXPECT_EQ(BytesOf("\\Track\\written.gpx"), expected);
    }
};

TEST_F(GpxLocale, ClassicLocale_ReadsAndWritesPoints) { ExpectGoldenDocumentIsUnchanged(); }

TEST_F(GpxLocale, StreamsWithDecimalComma_ReadAndWritePoints) {
    const CommaLocale comma;
    ExpectGoldenDocumentIsUnchanged();
}

TEST_F(GpxLocale, ProcessInGerman_ReadsAndWritesPoints) {
    const GermanLocale german;
    if (!german.Active()) GTEST_SKIP() << "no German locale can be made here (localedef, package locales)";
    ExpectGoldenDocumentIsUnchanged();
}
