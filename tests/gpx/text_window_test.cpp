// A text that is read piece by piece while its points are taken out.
#include "gpx/text_window.h"

#include <cstring>
#include <optional>
#include <rapidxml/rapidxml.hpp>
#include <utility>

#include "gpx/gpx_outline.h"
#include "platform/file.h"
#include "tests/gpx/damaged_document.h"
#include "tests/gpx/gpx_fixture.h"

namespace {

// What is left of a document and what was read of it; nothing for one that is refused. Points leave blanks
// behind, more of them where the usual form is not seen because the text breaks off in it.
struct Taken {
    std::string outlineWithoutBlanks;
    Points points;
    bool operator==(const Taken&) const = default;
};

std::optional<Taken> TakeOut(gpx::TextWindow text, gpx::PointsWanted wanted) {
    text.EndAtZero();
    try {
        Taken taken;
        taken.points = gpx::TakeOutPoints(text, wanted);
        for (const char c : text.Text())
            if (std::strchr(" \t\r\n", c) == nullptr) taken.outlineWithoutBlanks += c;
        return taken;
    } catch (const rapidxml::parse_error&) {
        return std::nullopt;
    }
}

}  // namespace

class GpxTextWindow : public GpxTest {
 protected:
    gpx::TextWindow InPieces(const std::string& document, std::size_t piece) {
        return Expecting(document.size(), document, piece);
    }
    gpx::TextWindow Expecting(std::uint64_t size, const std::string& document, std::size_t piece) {
        if (document != std::exchange(m_inFile, document)) {
            std::filesystem::remove(OnDisk("\\Track\\window.gpx"));  // written over, it would wait for the disk
            Write("\\Track\\window.gpx", document);
        }
        return {gpx::Stream(platform::fopen("\\Track\\window.gpx", "rb")), size, piece};
    }
    // Every point in a form that only the parser reads, or none.
    static std::string Drive(std::size_t points, bool isPlain) {
        std::string drive = "<gpx><trk><trkseg>";
        for (std::size_t i = 0; i < points; ++i)
            drive += "<trkpt lat=\"1." + std::to_string(i) +
                     (isPlain ? "\" lon=\"2\"/>\r\n" : "\" lon=\"2\" a=\"\"/>\r\n");
        return drive + "</trkseg></trk></gpx>";
    }
    void ExpectAlikeInPieces(const std::string& document, std::initializer_list<std::size_t> pieces) {
        using enum gpx::PointsWanted;
        for (const gpx::PointsWanted wanted : {None, OfFirstSegment, OfAllSegments}) {
            const auto whole = TakeOut(gpx::TextWindow(document), wanted);
            for (const std::size_t piece : pieces)
                EXPECT_TRUE(TakeOut(InPieces(document, piece), wanted) == whole) << "in pieces of " << piece;
        }
    }

 private:
    std::optional<std::string> m_inFile;
};

TEST_F(GpxTextWindow, ShortText_IsReadAtOnceAndItsFileClosed) {
    const gpx::TextWindow text = InPieces("<gpx/>", 100);
    EXPECT_TRUE(text.IsWhole());
    EXPECT_EQ(text.Text(), "<gpx/>");
}

TEST_F(GpxTextWindow, LongText_BeginsWithAPiece) {
    const gpx::TextWindow text = InPieces(std::string(1000, 'a'), 100);
    EXPECT_FALSE(text.IsWhole());
    EXPECT_EQ(text.Text(), std::string(100, 'a'));
}

TEST_F(GpxTextWindow, WhatIsTakenOut_MakesRoomForTheRest) {
    gpx::TextWindow text = InPieces("abcdefghijklmnopqrstuvwxyz", 10);
    text.ReadOn(text.Begin() + 2, text.Begin() + 8, 10);
    EXPECT_EQ(text.Text(), "abijklmnopqr");
    EXPECT_EQ(text.PositionOf(text.Begin() + 2), 8u);
    text.ReadRest();
    EXPECT_EQ(text.Text(), "abijklmnopqrstuvwxyz");
    EXPECT_TRUE(text.IsWhole());
}

TEST_F(GpxTextWindow, Zero_EndsTheTextInWhicheverPieceItStands) {
    const std::string document = "abcde" + std::string(1, '\0') + "fgh";
    for (const std::size_t piece : {1u, 5u, 6u, 7u, 100u}) {
        gpx::TextWindow text = InPieces(document, piece);
        text.EndAtZero();
        text.ReadRest();
        EXPECT_EQ(text.Text(), "abcde") << "in pieces of " << piece;
        EXPECT_TRUE(text.IsWhole());
    }
}

TEST_F(GpxTextWindow, FileOfAnotherSizeThanExpected_IsReadToItsEnd) {
    const std::string document(10000, 'a');
    for (const std::uint64_t expected : {0u, 1u, 9999u, 10001u, 1000000u}) {
        gpx::TextWindow text = Expecting(expected, document, gpx::TextWindow::kPiece);
        text.ReadRest();
        EXPECT_EQ(text.Text(), document) << "expected " << expected;
    }
}

TEST_F(GpxTextWindow, PointsOfALongFile_TakeNoMoreThanAPiece) {
    for (const bool isPlain : {true, false}) {
        gpx::TextWindow text = InPieces(Drive(1000, isPlain), 200);
        EXPECT_EQ(gpx::TakeOutPoints(text, gpx::PointsWanted::OfAllSegments).size(), 1000u);
        EXPECT_LT(text.Text().size(), isPlain ? 400u : 4000u) << "blanks are left of what is not plain";
    }
}

TEST_F(GpxTextWindow, DocumentThatIsBroken_IsNotReadOn) {
    gpx::TextWindow text = InPieces("<gpx><>" + std::string(1000, ' ') + "</gpx>", 100);
    EXPECT_THROW(gpx::TakeOutPoints(text, gpx::PointsWanted::None), rapidxml::parse_error);
    EXPECT_FALSE(text.IsWhole());
}

// It is scanned again and again until all of it is there.
TEST_F(GpxTextWindow, TagLongerThanManyPieces_CountsItsAttributesOnce) {
    std::string document = "<gpx";
    for (int i = 0; i < 450'000; ++i) document += " a=''";
    gpx::TextWindow text = InPieces(document + "/>", 1000);
    EXPECT_NO_THROW(gpx::TakeOutPoints(text, gpx::PointsWanted::None));
}

// Its elements count for nothing only when all of the point is seen.
TEST_F(GpxTextWindow, PointOfVeryManyElements_IsRefusedHoweverItIsRead) {
    std::string document = "<gpx><trk><trkseg><trkpt lat='1' lon='2'>";
    for (int i = 0; i < 500'000; ++i) document += "<a></a>";
    document += "</trkpt></trkseg></trk></gpx>";
    for (const auto wanted : {gpx::PointsWanted::None, gpx::PointsWanted::OfAllSegments}) {
        EXPECT_FALSE(TakeOut(gpx::TextWindow(document), wanted));
        EXPECT_FALSE(TakeOut(InPieces(document, gpx::TextWindow::kPiece), wanted));
    }
}

TEST_F(GpxTextWindow, Sample_IsTheSameInPiecesOfAnySize) {
    for (std::size_t piece = 1; piece < kSample.size() + 2; ++piece) ExpectAlikeInPieces(kSample, {piece});
}

TEST_F(GpxTextWindow, EveryBeginningOfTheSample_IsTheSameInPieces) {
    for (std::size_t size = 0; size < kSample.size(); ++size)
        ExpectAlikeInPieces(kSample.substr(0, size), {1, 7, 64, size + 1, size + 2});
}

TEST_F(GpxTextWindow, DamagedDocuments_AreTheSameInPieces) {
    int read = 0;
    for (std::uint32_t seed = 0; seed < 1000 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::string document = seed % 2 == 0 ? kSample : PlainDrive();
        Vandal(seed).Damage(document);
        read += TakeOut(gpx::TextWindow(document), gpx::PointsWanted::None) ? 1 : 0;
        ExpectAlikeInPieces(document, {1, 16, 100, 333});
    }
    EXPECT_GT(read, 100);
    EXPECT_LT(read, 900);
}

class GpxLongDocument : public GpxTextWindow {
 protected:
    GpxLongDocument() {
        m_document = Drive(30'000, true);
        EXPECT_GT(m_document.size(), 2 * gpx::TextWindow::kPiece);
    }
    void ExpectReadWhole(const std::string& document) {
        Imported imported;
        ASSERT_TRUE(Import(document, imported));
        ASSERT_EQ(imported.points.size(), 30'000u);
        for (const std::size_t i : {0u, 1u, 12'345u, 29'999u})
            EXPECT_EQ(imported.points[i].dLatitude, std::stod("1." + std::to_string(i)));
    }

    std::string m_document;
};

TEST_F(GpxLongDocument, IsReadWhole) { ExpectReadWhole(m_document); }

TEST_F(GpxLongDocument, WithLineFeedsAlone_IsReadWhole) {
    std::erase(m_document, '\r');
    ExpectReadWhole(m_document);
}

TEST_F(GpxLongDocument, InUtf16_IsReadWhole) {
    std::string units = "\xFF\xFE";
    for (const char c : m_document) units += {c, '\0'};
    ExpectReadWhole(units);
}

TEST_F(GpxLongDocument, WithZerosBehindIt_IsReadWhole) {
    ExpectReadWhole(m_document + std::string(500'000, '\0'));
}
