// A device folder with stored tracks as the library writes them, for tests of what shows them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/text/markup.h"
#include "host/text/text.h"
#include "host/tracks/library.h"
#include "tests/support/device.h"
#include "tests/support/process.h"

namespace host {

class TrackFolder : public ::testing::Test {
 protected:
    TrackFolder() { m_settings.device = m_device.string(); }

    // `count` points northwards from a place, ten seconds and some 11 m apart, that climb by a metre each.
    static Points Way(double latitude, double longitude, int count) {
        Points points;
        for (int i = 0; i < count; ++i)
            points.push_back({latitude + 1e-4 * i, longitude, 400.0 + i, 0, 1715500800 + 10 * i, 0, {}});
        return points;
    }

    // `name`: UTF-8, also the file's. `title`: in the document, instead of it.
    void Store(const std::string& name, const Points& points, bool shown = true,
               const std::string& title = "") const {
        const Library library(m_settings);
        CTrack track;
        track.SetName(FromUtf8(name).c_str());
        for (const TckPt& point : points) track.AppendPt(point, false);
        track.SetVisible(shown);
        ASSERT_EQ(library.Store(track), std::nullopt);
        if (!title.empty()) SetTitle(name, title);
    }

    // As another program may have written it: the library itself gives no such names.
    void SetTitle(const std::string& name, const std::string& title) const {
        std::string document = ReadFile(File(name + ".gpx"));
        const std::string before = "<name>" + name + "</name>";
        ASSERT_NE(document.find(before), std::string::npos);
        document.replace(document.find(before), before.size(), "<name>" + MarkupText(title) + "</name>");
        WriteFile(File(name + ".gpx"), document);
    }

    std::filesystem::path File(const std::string& name) const { return m_device / "UserData" / "Track" / name; }

    std::vector<std::string> Command(const std::string& command,
                                     const std::vector<std::string>& arguments) const {
        std::vector<std::string> all = {QTRACE_PROGRAM, command, "--device", m_device.string()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return all;
    }

    // Markup and script in 31 bytes: the library keeps 32 of a name.
    static constexpr const char* kHostile = "</script><img onerror=alert(1)>";

    TemporaryFolder m_folder;
    std::filesystem::path m_device = m_folder.Path() / "device";
    HostSettings m_settings;
};

}  // namespace host
