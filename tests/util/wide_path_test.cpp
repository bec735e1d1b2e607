// Narrow device paths taken apart: a backslash byte may be half of a character.
#include "util/wide_path.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/util/text_fixture.h"

namespace {

// Two Chinese characters whose second byte is a backslash, and a vertical bar.
const std::string kBackslashInside = "\x81\x5C", kBarInside = "\x81\x7C";

std::pair<std::string, bool> Mended(std::string name) {
    const bool changed = ReplaceInvalidFileNameCharacters(name);
    return {name, changed};
}

}  // namespace

class NarrowPath : public TextTest {};

TEST_F(NarrowPath, AsWide_IsTheSamePath) {
    EXPECT_EQ(WidePath("\\Track\\" + kBackslashInside + ".gpx"), L"\\Track\\\u4E57.gpx");
    EXPECT_EQ(WidePath(""), L"");
}

TEST_F(NarrowPath, AsWide_IsWholeUpTo260Units) {
    EXPECT_EQ(WidePath(std::string(260, 'x')), std::wstring(260, L'x'));
}

TEST_F(NarrowPath, AsWideTooLong_IsNeverThePathOfAnotherFile) {
    const std::wstring path = WidePath(std::string(261, 'x'));
    EXPECT_TRUE(path.empty() || path.size() >= 260) << "a shorter path could be opened";
}

TEST_F(NarrowPath, Stem_IsWithoutFolderAndExtension) {
    EXPECT_EQ(FileStem("\\Track\\a.b.gpx"), "a.b");
    EXPECT_EQ(FileStem("a.gpx"), "a");
    EXPECT_EQ(FileStem("\\Track.old\\a.gpx"), "a");
    EXPECT_EQ(FileStem("\\Track\\.gpx"), "");
}

TEST_F(NarrowPath, Stem_IsNotSplitInsideACharacter) {
    EXPECT_EQ(FileStem("\\Track\\" + kBackslashInside + "x.gpx"), kBackslashInside + "x");
}

TEST_F(NarrowPath, InvalidCharacters_BecomeUnderscores) {
    EXPECT_EQ(Mended("a:b?c"), std::make_pair(std::string("a_b_c"), true));
    EXPECT_EQ(Mended("\\/:*?\"<>|"), std::make_pair(std::string("_________"), true));
}

TEST_F(NarrowPath, ValidName_StaysAndIsNotChanged) {
    EXPECT_EQ(Mended("My Tour.1"), std::make_pair(std::string("My Tour.1"), false));
    EXPECT_EQ(Mended(""), std::make_pair(std::string(), false));
}

TEST_F(NarrowPath, BytesOfADoubleByteCharacter_AreNoInvalidOnes) {
    EXPECT_EQ(Mended(kBackslashInside + kBarInside), std::make_pair(kBackslashInside + kBarInside, false));
    EXPECT_EQ(Mended(kBackslashInside + "|"), std::make_pair(kBackslashInside + "_", true));
}

TEST_F(NarrowPath, TrackFile_IsFolderBackslashNameAndExtension) {
    EXPECT_EQ(TrackFilePath("\\Track", "Tour"), "\\Track\\Tour.gpx");
    EXPECT_EQ(TrackFilePath("\\" + kBackslashInside, "a.b"), "\\" + kBackslashInside + "\\a.b.gpx");
}
