// Streams of a device of its own, opened, filled and read in few words.
#pragma once

#include <cstdio>
#include <string>

#include "platform/file.h"
#include "tests/support/device.h"

class Stream : public DeviceTest {
 protected:
    static std::FILE* Open(const wchar_t* path, const wchar_t* mode) { return platform::_wfopen(path, mode); }

    static bool Opens(const wchar_t* path, const wchar_t* mode) {
        std::FILE* stream = Open(path, mode);
        return platform::fclose(stream) == 0;
    }

    static void Put(std::FILE* stream, const std::string& bytes) {
        EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), stream), bytes.size());
    }

    static std::string Rest(std::FILE* stream) {
        char bytes[64];
        return {bytes, std::fread(bytes, 1, sizeof bytes, stream)};
    }
};
