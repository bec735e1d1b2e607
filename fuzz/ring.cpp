// The recording's files as somebody else may have left them: the ring, the head file and the note of an append.
// The recording opens, takes a batch, and the next start finds it.
#include "fuzz/device_in_memory.h"
#include "record/log_track.h"
#include "record/settings.h"

namespace {

constexpr unsigned short kCapacity = 50;

struct Recording : CTrackEx {
    explicit Recording(bool overwrite) : CTrackEx(kCapacity) {
        SetOverWrt(overwrite);
        SetFilePathEx("Log.dat", "LogHd.dat");
    }
    ~Recording() override { CloseEx(); }
};

bool Append(Recording& recording, unsigned count) {
    std::vector<TckPt, je_allocator<TckPt>> batch(1 + count % (kCapacity - 1),
                                                  TckPt{47, 8, 0, 0, 2'000'000'000, 0, {}});
    return recording.AppendEx(batch);
}

// Exactly as long as its header says.
bool IsWhole(const std::string& ring) {
    if (ring.size() < 4) return false;
    const auto byte = [&](std::size_t i) {
        return static_cast<std::size_t>(static_cast<unsigned char>(ring[i]));
    };
    return ring.size() == 4 + 48 * (byte(2) + 256 * byte(3));
}

void PrepareFiles(std::string& input) {
    fuzz::Device().Remove("Track");
    fuzz::Device().MakeFolder("Track");
    const std::size_t note = 4 * fuzz::TakeByte(input), head = fuzz::TakeByte(input);
    fuzz::Device().Write("App/Log.dat.redo", fuzz::Take(input, note));
    fuzz::Device().Write("App/LogHd.dat", fuzz::Take(input, head));
    fuzz::Device().Write("App/Log.dat", input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    static const bool isPrepared = [] {
        char tracks[] = "\\Track";
        CTrackMangSet::Instance()->SetNdExtTrackPath(tracks);
        return true;
    }();
    fuzz::Require(isPrepared);
    const bool overwrite = fuzz::TakeByte(input) % 2 == 0;
    const unsigned batch = fuzz::TakeByte(input);
    PrepareFiles(input);
    bool isAppended = false;
    {
        Recording recording(overwrite);
        fuzz::Require(recording.OpenEx());
        isAppended = Append(recording, batch);
    }
    fuzz::Require(IsWhole(fuzz::Device().Read("App/Log.dat")));
    Recording recording(overwrite);
    fuzz::Require(recording.OpenEx());
    if (isAppended) fuzz::Require(recording.GetPtCount() > 0);
    return 0;
}
