// A power cut in the middle of an append: the disk is rebuilt as it could be, and must open with the recording
// as it was before that append or after it.
#include <random>

#include "record/append_redo.h"
#include "tests/record/log_track_fixture.h"

namespace {

constexpr const char* kNote = "\\App\\Log.dat.redo";
constexpr std::size_t kSector = 512;

class PowerCut : public FilesInMemory, public LogTrackTest {
 protected:
    // Records `count` fixes and keeps what the files held before and after, and the note of that append.
    void Append(int count) {
        m_before = BytesOf(kPointFile);
        ASSERT_TRUE(Record(count));
        m_after = BytesOf(kPointFile);
        m_note = BytesOf(kNote);
        Close();
    }

    // What the point file holds once a recording has been opened on this disk.
    std::string Restarted(const std::string& pointFile, const std::string& note) {
        Write(kPointFile, pointFile);
        Write(kNote, note);
        EXPECT_TRUE(Open(m_capacity));
        const std::string bytes = BytesOf(kPointFile);
        Close();
        return bytes;
    }

    // The file before, with only some of the pieces of the append written to it: the header, and each record
    // that changed. Pieces are numbered in that order.
    std::string Torn(const std::vector<bool>& written) const {
        std::string file = m_before;
        std::size_t piece = 0;
        const auto write = [&](std::size_t at, std::size_t size) {
            const std::string bytes = m_after.substr(at, size);
            if (at + size <= m_before.size() && bytes == m_before.substr(at, size)) return;
            if (!written.at(piece++)) return;
            file.resize(std::max(file.size(), at + size), '\0');
            file.replace(at, size, bytes);
        };
        write(0, 4);
        for (std::size_t at = 4; at < m_after.size(); at += described::kRecordSize)
            write(at, described::kRecordSize);
        return file;
    }

    std::string HeaderOnly() const {
        std::vector<bool> written(64);
        written[0] = true;
        return Torn(written);
    }

    void ExpectAfterWhateverWasWritten() {
        std::mt19937 random(20240512);
        for (int cut = 0; cut < 300; ++cut) {
            std::vector<bool> written(64);
            const bool inOrder = cut < 64;
            for (std::size_t i = 0; i < written.size(); ++i)
                written[i] = inOrder ? static_cast<int>(i) < cut : random() % 2 == 0;
            ASSERT_EQ(Restarted(Torn(written), m_note), m_after) << "cut " << cut;
        }
    }

    // A note behind its check value and length.
    static std::string Framed(const std::string& note) {
        std::uint32_t rest = 0xFFFFFFFFu;
        for (const char byte : note)
            for (int bit = 0; bit < 8; ++bit) {
                const bool differs = ((rest ^ (static_cast<unsigned char>(byte) >> bit)) & 1u) != 0;
                rest = (rest >> 1) ^ (differs ? 0xEDB88320u : 0u);
            }
        rest = ~rest;
        const auto size = static_cast<std::uint32_t>(note.size());
        return described::Field(rest & 0xFFFF) + described::Field(rest >> 16) +
               described::Field(size & 0xFFFF) + described::Field(size >> 16) + note;
    }

    int m_capacity = 20;
    std::string m_before;
    std::string m_after;
    std::string m_note;
};

TEST_F(PowerCut, WhileTheFirstBatchIsWritten_TheBatchIsThere) {
    ASSERT_TRUE(Open(m_capacity));
    Append(7);
    ExpectAfterWhateverWasWritten();
}

TEST_F(PowerCut, WhileTheRingGrows_TheBatchIsThere) {
    ASSERT_TRUE(Open(m_capacity));
    Record(9);
    Append(7);
    ExpectAfterWhateverWasWritten();
}

TEST_F(PowerCut, WhileABatchCrossesTheEnd_TheBatchIsThere) {
    ASSERT_TRUE(Open(m_capacity));
    Record(16);
    Append(7);
    ExpectAfterWhateverWasWritten();
}

TEST_F(PowerCut, InAWrappedRing_TheBatchIsThere) {
    ASSERT_TRUE(Open(m_capacity));
    Record(16);
    Record(7);
    Append(5);
    ExpectAfterWhateverWasWritten();
}

TEST_F(PowerCut, WhileTheNoteIsWritten_TheRecordingIsAsBefore) {
    ASSERT_TRUE(Open(m_capacity));
    Record(9);
    const std::string olderNote = BytesOf(kNote);
    Append(7);
    for (std::size_t cut = 0; cut < m_note.size(); ++cut) {
        std::string torn = m_note.substr(0, cut);
        if (torn.size() < olderNote.size()) torn += olderNote.substr(torn.size());
        if (torn == m_note) continue;
        ASSERT_EQ(Restarted(m_before, torn), m_before) << "cut at byte " << cut;
    }
}

TEST_F(PowerCut, SectorsOfTheNoteMissing_TheRecordingIsAsBefore) {
    m_capacity = 200;
    ASSERT_TRUE(Open(m_capacity));
    Append(60);
    for (std::size_t sector = 0; sector < m_note.size(); sector += kSector) {
        std::string torn = m_note;
        for (std::size_t i = sector; i < std::min(sector + kSector, torn.size()); ++i) torn[i] = '\0';
        if (torn == m_note) continue;
        ASSERT_EQ(Restarted(m_before, torn), m_before) << "sector at byte " << sector;
    }
}

TEST_F(PowerCut, RecordingThatGoesOn_KeepsEverything) {
    ASSERT_TRUE(Open(m_capacity));
    Record(4);
    Append(5);
    Write(kPointFile, HeaderOnly());
    Write(kNote, m_note);
    ASSERT_TRUE(Open(m_capacity));
    EXPECT_TRUE(Record(3));
    EXPECT_EQ(Times(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

// What the note is for: this disk is one of those above.
TEST_F(PowerCut, WithoutTheNote_ATornAppendIsGivenUpAsDamage) {
    ASSERT_TRUE(Open(m_capacity));
    Record(9);
    Append(7);
    EXPECT_EQ(Restarted(HeaderOnly(), ""), described::RingFile(0, {}));
}

class AppendNote : public PowerCut {};

TEST_F(AppendNote, RecordingClosedInOrder_LeavesAVoidNote) {
    ASSERT_TRUE(Open(m_capacity));
    Append(5);
    EXPECT_EQ(Restarted(m_before, BytesOf(kNote)), m_before);
}

TEST_F(AppendNote, RingOfAnotherState_IsLeftAlone) {
    ASSERT_TRUE(Open(m_capacity));
    Append(5);
    const std::string other = described::RingFile(0, {Sent(0), Sent(1)});
    EXPECT_EQ(Restarted(other, m_note), other);
}

// Batches of one size give many rings the same header.
TEST_F(AppendNote, RingOfAnotherRecordingWithTheSameHeader_IsLeftAlone) {
    ASSERT_TRUE(Open(m_capacity));
    Record(5);
    Append(5);
    std::string other = m_after;
    for (std::size_t slot = 0; slot < 10; ++slot) {
        TckPt point = described::Point(Sent(slot));
        point.dLatitude += 1.0;
        other.replace(4 + slot * described::kRecordSize, described::kRecordSize, described::Record(point));
    }
    EXPECT_EQ(Restarted(other, m_note), other);
}

TEST_F(AppendNote, DamagedInsideThoughItsCheckIsRight_IsLeftAlone) {
    ASSERT_TRUE(Open(m_capacity));
    Record(5);
    Append(5);
    constexpr std::size_t kWithoutBlocks = 58;  // a note that says what a header alone becomes
    for (std::size_t size = 1; size + 8 < m_note.size(); ++size) {
        if (size == kWithoutBlocks) continue;
        ASSERT_EQ(Restarted(m_before, Framed(m_note.substr(8, size))), m_before) << size << " bytes";
    }
    std::string beyond = m_note.substr(8);
    beyond[58] = 120;  // the first block's slot
    EXPECT_EQ(Restarted(m_before, Framed(beyond)), m_before);
}

TEST_F(AppendNote, ReplayedNote_IsVoidAfterwards) {
    ASSERT_TRUE(Open(m_capacity));
    Append(5);
    Restarted(m_before, m_note);
    EXPECT_EQ(Restarted(m_before, BytesOf(kNote)), m_before);
}

TEST_F(AppendNote, ClearedRecordingSaved_DoesNotComeBack) {
    ASSERT_TRUE(Open(m_capacity));
    Record(5);
    m_track->ClearAllSliceTrace();
    ASSERT_TRUE(m_track->SaveSliceData());
    EXPECT_EQ(Restarted(BytesOf(kPointFile), BytesOf(kNote)), described::RingFile(0, {}));
}

TEST_F(AppendNote, FolderInItsPlace_DoesNotStopTheRecording) {
    std::filesystem::create_directories(OnDisk(kNote));
    ASSERT_TRUE(Open(m_capacity));
    EXPECT_TRUE(Record(5));
    EXPECT_EQ(Ring(), (RingState{0, 5}));
}

}  // namespace
