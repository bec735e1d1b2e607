// A library of 1,000 files with Chinese, German and emoji names, under each of the three code pages: what can
// be named is listed, renamed and deleted on disk; what cannot is left alone.
#include <algorithm>
#include <map>
#include <optional>

#include "platform/device.h"
#include "tests/library/library_fixture.h"

namespace {

struct NamedPage {
    unsigned number;
    std::set<std::string> expressible;  // by the kind of name
};

void PrintTo(const NamedPage& page, std::ostream* out) { *out << "code page " << page.number; }

const std::map<std::string, std::string> kKinds = {{"Chinese", "\u5317\u4EAC\u9A91\u884C"},
                                                   {"German", "Gr\u00F6\u00DFenwahn"},
                                                   {"emoji", "\U0001F3D4\U0001F6B4"}};

}  // namespace

class ThousandFiles : public LibraryTest, public ::testing::WithParamInterface<NamedPage> {
 protected:
    ThousandFiles() {
        EXPECT_TRUE(SetAnsiCodePage(GetParam().number));
        for (int i = 0; i < kFiles; ++i) {
            const auto kind = std::next(kKinds.begin(), i % 3);
            const std::string name = kind->second + " " + std::to_string(i);
            Store(name, {.name = name});
            m_onDisk.insert(name);
            if (GetParam().expressible.contains(kind->first)) m_listed.insert(name);
        }
        Load();
    }

    static std::string Narrow(const std::string& utf8) {
        return NarrowByMachine(GetParam().number, utf8).value();
    }

    // The names of all files without extension; throws when a file is not what was stored.
    std::set<std::string> OnDiskNow() const {
        std::set<std::string> names;
        for (const std::string& file : FilesIn("\\App\\UserData\\Track"))
            names.insert(file.substr(0, file.size() - 4));
        return names;
    }

    static constexpr int kFiles = 1000;
    std::set<std::string> m_onDisk;
    std::set<std::string> m_listed;  // those whose names the code page can express
};

TEST_P(ThousandFiles, NamesThatTheCodePageCanExpress_AreListed) {
    std::set<std::string> expected;
    for (const std::string& name : m_listed) expected.insert(Narrow(name));
    const auto listed = DisplayNames();
    EXPECT_EQ(std::set<std::string>(listed.begin(), listed.end()), expected);
    EXPECT_EQ(Library().GetCnt(), expected.size());
    for (const std::string& name : expected) EXPECT_NE(Library().GetTrackByFile(name), nullptr) << name;
}

TEST_P(ThousandFiles, RenamedFiles_HaveTheirNewNamesOnDisk) {
    for (const std::string& name : m_listed) {
        if (name.back() != '7') continue;
        CTrackProxy* const track = Library().GetTrackByFile(Narrow(name));
        ASSERT_NE(track, nullptr);
        const std::string content = BytesOf(PathOf(name));
        const std::string renamed = name + " " + name.substr(0, name.find(' '));
        track->SetTrkFileName(Narrow(renamed).c_str());
        EXPECT_EQ(track->GetTrkFileName(), Narrow(renamed));
        EXPECT_EQ(BytesOf(PathOf(renamed)), content);
        m_onDisk.erase(name);
        m_onDisk.insert(renamed);
    }
    EXPECT_EQ(OnDiskNow(), m_onDisk);
    Load();
    EXPECT_EQ(Library().GetCnt(), m_listed.size());
}

TEST_P(ThousandFiles, NameThatExists_IsNotTaken) {
    const std::string first = *m_listed.begin(), last = *m_listed.rbegin();
    CTrackProxy* const track = Library().GetTrackByFile(Narrow(first));
    ASSERT_NE(track, nullptr);
    track->SetTrkFileName(Narrow(last).c_str());
    EXPECT_EQ(track->GetTrkFileName(), Narrow(first));
    EXPECT_EQ(OnDiskNow(), m_onDisk);
    EXPECT_EQ(Stored(last).name, last);
}

TEST_P(ThousandFiles, DeletedTracks_AreGoneFromDiskAndAllOthersStay) {
    for (const std::string& name : m_listed) {
        if (name.back() != '3') continue;
        Library().DelTrack(Narrow(name));
        m_onDisk.erase(name);
    }
    EXPECT_EQ(OnDiskNow(), m_onDisk);
}

TEST_P(ThousandFiles, DeletionOfAll_LeavesTheFilesThatCannotBeNamed) {
    Library().DelAllTrack();
    for (const std::string& name : m_listed) m_onDisk.erase(name);
    EXPECT_EQ(OnDiskNow(), m_onDisk);
}

TEST_P(ThousandFiles, SavedHeaders_KeepTheirNames) {
    for (unsigned long i = 0; i < Library().GetCnt(); i += 50) {
        Library().GetTrack(i)->SetColor(4711);
        ASSERT_TRUE(Library().GetTrack(i)->SaveTrackData());
    }
    int saved = 0;
    for (const std::string& name : m_listed) {
        EXPECT_EQ(Stored(name).name, name);
        saved += Stored(name).color == "4711";
    }
    EXPECT_EQ(saved, static_cast<int>((m_listed.size() + 49) / 50));
    EXPECT_EQ(OnDiskNow(), m_onDisk);
}

TEST_P(ThousandFiles, NewTrackOfSuchAName_IsAFileOfThatName) {
    for (const std::string& kind : GetParam().expressible) {
        const std::string name = kKinds.at(kind) + " new";
        CTrack track = NewTrack(Narrow(name));
        ASSERT_TRUE(Library().AddTrack(track));
        EXPECT_EQ(Stored(name).name, name);
        m_onDisk.insert(name);
    }
    EXPECT_EQ(OnDiskNow(), m_onDisk);
}

INSTANTIATE_TEST_SUITE_P(CodePages, ThousandFiles,
                         ::testing::Values(NamedPage{936, {"Chinese"}}, NamedPage{1252, {"German"}},
                                           NamedPage{65001, {"Chinese", "German", "emoji"}}),
                         [](const auto& page) { return "Page" + std::to_string(page.param.number); });
