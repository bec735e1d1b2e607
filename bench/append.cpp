// A batch of points made durable: ours, a transaction of SQLite's in WAL mode and with a rollback journal, and
// the limits, the bare writes and syncs. On the disk of the folder it is started in, in the time that passes;
// the ratios hold for that disk.
//   bench_append [BATCHES]      in a row; default: 100
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

void Check(bool isRight) { ::Check(isRight, "an append failed"); }

constexpr std::size_t kCapacity = 10000;
constexpr std::size_t kFillingBatch = 1000;

// The batches of one drive, in turn.
class Batches {
 public:
    PointList Next(std::size_t size) {
        if (m_next + size > m_drive.size()) m_next = 0;
        const auto begin = m_drive.begin() + static_cast<std::ptrdiff_t>(m_next);
        m_next += size;
        return {begin, begin + static_cast<std::ptrdiff_t>(size)};
    }

 private:
    PointList m_drive = Drive(3 * kCapacity);
    std::size_t m_next = 0;
};

// Full, as it is most of its life.
class OurRecording {
 public:
    OurRecording() {
        m_recording.SetFilePathEx("Log.dat", "LogHd.dat");
        m_recording.SetOverWrt(true);
        Check(m_recording.OpenEx());
        while (m_recording.GetPtCount() < kCapacity) Append(kFillingBatch);
    }
    ~OurRecording() { m_recording.CloseEx(); }
    OurRecording(const OurRecording&) = delete;
    OurRecording& operator=(const OurRecording&) = delete;

    void Append(std::size_t size) {
        PointList batch = m_batches.Next(size);
        Check(m_recording.AppendEx(batch));
    }

 private:
    Batches m_batches;
    CTrackEx m_recording;
};

// The newest 10000 points as rows, each with its place in the ring, so that nothing has to be deleted.
class SqliteRecording {
 public:
    SqliteRecording(const std::string& path, const std::string& journal) {
        Check(sqlite3_open(path.c_str(), &m_database) == SQLITE_OK);
        Run(("PRAGMA journal_mode=" + journal).c_str());
        Run("PRAGMA synchronous=FULL");
        Run("CREATE TABLE point(slot INTEGER PRIMARY KEY, lat REAL, lon REAL, alt REAL, speed REAL, time "
            "INTEGER, "
            "course REAL)");
        sqlite3_prepare_v2(m_database, "INSERT OR REPLACE INTO point VALUES(?,?,?,?,?,?,?)", -1, &m_insert,
                           nullptr);
        for (std::size_t i = 0; i < kCapacity; i += kFillingBatch) Append(kFillingBatch);
    }
    ~SqliteRecording() {
        sqlite3_finalize(m_insert);
        sqlite3_close(m_database);
    }
    SqliteRecording(const SqliteRecording&) = delete;
    SqliteRecording& operator=(const SqliteRecording&) = delete;

    void Append(std::size_t size) {
        Run("BEGIN");
        for (const TckPt& point : m_batches.Next(size)) Insert(point);
        Run("COMMIT");
    }

 private:
    void Run(const char* statement) {
        Check(sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) == SQLITE_OK);
    }
    void Insert(const TckPt& point) {
        sqlite3_bind_int64(m_insert, 1, m_slot++ % static_cast<sqlite3_int64>(kCapacity));
        sqlite3_bind_double(m_insert, 2, point.dLatitude);
        sqlite3_bind_double(m_insert, 3, point.dLongitude);
        sqlite3_bind_double(m_insert, 4, point.dAltitude);
        sqlite3_bind_double(m_insert, 5, point.dSpeed);
        sqlite3_bind_int(m_insert, 6, point.lTime);
        sqlite3_bind_double(m_insert, 7, static_cast<double>(point.fCourse));
        Check(sqlite3_step(m_insert) == SQLITE_DONE);
        sqlite3_reset(m_insert);
    }

    Batches m_batches;
    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_insert = nullptr;
    sqlite3_int64 m_slot = 0;
};

// A file as long as the ring, written at one place after the other.
class BareFile {
 public:
    explicit BareFile(const std::string& path) : m_file(::open(path.c_str(), O_RDWR | O_CREAT, 0644)) {
        const std::string zeros(kCapacity * sizeof(TckPt), '\0');
        Check(::write(m_file, zeros.data(), zeros.size()) == static_cast<ssize_t>(zeros.size()) &&
              ::fsync(m_file) == 0);
    }
    ~BareFile() { ::close(m_file); }
    BareFile(const BareFile&) = delete;
    BareFile& operator=(const BareFile&) = delete;

    // `size` bytes somewhere, and before them the ring's four at its beginning if that is asked for.
    void WriteAndSync(std::size_t size, bool withHeader) {
        m_place = (m_place + size) % (kCapacity * sizeof(TckPt) - size);
        if (withHeader) Write(4, 0);
        Write(size, m_place);
        Check(::fdatasync(m_file) == 0);
    }
    void WriteNoteAndSync(std::size_t size) {
        Write(size, 0);
        Check(::fdatasync(m_file) == 0);
    }

 private:
    void Write(std::size_t size, std::size_t place) {
        Check(::pwrite(m_file, m_bytes.data(), size, static_cast<off_t>(place)) == static_cast<ssize_t>(size));
    }

    int m_file;
    std::size_t m_place = 0;
    std::string m_bytes = std::string(1 << 16, 'x');
};

void MeasureAppending(std::size_t batch, int repeats) {
    const BenchDevice device(BenchDevice::Medium::Disk);
    OurRecording ours;
    SqliteRecording ahead(device.HostPath("ahead.db"), "WAL");
    SqliteRecording behind(device.HostPath("behind.db"), "DELETE");
    BareFile ring(device.HostPath("ring"));
    BareFile note(device.HostPath("note"));
    const auto times = [=](auto work) {
        return [=] {
            for (int i = 0; i < repeats; ++i) work();
        };
    };

    SideBySide works("append a batch durably", batch, Measured::Passing);
    works.Add("ours", times([&] { ours.Append(batch); }));
    works.Add("SQLite, WAL, synchronous FULL", times([&] { ahead.Append(batch); }));
    works.Add("SQLite, rollback journal, synchronous FULL", times([&] { behind.Append(batch); }));
    const std::size_t records = batch * sizeof(TckPt);
    works.Add("limit: one write and its sync", times([&] { ring.WriteAndSync(records, false); }));
    works.Add("limit: the writes and syncs of note and ring", times([&] {
                  note.WriteNoteAndSync(records + 68);
                  ring.WriteAndSync(records, true);
              }));
    works.Measure();
}

}  // namespace

int main(int argc, char** argv) {
    const int repeats = argc > 1 ? std::atoi(argv[1]) : 100;
    for (const std::size_t batch : {1, 30, 300}) MeasureAppending(batch, repeats);
    return 0;
}
