// Display names are at most 32 characters long and different from each other.
#include <algorithm>
#include <random>

#include "tests/library/library_fixture.h"
#include "tests/support/seed.h"

namespace {

std::string InCapitals(std::string name) {
    for (char& letter : name)
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    return name;
}

// The rule as it is told: from the last track on, every earlier one of the same name gets the first number with
// which nobody is called so in any letter case. Names of one-byte characters, short enough to stay whole.
std::vector<std::string> ResolvedByTheRule(std::vector<std::string> names) {
    const auto isTaken = [&](const std::string& name) {
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string& other) { return InCapitals(other) == InCapitals(name); });
    };
    for (std::size_t i = names.size(); i-- > 0;)
        for (std::size_t j = i; j-- > 0;) {
            if (names[j] != names[i]) continue;
            int number = 1;
            while (isTaken(names[i] + "_" + std::to_string(number))) ++number;
            names[j] = names[i] + "_" + std::to_string(number);
        }
    return names;
}

}  // namespace

class TrackNames : public LibraryTest {
 protected:
    // Whether the name was too long, and what it became.
    static std::pair<bool, std::string> Shortened(const std::string& name) {
        std::string out = "?";
        const bool wasTooLong = TrackManInside::GetTrackName(Library(), name, out);
        return {wasTooLong, out};
    }
    static std::string Unique(const std::string& name) {
        return TrackManInside::ConstructTrackName(Library(), name);
    }
    static std::vector<std::string> Resolved(const std::vector<std::string>& names) {
        for (const std::string& name : names) List(name);
        TrackManInside::CheckTrackIsSameName(Library());
        return DisplayNames();
    }
};

TEST_F(TrackNames, UpTo32Characters_Fit) {
    EXPECT_EQ(Shortened("Morning ride"), (std::pair{false, std::string("Morning ride")}));
    const std::string longest(32, 'n');
    EXPECT_EQ(Shortened(longest), (std::pair{false, longest}));
    List(longest);
    EXPECT_EQ(Shortened(longest), (std::pair{false, longest}));
}

TEST_F(TrackNames, LongName_BecomesItsFirst32Characters) {
    EXPECT_EQ(Shortened(std::string(40, 'n')), (std::pair{true, std::string(32, 'n')}));
}

TEST_F(TrackNames, LongNameWhoseBeginningIsTaken_GetsANumber) {
    List(std::string(32, 'N'));  // in other letter case
    EXPECT_EQ(Shortened(std::string(40, 'n')), (std::pair{true, std::string(30, 'n') + "_1"}));
}

TEST_F(TrackNames, LongNameWhoseBeginningIsAFileName_GetsANumber) {
    Store(std::string(32, 'n'), {.name = "Other"});
    Load();
    EXPECT_EQ(Shortened(std::string(40, 'n')), (std::pair{true, std::string(30, 'n') + "_1"}));
}

TEST_F(TrackNames, TwoByteCharacter_IsNotSplit) {
    const std::string name = std::string(31, 'n') + "\xB1\xB1\xBE\xA9";
    EXPECT_EQ(Shortened(name), (std::pair{true, std::string(31, 'n')}));
    const std::string odd = std::string(29, 'n') + "\xB1\xB1\xBE\xA9";
    EXPECT_EQ(Unique(odd), std::string(29, 'n') + "_1");
}

TEST_F(TrackNames, UniqueName_TakesTheFirstNumberThatIsFree) {
    EXPECT_EQ(Unique("Morning ride"), "Morning ride_1");
    List("MORNING RIDE_1");
    EXPECT_EQ(Unique("Morning ride"), "Morning ride_2");
    List("Morning ride_3");
    EXPECT_EQ(Unique("Morning ride"), "Morning ride_2");
}

TEST_F(TrackNames, UniqueName_AvoidsFileNamesToo) {
    Store("ride_1", {.name = "Other"});
    Load();
    EXPECT_EQ(Unique("Ride"), "Ride_2");
}

TEST_F(TrackNames, UniqueName_LeavesRoomForItsNumber) {
    const std::string name(40, 'n');
    EXPECT_EQ(Unique(name), std::string(30, 'n') + "_1");
    for (int i = 1; i < 10; ++i) List(std::string(30, 'n') + "_" + std::to_string(i));
    EXPECT_EQ(Unique(name), std::string(29, 'n') + "_10");
}

TEST_F(TrackNames, OfTracksWithOneName_TheLastKeepsIt) {
    EXPECT_EQ(Resolved({"A", "B", "A"}), (std::vector<std::string>{"A_1", "B", "A"}));
}

TEST_F(TrackNames, OfThreeTracksWithOneName_TheLaterGetsTheLowerNumber) {
    EXPECT_EQ(Resolved({"A", "A", "A"}), (std::vector<std::string>{"A_2", "A_1", "A"}));
}

TEST_F(TrackNames, DifferentLetterCase_IsADifferentName) {
    EXPECT_EQ(Resolved({"a", "A"}), (std::vector<std::string>{"a", "A"}));
}

TEST_F(TrackNames, NumberThatIsTaken_IsSkipped) {
    EXPECT_EQ(Resolved({"A", "a_1", "A"}), (std::vector<std::string>{"A_2", "a_1", "A"}));
}

TEST_F(TrackNames, NumberThatMakesAFileName_IsSkipped) {
    Store("RIDE_1", {.name = "Other"});
    Store("a", {.name = "Ride"});
    Store("b", {.name = "Ride"});
    Load();
    EXPECT_NE(Library().GetTrack("Ride"), nullptr);
    EXPECT_NE(Library().GetTrack("Ride_2"), nullptr);
}

TEST_F(TrackNames, NewName_MayItselfBeGivenToOneTrackOnly) {
    EXPECT_EQ(Resolved({"A_1", "A", "A"}), (std::vector<std::string>{"A_1", "A_2", "A"}));
}

TEST_F(TrackNames, LongNames_AreShortenedFromTheLastOn) {
    for (const char* end : {"1", "2"}) Store(std::string(40, 'n') + end, {.name = ""});
    SetWritten(PathOf(std::string(40, 'n') + "1"), 2000);
    SetWritten(PathOf(std::string(40, 'n') + "2"), 1000);
    Load();
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{std::string(30, 'n') + "_1", std::string(32, 'n')}));
}

TEST_F(TrackNames, OfFilesWithOneName_TheLastFoundKeepsItThoughItIsNotTheLastListed) {
    for (const char* file : {"a", "b"}) Store(file, {.name = "Ride"});
    SetWritten(PathOf("a"), 1000);
    SetWritten(PathOf("b"), 2000);
    Load();
    EXPECT_EQ(DisplayNames(), (std::vector<std::string>{"Ride", "Ride_1"}));
    EXPECT_EQ(Library().GetTrackByFile("b")->GetName(), "Ride");
}

TEST_F(TrackNames, NewNames_AreInMemoryOnly) {
    Store("a", {.name = "Ride"});
    Store("b", {.name = "Ride"});
    const std::string a = BytesOf(PathOf("a")), b = BytesOf(PathOf("b"));
    Load();
    EXPECT_NE(Library().GetTrack("Ride_1"), nullptr);
    EXPECT_EQ(BytesOf(PathOf("a")), a);
    EXPECT_EQ(BytesOf(PathOf("b")), b);
    EXPECT_EQ(FilesIn("\\App\\UserData\\Track"), (std::vector<std::string>{"a.gpx", "b.gpx"}));
}

TEST_F(TrackNames, ManyTracksWithOneName_GetOneNumberEach) {
    constexpr int kTracks = 3000;  // a search through the list for each number would take hours
    const auto names = Resolved(std::vector<std::string>(kTracks, "Track"));
    for (int i = 0; i < kTracks - 1; ++i)
        EXPECT_EQ(names[static_cast<std::size_t>(i)], "Track_" + std::to_string(kTracks - 1 - i));
    EXPECT_EQ(names.back(), "Track");
}

TEST_F(TrackNames, OfAnyTracks_AreResolvedByTheRule) {
    const std::vector<std::string> pool = {"A",     "a", "A_1", "a_1", "A_2",
                                           "A_1_1", "B", "B_3", "b_1", "Morning ride"};
    std::mt19937 random(Seed(171));
    for (int round = 0; round < 200; ++round) {
        std::vector<std::string> names(1 + random() % 12);
        for (std::string& name : names) name = pool[random() % pool.size()];
        EXPECT_EQ(Resolved(names), ResolvedByTheRule(names));
        Library().DelAllTrack();
    }
}
