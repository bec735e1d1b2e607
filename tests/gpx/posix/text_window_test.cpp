#include "gpx/text_window.h"

#include <stdexcept>

#include <gtest/gtest.h>

TEST(GpxTextWindowOfABadFile, ReadError_IsThrown) {
    gpx::Stream stream(std::fopen("/proc/self/mem", "rb"));  // nothing lies at its beginning
    ASSERT_NE(stream, nullptr);
    EXPECT_THROW(gpx::TextWindow(std::move(stream), 100), std::runtime_error);
}
