// The example in docs/formats/log-file.md is what the recording writes and reads.
#include <sstream>

#include "tests/record/log_track_fixture.h"

class LogFileDocument : public LogTrackTest {
 protected:
    // The bytes of the dump: lines of an offset, up to 16 bytes in hexadecimal, and perhaps a remark.
    static std::string Example() {
        const auto document = std::filesystem::path(QTRACE_DOCS) / "formats/log-file.md";
        std::istringstream lines(ReadFile(document));
        std::string bytes;
        for (std::string line; std::getline(lines, line);) {
            if (line.find_first_not_of("0123456789abcdef") != 8) continue;
            std::istringstream numbers(line.substr(8, 51));
            for (unsigned byte = 0; numbers >> std::hex >> byte;) bytes += static_cast<char>(byte);
        }
        return bytes;
    }
    static TckPt Fix(int number) {
        TckPt fix{};
        fix.dLatitude = 47.0;
        fix.dLongitude = 8.0 + number / 1024.0;
        fix.dAltitude = 400.0;
        fix.dSpeed = 10.0;
        fix.lTime = 1'000'000'000 + number;
        fix.fCourse = 90.0f;
        return fix;
    }
};

TEST_F(LogFileDocument, Example_IsWhatTheTwoBatchesLeave) {
    ASSERT_TRUE(Open(4));
    Points first = {Fix(0), Fix(1), Fix(2)};
    Points second = {Fix(3), Fix(4)};
    EXPECT_TRUE(m_track->AppendEx(first));
    EXPECT_TRUE(m_track->AppendEx(second));
    EXPECT_EQ(BytesOf(kPointFile), Example());
    EXPECT_EQ(Times(), (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(LogFileDocument, Example_IsReadAsItsTextTells) {
    Write(kPointFile, Example());
    ASSERT_TRUE(Open(4));
    Points expected = {TckPt{}, Fix(2), Fix(3), Fix(4)};
    for (std::size_t i = 1; i < 4; ++i) expected[i] = described::Stamped(expected[i]);
    EXPECT_TRUE(SamePoints(Remembered(), expected));
}
