#include "gpx/text_window.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

// Of a storage that fails behind the first bytes.
ssize_t ReadOrFail(void* left, char* to, std::size_t size) {
    auto& bytes = *static_cast<std::size_t*>(left);
    if (bytes == 0) return -1;
    const std::size_t count = std::min(bytes, size);
    bytes -= count;
    std::fill_n(to, count, 'a');
    return static_cast<ssize_t>(count);
}

gpx::Stream StreamThatFailsBehind(std::size_t& bytes) {
    return gpx::Stream(fopencookie(&bytes, "rb", {&ReadOrFail, nullptr, nullptr, nullptr}));
}

}  // namespace

TEST(GpxTextWindowOfABadFile, ReadErrorAtTheBeginning_IsThrown) {
    std::size_t bytes = 0;
    EXPECT_THROW(gpx::TextWindow(StreamThatFailsBehind(bytes), 10000), std::runtime_error);
}

TEST(GpxTextWindowOfABadFile, ReadErrorFurtherOn_IsThrown) {
    std::size_t bytes = 10000;
    gpx::TextWindow text(StreamThatFailsBehind(bytes), 100'000, 5000);
    EXPECT_EQ(text.Text(), std::string(5000, 'a'));
    EXPECT_THROW(text.ReadRest(), std::runtime_error);
}
