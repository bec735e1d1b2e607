// The interface of every track.
#include "track/itrack.h"

#include <gtest/gtest.h>

#include "tests/support/virtual_slot.h"

TEST(TrackInterface, Operations_KeepTheirOrder) {
    EXPECT_EQ(SlotOf(&ITrack::GetStartTime), 1u);
    EXPECT_EQ(SlotOf(&ITrack::GetEndTime), 2u);
    EXPECT_EQ(SlotOf(&ITrack::GetLength), 3u);
    EXPECT_EQ(SlotOf(&ITrack::GetArea), 4u);
    EXPECT_EQ(SlotOf(&ITrack::GetPtCount), 5u);
    EXPECT_EQ(SlotOf(&ITrack::GetName), 6u);
    EXPECT_EQ(SlotOf(&ITrack::SetName), 7u);
    EXPECT_EQ(SlotOf(&ITrack::GetColor), 8u);
    EXPECT_EQ(SlotOf(&ITrack::SetColor), 9u);
    EXPECT_EQ(SlotOf(&ITrack::GetVisible), 10u);
    EXPECT_EQ(SlotOf(&ITrack::SetVisible), 11u);
    EXPECT_EQ(SlotOf(&ITrack::GetKeyPtList), 12u);
    EXPECT_EQ(SlotOf(&ITrack::Save), 13u);
    EXPECT_EQ(SlotOf(&ITrack::Load), 14u);
    EXPECT_EQ(SlotOf(&ITrack::Init), 15u);
}
