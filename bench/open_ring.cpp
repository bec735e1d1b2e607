// A full ring opened: ours, with its check of each record, its slices and their statistics, and SQLite reading
// the same rows into points.
//   bench_open_ring
#include <sqlite3.h>

#include "bench/support/drive.h"
#include "bench/support/side_by_side.h"

namespace {

constexpr std::size_t kBatch = 50;

void RecordOurs(const PointList& points) {
    CTrackEx recording;
    recording.SetFilePathEx("Log.dat", "LogHd.dat");
    Check(recording.OpenEx(), "a recording cannot be opened");
    for (auto begin = points.begin(); begin != points.end(); begin += kBatch) {
        PointList batch(begin, begin + kBatch);
        Check(recording.AppendEx(batch), "a batch is refused");
    }
    recording.CloseEx();
}

void OpenOurs(std::size_t expected) {
    CTrackEx recording;
    recording.SetFilePathEx("Log.dat", "LogHd.dat");
    Check(recording.OpenEx() && recording.GetPtCount() == expected, "the recording is not as it was");
    recording.CloseEx();
}

void RecordInSqlite(const std::string& path, const PointList& points) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_exec(
        database,
        "CREATE TABLE point(slot INTEGER PRIMARY KEY, lat REAL, lon REAL, alt REAL, speed REAL, time INTEGER, "
        "course REAL); BEGIN",
        nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database, "INSERT INTO point VALUES(NULL,?,?,?,?,?,?)", -1, &insert, nullptr);
    for (const TckPt& point : points) {
        sqlite3_bind_double(insert, 1, point.dLatitude);
        sqlite3_bind_double(insert, 2, point.dLongitude);
        sqlite3_bind_double(insert, 3, point.dAltitude);
        sqlite3_bind_double(insert, 4, point.dSpeed);
        sqlite3_bind_int(insert, 5, point.lTime);
        sqlite3_bind_double(insert, 6, static_cast<double>(point.fCourse));
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(database);
}

void OpenSqlite(const std::string& path, std::size_t expected) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(database, "SELECT lat, lon, alt, speed, time, course FROM point ORDER BY slot", -1,
                       &select, nullptr);
    PointList points;
    while (sqlite3_step(select) == SQLITE_ROW) {
        TckPt point{};
        point.dLatitude = sqlite3_column_double(select, 0);
        point.dLongitude = sqlite3_column_double(select, 1);
        point.dAltitude = sqlite3_column_double(select, 2);
        point.dSpeed = sqlite3_column_double(select, 3);
        point.lTime = sqlite3_column_int(select, 4);
        point.fCourse = static_cast<float>(sqlite3_column_double(select, 5));
        points.push_back(point);
    }
    Check(points.size() == expected, "SQLite does not find the points");
    sqlite3_finalize(select);
    sqlite3_close(database);
}

void MeasureOpening(std::size_t count) {
    const BenchDevice device;
    const PointList points = Drive(count);
    const std::string database = device.HostPath("points.db");
    RecordOurs(points);
    RecordInSqlite(database, points);
    SideBySide works("open ring", count);
    works.Add("ours", [&] { OpenOurs(count); });
    works.Add("SQLite", [&] { OpenSqlite(database, count); });
    works.Measure();
}

}  // namespace

int main() {
    for (const std::size_t size : {100, 1000, 10'000}) MeasureOpening(size);
    return 0;
}
