// What is written is read again: exactly, where the document can state it.
#include <cmath>

#include "platform/device.h"
#include "tests/gpx/gpx_fixture.h"
#include "tests/support/seed.h"

class GpxRoundTrip : public GpxTest {
 protected:
    bool WriteAndRead(Imported& read) {
        Exported();
        return ImportFile(L"\\Track\\exported.gpx", read);
    }
    // A position as six decimals leave it.
    double AnyPosition(double limit) { return std::round(Between(-limit, limit, m_random) * 1e6) / 1e6; }
    // An altitude that six decimals of single precision leave as it is.
    double AnyAltitude() { return static_cast<double>(static_cast<int>(m_random() % 800000)) / 64 + 1; }

    std::mt19937 m_random{Seed(65001)};
};

TEST_F(GpxRoundTrip, AnyPointsWithAltitudeAndTime_ComeBackBitForBit) {
    for (int i = 0; i < 50; ++i) {
        m_points.clear();
        for (auto count = m_random() % 100; count > 0; --count)
            m_points.push_back(Fix(AnyPosition(90), AnyPosition(180), AnyAltitude(),
                                   static_cast<std::int32_t>(m_random() | 1)));
        Imported read;
        ASSERT_TRUE(WriteAndRead(read));
        ASSERT_EQ(read.points, m_points) << "track " << i;
    }
}

TEST_F(GpxRoundTrip, AnyHeader_ComesBack) {
    for (int i = 0; i < 50; ++i) {
        Put(m_info.name, "N" + std::to_string(m_random()) + "<&>'\"\xB3\xA4");
        m_info.number = static_cast<std::int32_t>(m_random());
        m_info.color = static_cast<std::uint32_t>(m_random());
        m_info.visible = static_cast<std::int32_t>(m_random() % 2);
        m_info.length = AnyAltitude();
        m_info.area = AnyAltitude();
        m_info.startTime = static_cast<std::int32_t>(m_random());
        m_info.endTime = static_cast<std::int32_t>(m_random());
        m_points.assign(1, Fix(1, 2, 3, 4));
        Imported read;
        ASSERT_TRUE(WriteAndRead(read));
        EXPECT_STREQ(read.info.name, m_info.name);
        EXPECT_EQ(read.info.number, m_info.number);
        EXPECT_EQ(read.info.color, m_info.color);
        EXPECT_EQ(read.info.visible, m_info.visible);
        EXPECT_EQ(read.info.length, m_info.length);
        EXPECT_EQ(read.info.area, m_info.area);
        EXPECT_EQ(read.info.startTime, m_info.startTime);
        EXPECT_EQ(read.info.endTime, m_info.endTime);
    }
}

TEST_F(GpxRoundTrip, NamesInEveryCodePage_ComeBack) {
    const std::pair<unsigned, std::string> names[] = {{936, "\xB3\xA4\xB3\xC7 \x81\x5C"},
                                                      {1252,
                                                       "\xDC"
                                                       "ber Stra\xDF"
                                                       "e"},
                                                      {65001, "\u957F\u57CE Stra\u00DFe \U0001F600"}};
    for (const auto& [codePage, name] : names) {
        ASSERT_TRUE(SetAnsiCodePage(codePage));
        Put(m_info.name, name);
        Put(m_metadata.desc, name);
        Imported read;
        ASSERT_TRUE(WriteAndRead(read));
        EXPECT_EQ(read.info.name, name);
        EXPECT_EQ(read.metadata.desc, name);
    }
}

TEST_F(GpxRoundTrip, Metadata_ComesBack) {
    for (auto* field : {&m_metadata.name, &m_metadata.desc, &m_metadata.author, &m_metadata.email,
                        &m_metadata.url, &m_metadata.urlname, &m_metadata.time, &m_metadata.keywords})
        Put(*field, "text " + std::to_string(m_random()));
    m_metadata.minlat = -1.5F;
    m_metadata.maxlon = 2.25F;
    Imported read;
    ASSERT_TRUE(WriteAndRead(read));
    EXPECT_EQ(std::memcmp(&read.metadata, &m_metadata, sizeof m_metadata), 0);
}

TEST_F(GpxRoundTrip, InfinitiesAndNoNumbers_ComeBack) {
    m_points.assign(1, Fix(std::nan(""), -INFINITY, INFINITY, 1));
    Imported read;
    ASSERT_TRUE(WriteAndRead(read));
    ASSERT_EQ(read.points.size(), 1u);
    EXPECT_TRUE(std::isnan(read.points[0].dLatitude));
    EXPECT_EQ(read.points[0].dLongitude, -INFINITY);
    EXPECT_EQ(read.points[0].dAltitude, INFINITY);
}

TEST_F(GpxRoundTrip, WrittenDocument_GetsCrLfOnceAndStaysReadable) {
    m_points = {Fix(1, 2, 3, 4), Fix(5, 6, 7, 8)};
    Imported first, second;
    ASSERT_TRUE(WriteAndRead(first));
    const std::string rewritten = BytesOf("\\Track\\exported.gpx");
    EXPECT_TRUE(rewritten.ends_with("</gpx>\r\n"));
    ASSERT_TRUE(ImportFile(L"\\Track\\exported.gpx", second));
    EXPECT_EQ(BytesOf("\\Track\\exported.gpx"), rewritten);
    EXPECT_EQ(first.points, second.points);
}
