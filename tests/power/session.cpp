// The program that the laboratory cuts the power of: one run of the library on a device folder, by a scenario
// and a seed. Before and behind each step it leaves a mark in the shim's log. Which scenarios: kScenarios
// below.
//   power_session DEVICE SCENARIO SEED
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>

#include "qtrace.h"

extern "C" __attribute__((weak)) void qtrace_shim_mark(const char* text);

namespace {

using Points = std::vector<TckPt, je_allocator<TckPt>>;

void Mark(const char* text) {
    if (qtrace_shim_mark != nullptr) qtrace_shim_mark(text);
}

template <typename Action>
void Step(Action action) {
    Mark("begin");
    action();
    Mark("end");
}

class Session {
 public:
    explicit Session(unsigned seed) : m_random(seed) {}

    void Open(unsigned short capacity, bool overwrite) {
        m_recording = new CTrackEx(capacity);
        m_recording->SetOverWrt(overwrite);
        m_recording->SetFilePathEx("Log.dat", "LogHd.dat");
        Step([this] {  // as the library's manager does
            for (int attempt = 0; attempt < 3 && !m_recording->OpenEx(); ++attempt) continue;
        });
    }
    void Append(int batches) {
        for (int i = 0; i < batches; ++i) {
            Points batch;
            for (auto left = 1 + m_random() % 5; left > 0; --left) batch.push_back(NextFix());
            Step([&] { m_recording->AppendEx(batch); });
        }
    }
    void RemoveASlice() {
        Step([this] {
            m_recording->ClearSliceTrace(0);
            m_recording->SaveSliceData();
        });
    }
    void Rename(const char* name) {
        Step([&] {
            m_recording->SetName(name);
            m_recording->SavePropertyData();
        });
    }
    void Pause() { m_time += 1800; }
    void SaveTrack(const char* name, int points) {
        Step([&] {
            CTrack track;
            track.SetName(name);
            for (int i = 0; i < points; ++i) track.AppendPt(NextFix(), false);
            track.Calculate(true);
            track.Save(std::string("\\UserData\\Track\\") + name + ".gpx");
        });
    }
    void ChangeTrack(const char* name) {
        CTrackProxy track((std::string("\\UserData\\Track\\") + name + ".gpx").c_str());
        Step([&] { track.Load(nullptr); });  // mends line ends in the file
        Step([&] {
            track.SetColor(0x00123456);
            track.SaveTrackData();
        });
        Step([&] { track.SetTrkFileName("renamed"); });
    }
    void DeleteTrack(const char* name) {
        CTrackProxy track((std::string("\\UserData\\Track\\") + name + ".gpx").c_str());
        Mark("begin");
        track.DestoryData();  // nobody waits until the storage has forgotten a file: it may be back
    }
    void Close() {
        Step([this] { m_recording->CloseEx(); });
    }

 private:
    TckPt NextFix() {
        TckPt fix{};
        const auto step = static_cast<double>(m_number++);
        fix.dLatitude = 47.0 + step * 1e-4;
        fix.dLongitude = 8.0 + static_cast<double>(m_random() % 100) * 1e-4;
        fix.dSpeed = 10.0;
        fix.lTime = m_time++;
        return fix;
    }

    std::mt19937 m_random;
    CTrackEx* m_recording = nullptr;
    std::int32_t m_time = 1'700'000'000;
    int m_number = 0;
};

void Growing(Session& session) {
    session.Open(200, true);
    session.Append(30);
}

void Turning(Session& session) {
    session.Open(12, true);
    session.Append(40);
}

void Filling(Session& session) {
    session.Open(12, false);
    session.Append(10);
}

void Slices(Session& session) {
    session.Open(20, true);
    for (int trip = 0; trip < 5; ++trip) {
        session.Append(3);
        session.Pause();
        session.Append(2);
        session.RemoveASlice();
        session.Rename(("trip " + std::to_string(trip)).c_str());
    }
}

void Reopening(Session& session) {
    for (int start = 0; start < 4; ++start) {
        session.Open(12, true);
        session.Append(5);
        session.Close();
    }
}

void Shrinking(Session& session) {
    session.Open(30, true);
    session.Append(12);
    session.Close();
    session.Open(8, true);
    session.Append(4);
}

void Salvaging(Session& session) {
    session.Open(12, true);
    session.Append(2);
}

// On a device whose power was cut in the middle of an append.
void Recovering(Session& session) {
    session.Open(12, true);
    session.Append(1);
}

void Tracks(Session& session) {
    session.SaveTrack("one", 20);
    session.SaveTrack("two", 30);
    session.SaveTrack("one", 25);
    session.ChangeTrack("one");
    session.DeleteTrack("renamed");
}

// On a device that has a recording and the tracks one and two.
void Everything(Session& session) {
    session.Open(200, true);
    session.Append(3);
    session.Rename("today");
    session.RemoveASlice();
    session.Append(3);
    session.SaveTrack("one", 5000);  // in several pieces
    session.ChangeTrack("two");
    session.Close();
}

const std::map<std::string, void (*)(Session&)> kScenarios = {
    {"growing", Growing},     {"turning", Turning},      {"filling", Filling},     {"slices", Slices},
    {"reopening", Reopening}, {"shrinking", Shrinking},  {"salvaging", Salvaging}, {"recovering", Recovering},
    {"tracks", Tracks},       {"everything", Everything}};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    SetDeviceRoot(argv[1]);
    SetProgramFolder(L"\\App");
    SetAnsiCodePage(65001);
    char tracks[] = "\\UserData\\Track";
    CTrackMangSet::Instance()->SetNdExtTrackPath(tracks);
    Session session(static_cast<unsigned>(std::atoi(argv[3])));
    const auto scenario = kScenarios.find(argv[2]);
    if (scenario == kScenarios.end()) return 2;
    scenario->second(session);
    return 0;
}
