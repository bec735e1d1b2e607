#include "host/text/utf8_path.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(Utf8Path, Text_IsThePathAndBack) {
    const std::filesystem::path path = PathOf("Ordner/Überfahrt 北京.gpx");
    EXPECT_TRUE(path.filename().u8string() == u8"Überfahrt 北京.gpx");
    EXPECT_EQ(Utf8Of(path.stem()), "Überfahrt 北京");
    EXPECT_EQ(Utf8Of(PathOf("")), "");
}

// Names on disk are bytes here, and not all of them were written as UTF-8.
TEST(Utf8Path, BytesThatAreNoUtf8_StayAsTheyAre) { EXPECT_EQ(Utf8Of(PathOf("caf\xe9.gpx")), "caf\xe9.gpx"); }

}  // namespace
}  // namespace host
