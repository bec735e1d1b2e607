// Times of documents: the quick way that nearly all take against the plain one.
#include "gpx/gpx_time.h"

#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/rounds.h"
#include "tests/support/seed.h"
#include "util/text.h"
#include "util/time.h"

namespace {

std::string Written(std::int32_t seconds) {
    char text[gpx::kTimeRoom];
    return {text, gpx::WriteTime(seconds, text)};
}

std::string Printed(std::int32_t seconds) {
    SYSTEMTIME time{};
    TimetToSystemTime(seconds, &time);
    char text[64];
    std::snprintf(text, sizeof text, "%d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond);
    return text;
}

// For texts that are not empty.
std::int32_t ReadThePlainWay(const std::string& text) {
    char ansi[32] = {};
    UTF_8ToAnsic(text.c_str(), ansi, 31);
    SYSTEMTIME time{};
    DTSTR2SYS(ansi, time);
    return static_cast<std::int32_t>(ChangeSYSTIMEToTime_T(time));
}

}  // namespace

TEST(GpxTime, AnyTime_IsWrittenAsPrintfWritesIt) {
    std::mt19937 random(Seed(1969));
    for (const std::int32_t edge : {0, 1, -1, std::numeric_limits<std::int32_t>::min(),
                                    std::numeric_limits<std::int32_t>::max(), 951782400, 68169600})
        EXPECT_EQ(Written(edge), Printed(edge));
    for (int i = 0; i < Rounds(1000000); ++i) {
        const auto seconds = static_cast<std::int32_t>(random());
        ASSERT_EQ(Written(seconds), Printed(seconds));
    }
}

TEST(GpxTime, AnyTimeWritten_IsReadAsItWas) {
    std::mt19937 random(Seed(2038));
    for (int i = 0; i < Rounds(1000000); ++i) {
        const auto seconds = static_cast<std::int32_t>(random());
        ASSERT_EQ(gpx::ReadTime(Written(seconds)), seconds);
    }
}

// Fields beyond their range included: 99 months, 99 seconds.
TEST(GpxTime, AnyTextOfTheUsualForm_IsReadThePlainWayToo) {
    std::mt19937 random(Seed(1601));
    const char* const tails[] = {"Z", "", ".5Z", "+02:00", "-11:30", "5", "T", ":", "Zzzzzzzzzzzzzzzzzzzz",
                                 " "};
    for (int i = 0; i < Rounds(1000000); ++i) {
        std::string text = "dddd-dd-ddTdd:dd:dd";
        for (char& c : text)
            if (c == 'd') c = static_cast<char>('0' + random() % 10);
        text += tails[random() % std::size(tails)];
        ASSERT_EQ(gpx::ReadTime(text), ReadThePlainWay(text)) << text;
    }
}

TEST(GpxTime, AnyTextAlmostOfTheUsualForm_IsReadThePlainWayToo) {
    std::mt19937 random(Seed(9999));
    const std::string marks = "0123456789T-:. +Zx\xC3\xA9";
    for (int i = 0; i < Rounds(1000000); ++i) {
        std::string text = "2014-05-01T10:20:30Z";
        for (auto count = 1 + random() % 2; count > 0; --count) {
            const std::size_t at = random() % text.size();
            if (random() % 3 == 0)
                text.erase(at, 1);
            else
                text[at] = marks[random() % marks.size()];
        }
        ASSERT_EQ(gpx::ReadTime(text), ReadThePlainWay(text)) << text;
    }
}

TEST(GpxTimeWriter, TimesOfAnyDays_AreWrittenAsByThemselves) {
    std::mt19937 random(Seed(30));
    gpx::TimeWriter writer;
    const auto expectAlike = [&](std::int32_t seconds) {
        char text[gpx::kTimeRoom];
        ASSERT_EQ(std::string(text, writer.Write(seconds, text)), Written(seconds)) << seconds;
    };
    constexpr std::int32_t kFirst = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();
    for (const std::int32_t edge : {kFirst, kFirst + 1, kFirst + 11647, kFirst + 11648, -86401, -86400, -1, 0,
                                    1, 86399, 86400, kLast - 11647, kLast - 11648, kLast})
        expectAlike(edge);
    for (int i = 0; i < Rounds(1000000) && !::testing::Test::HasFatalFailure(); ++i)
        expectAlike(random() % 4 == 0 ? static_cast<std::int32_t>(random())
                                      : static_cast<std::int32_t>(1000000000 + random() % 200000));
}

TEST(GpxTimeReader, TimesOfAnyDays_AreReadAsByThemselves) {
    std::mt19937 random(Seed(29));
    gpx::TimeReader reader;
    const char* const odd[] = {"",
                               "2001",
                               "2001-09-09T",
                               "2001-09-09T01:46:4",
                               "2001-09-09T01:46:401",
                               "2001-09-09T24:00:00Z",
                               "2001-02-29T12:00:00Z",
                               "2001-09-09T01-46-40Z",
                               "2001-09-09T01:60:00Z",
                               "2001-09-09t01:46:40Z",
                               "0000-00-00T00:00:00Z",
                               "1600-01-01T00:00:00Z",
                               "9999-12-31T23:59:59Z"};
    for (int i = 0; i < Rounds(1000000); ++i) {
        const bool isSameDay = random() % 4 != 0;
        const std::int32_t seconds =
            isSameDay ? 1000000000 + static_cast<int>(random() % 80000) : static_cast<std::int32_t>(random());
        std::string text = random() % 8 == 0 ? odd[1 + random() % (std::size(odd) - 1)] : Written(seconds);
        if (random() % 8 == 0) text += ".5+02:00";
        if (random() % 8 == 0) text[random() % text.size()] = "0123456789:-TZ "[random() % 15];
        if (random() % 16 == 0) text.resize(19 < text.size() ? 19 : text.size());
        ASSERT_EQ(reader.Read(text), gpx::ReadTime(text)) << text;
    }
}
