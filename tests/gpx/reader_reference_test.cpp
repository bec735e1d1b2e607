// The reader against the plain one, on damaged documents: both must refuse the same and find the same.
#include "tests/gpx/damaged_document.h"
#include "tests/gpx/gpx_fixture.h"
#include "tests/gpx/imported.h"
#include "tests/gpx/reference_reader.h"
#include "tests/support/files_in_memory.h"
#include "tests/support/recorded_data.h"
#include "tests/support/rounds.h"

namespace {

void ExpectSame(Imported& actual, Imported& expected) {
    BlurNow(actual);
    BlurNow(expected);
    ASSERT_EQ(actual.isRead, expected.isRead);
    EXPECT_EQ(std::memcmp(&actual.metadata, &expected.metadata, sizeof(GpxMetadata)), 0);
    EXPECT_EQ(HeaderBytes(actual.info), HeaderBytes(expected.info));
    EXPECT_EQ(actual.points, expected.points);
}

// Documents that differ in nothing but digits, wherever these stand: in names too.
std::string WithOtherDigits(std::string text, std::mt19937& random) {
    for (char& c : text)
        if (c >= '0' && c <= '9' && random() % 4 == 0) c = static_cast<char>('0' + random() % 10);
    return text;
}

// A point with elements in it whose names are given.
std::string PointWith(const std::string& begin, const std::string& end) {
    return "<trkpt lat=\"47.1\" lon=\"8.5\"><ele>412.5</ele><" + begin + "><b2>3</b2></" + end +
           "></trkpt>\r\n";
}

// Line ends that the reader leaves alone: it would rewrite the file, which takes the time of a disk's commit.
std::string WithCrLf(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\n' && !result.ends_with('\r')) result += '\r';
        result += c;
    }
    return result;
}

}  // namespace

class GpxReaderReference : private FilesInMemory, public GpxTest {
 protected:
    // In each of the three ways. Tells whether the document was read.
    bool ExpectReadAlike(const std::string& document) {
        using Content = ReferenceReader::Content;
        ExpectReadAlike(document, &CGPXTransmit::ImportGpxHead, Content::Head);
        ExpectReadAlike(document, &CGPXTransmit::ImportGpxPoints, Content::FirstPoints);
        return ExpectReadAlike(document, &CGPXTransmit::ImportGpx, Content::Whole);
    }

 private:
    bool ExpectReadAlike(const std::string& document, ImportWay way, ReferenceReader::Content wanted) {
        const std::string text = WithCrLf(document);
        Imported actual, expected;
        Import(text, actual, way);
        ReferenceReader().Read(text, wanted, expected);
        ExpectSame(actual, expected);
        return expected.isRead;
    }
};

TEST_F(GpxReaderReference, Sample_IsReadAlike) {
    Imported sample;
    ASSERT_TRUE(Import(kSample, sample));
    EXPECT_EQ(sample.points.size(), 4u);
    ExpectReadAlike(kSample);
}

TEST_F(GpxReaderReference, DamagedSample_IsReadOrRefusedAlike) {
    int read = 0;
    for (int seed = 0; seed < Rounds(10000) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::string document = kSample;
        Vandal(static_cast<unsigned>(seed)).Damage(document);
        read += ExpectReadAlike(document) ? 1 : 0;
    }
    EXPECT_GT(read, Rounds(1000));  // enough of both kinds that the comparison means something
    EXPECT_LT(read, Rounds(9000));
}

TEST_F(GpxReaderReference, DamagedDrive_IsReadOrRefusedAlike) {
    const std::string drive = PlainDrive();
    ASSERT_TRUE(ExpectReadAlike(drive));
    int read = 0;
    for (int seed = 0; seed < Rounds(5000) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::string document = drive;
        Vandal(static_cast<unsigned>(seed)).Damage(document);
        read += ExpectReadAlike(document) ? 1 : 0;
    }
    EXPECT_GT(read, Rounds(500));
    EXPECT_LT(read, Rounds(4500));
}

// A point that differs from the one before it in nothing but digits gets no second look; nor does the parser
// compare the names of end tags.
TEST_F(GpxReaderReference, OtherDigitsInNames_AreReadAlike) {
    const std::string points = PointWith("a1", "a1") + PointWith("a1", "a2") + PointWith("a3", "a3");
    for (const std::string& first : {PointWith("a1", "a1"), PointWith("a1", "a2")})
        EXPECT_TRUE(ExpectReadAlike(DocumentOfPoints(first + points + "</trkseg><trkseg>" + points)));
}

TEST_F(GpxReaderReference, DriveOfOtherDigits_IsReadOrRefusedAlike) {
    std::string drive = PlainDrive();
    for (std::size_t at = 0; (at = drive.find("\r\n\t</trkpt>", at)) != drive.npos; at += 30)
        drive.insert(at, "<a1><b2>3</b2></a1>");
    std::mt19937 random(Seed(810));
    for (int i = 0; i < Rounds(2000) && !HasFailure(); ++i) {
        std::string document = WithOtherDigits(drive, random);
        if (i % 2 == 0) Vandal(static_cast<unsigned>(i)).Damage(document);
        SCOPED_TRACE(document);
        ExpectReadAlike(document);
    }
}

TEST_F(GpxReaderReference, DamagedRecordings_AreReadOrRefusedAlike) {
    const auto files = RecordedFiles("gpx");
    if (files.empty()) GTEST_SKIP() << "no recorded data here";
    for (const auto& file : files) {
        std::string document = ReadFile(file);
        const bool isText = document.find('\0') == document.npos && file.extension() == ".gpx";
        if (!isText || document.size() > 20000) continue;
        for (int seed = 0; seed < Rounds(50) && !HasFailure(); ++seed) {
            SCOPED_TRACE(file.filename().string() + " seed " + std::to_string(seed));
            std::string damaged = document;
            if (seed > 0) Vandal(static_cast<unsigned>(seed)).Damage(damaged);
            ExpectReadAlike(damaged);
        }
    }
}
