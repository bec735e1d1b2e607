// What a handle does with the points: it loads them, uses them, lets them go again.
#include <algorithm>

#include "tests/library/library_fixture.h"

namespace {

// Five points along two straight legs north, which meet in a point that lies `metres` aside.
StoredTrack NorthWithAPointAside(double metres) {
    std::vector<TextPoint> points;
    for (int i = 0; i < 5; ++i)
        points.push_back(
            {std::to_string(0.001 * i), std::to_string(metres * std::min(i, 4 - i) / 2 / 111120), "", ""});
    return {.segments = {points}};
}

}  // namespace

class TrackPoints : public LibraryTest {
 protected:
    static Points Of(CTrackProxy& proxy) {
        Points points(7);  // what is there is replaced
        proxy.GetPtList(points);
        return points;
    }
    static std::size_t Thinned(CTrackProxy& proxy, int level, bool wide) {
        Points points(7);
        proxy.GetSimplifyPtLst(points, level, wide);
        return points.size();
    }
};

TEST_F(TrackPoints, OfAStoredTrack_AreThoseOfItsDocument) {
    Store("walk");
    const Points points = Of(*Handle("walk"));
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[1].dLatitude, 1.001);
    EXPECT_EQ(points[1].dLongitude, 2.0);
    EXPECT_EQ(points[1].dAltitude, 6.0);
    EXPECT_EQ(points[1].lTime, SecondsOf(2014, 5, 1, 10, 30, 0));
}

TEST_F(TrackPoints, OfAllSegments_AreGiven) {
    Store("walk", {.segments = {{{"1", "2", "", ""}}, {{"3", "4", "", ""}, {"5", "6", "", ""}}}});
    EXPECT_EQ(Of(*Handle("walk")).size(), 3u);
}

TEST_F(TrackPoints, EveryQuery_LetsThePointsGo) {
    Store("walk");
    const auto walk = Handle("walk");
    Points points;
    TckPt buffer[3];
    walk->GetPtList(points);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    walk->GetPtList(buffer, 3);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    walk->GetSimplifyPtLst(points);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    walk->GetSimplifyPtLst(points, 0, true);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    walk->GetKeyPtList(points);
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
    walk->Caculate();
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*walk));
}

TEST_F(TrackPoints, IntoABuffer_AreAsManyAsAskedFor) {
    Store("walk");
    const auto walk = Handle("walk");
    TckPt buffer[3] = {};
    walk->GetPtList(buffer, 2);
    EXPECT_EQ(buffer[0].dLatitude, 1.0);
    EXPECT_EQ(buffer[1].dLatitude, 1.001);
    EXPECT_EQ(buffer[2].dLatitude, 0.0);
}

TEST_F(TrackPoints, IntoABufferOutOfRange_AreNone) {
    Store("walk");
    const auto walk = Handle("walk");
    TckPt buffer[4] = {};
    walk->GetPtList(buffer, 4);
    walk->GetPtList(buffer, 0);
    walk->GetPtList(buffer, -1);
    walk->GetPtList(nullptr, 1);
    for (const TckPt& point : buffer) EXPECT_EQ(point.dLatitude, 0.0);
}

TEST_F(TrackPoints, OfAnUnreadableFile_AreNone) {
    const auto missing = Handle("missing");
    EXPECT_TRUE(Of(*missing).empty());
    EXPECT_FALSE(TrackProxyInside::IsLoaded(*missing));
}

TEST_F(TrackPoints, OfAHandleWithoutFile_AreNone) {
    CTrackProxy proxy;
    EXPECT_TRUE(Of(proxy).empty());
}

TEST_F(TrackPoints, UnreadableFile_IsNoTrackButAnEmptyOneStandsIn) {
    const auto missing = Handle("missing");
    EXPECT_EQ(TrackProxyInside::GetTrack(*missing), nullptr);
    ASSERT_TRUE(TrackProxyInside::IsLoaded(*missing));
    EXPECT_EQ(TrackProxyInside::LoadedTrack(*missing)->GetPtCount(), 0u);
}

TEST_F(TrackPoints, ALoadedTrack_IsNotLoadedAgain) {
    Store("walk");
    const auto walk = Handle("walk");
    TrackProxyInside::GetTrack(*walk);
    std::filesystem::remove(OnDisk(PathOf("walk")));
    EXPECT_EQ(Of(*walk).size(), 3u);
    EXPECT_TRUE(Of(*walk).empty());
}

TEST_F(TrackPoints, KeyPoints_BeginAndEndTheTrack) {
    Store("walk");
    Points points;
    Handle("walk")->GetKeyPtList(points);
    ASSERT_GE(points.size(), 2u);
    EXPECT_EQ(points.front().dLatitude, 1.0);
    EXPECT_EQ(points.back().dLongitude, 2.001);
}

TEST_F(TrackPoints, KeyPointsOfNothing_LeaveTheListAlone) {
    Points points(7);
    Handle("missing")->GetKeyPtList(points);
    EXPECT_EQ(points.size(), 7u);
}

TEST_F(TrackPoints, ThinnedToTwoMetres_KeepAPointTenMetresAside) {
    Store("walk", NorthWithAPointAside(10));
    Points points;
    Handle("walk")->GetSimplifyPtLst(points);
    EXPECT_EQ(points.size(), 3u);
    EXPECT_EQ(Thinned(*Handle("walk"), 0, false), 3u);
}

TEST_F(TrackPoints, ThinnedWide_LoseAPointTenMetresAside) {
    Store("walk", NorthWithAPointAside(10));
    EXPECT_EQ(Thinned(*Handle("walk"), 0, true), 2u);
}

TEST_F(TrackPoints, ThinnedWide_KeepAPointThirtyMetresAside) {
    Store("walk", NorthWithAPointAside(30));
    EXPECT_EQ(Thinned(*Handle("walk"), 0, true), 3u);
}

TEST_F(TrackPoints, ThinnedWithoutArguments_UseTwoMetresThoughWideIsPassedOn) {
    Store("walk", NorthWithAPointAside(4));
    Points points(7);
    Handle("walk")->GetSimplifyPtLst(points);
    EXPECT_EQ(points.size(), 3u);
}

TEST_F(TrackPoints, SimplyTrack_KeepsTheThinnedTrackLoaded) {
    Store("walk", NorthWithAPointAside(1));
    const auto walk = Handle("walk");
    walk->SimplyTrack();
    ASSERT_TRUE(TrackProxyInside::IsLoaded(*walk));
    EXPECT_EQ(Of(*walk).size(), 2u);
    EXPECT_EQ(Of(*walk).size(), 5u);  // let go by the query before, and loaded anew
}

TEST_F(TrackPoints, Caculate_TakesTheHeaderFromThePoints) {
    Store("walk", {.number = "77",
                   .segments = {{{"0.000000", "0.000000", "", "2014-05-01T12:00:00Z"},
                                 {"0.001000", "0.000000", "", "2014-05-01T12:00:10Z"},
                                 {"0.001000", "0.001000", "", "2014-05-01T12:00:20Z"}}}});
    const auto walk = Handle("walk");
    walk->Load(nullptr);
    walk->Caculate();
    constexpr double kStep = 111.12;             // [m] a thousandth of a degree, 60 nautical miles a degree
    constexpr double kSquare = 12392.029030466;  // [m^2] of a thousandth of a degree each way at the equator
    EXPECT_EQ(walk->GetPtCount(), 3u);
    EXPECT_NEAR(walk->GetLength(), 2 * kStep, 0.001);
    EXPECT_NEAR(walk->GetArea(), kSquare / 2, 0.001);
    EXPECT_EQ(walk->GetStartTime(), SecondsOf(2014, 5, 1, 12, 0, 0));
    EXPECT_EQ(walk->GetEndTime(), SecondsOf(2014, 5, 1, 12, 0, 20));
}

TEST_F(TrackPoints, Caculate_TouchesNeitherVisibilityNorColorNorFile) {
    Store("walk");
    const std::string before = BytesOf(PathOf("walk"));
    const auto walk = Handle("walk");
    walk->Caculate();
    EXPECT_EQ(TrackProxyInside::Visibility(*walk), -1);
    EXPECT_EQ(walk->GetColor(), 0u);
    EXPECT_EQ(BytesOf(PathOf("walk")), before);
}
