// An element of a wide string has 32 bits here, of which a code unit uses 16.
#include <string>

#include <gtest/gtest.h>

#include "platform/code_page.h"

namespace {

std::string Narrow(unsigned page, wchar_t element) {
    std::string bytes(8, '\0');
    bytes.resize(static_cast<std::size_t>(platform::WideCharToMultiByte(page, &element, 1, bytes.data(), 8)));
    return bytes;
}

}  // namespace

TEST(WideElement, ThatIsNoCodeUnit_IsReplaced) {
    EXPECT_EQ(Narrow(platform::kUtf8CodePage, wchar_t{0x1F600}), "\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(936, wchar_t{0x1F600}), "?");
}
