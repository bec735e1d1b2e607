// Display names: at most 32 bytes long, and no two tracks with the same one. The list of tracks:
// track_list.cpp.
#include <functional>
#include <unordered_map>

#include "library/track_manager.h"
#include "platform/thread.h"
#include "util/paths.h"
#include "util/text.h"

namespace {

constexpr int kNameSize = 32;

using IsTaken = std::function<bool(const std::string&)>;

// The name with the first number above `number` that makes it one nobody has; `number` becomes that number.
std::string Numbered(const std::string& name, int& number, const IsTaken& isTaken) {
    for (;;) {
        const std::string suffix = "_" + std::to_string(++number);
        std::string numbered;
        GetString_1(name, numbered, kNameSize - static_cast<int>(suffix.size()), false);
        numbered += suffix;
        if (!isTaken(numbered)) return numbered;
    }
}

// The name cut to what a track may have; true when it had to be cut, and then it is one that nobody has.
bool Shorten(const std::string& name, std::string& out, const IsTaken& isTaken) {
    GetString_1(name, out, kNameSize, false);
    if (out == name) return false;
    int number = 0;
    if (isTaken(out)) out = Numbered(name, number, isTaken);
    return true;
}

// The names of all tracks. A library of a thousand tracks that a receiver called alike takes some hundred
// thousand look-ups: one by one through the list they would hold the loading thread for longer than a stop can
// wait.
class Names {
 public:
    explicit Names(const std::vector<CTrackProxy*>& tracks) {
        for (CTrackProxy* track : tracks) {
            AddDisplayName(track->GetName());
            ++m_capitals[InCapitals(track->GetTrkFileName())];
        }
    }

    // As display name or file name, ignoring letter case.
    bool AreTaken(const std::string& name) const { return CountOf(m_capitals, InCapitals(name)) > 0; }
    // As display name of several tracks, exactly so.
    bool AreShared(const std::string& name) const { return CountOf(m_displayNames, name) > 1; }

    void Rename(CTrackProxy& track, const std::string& name) {
        --m_displayNames[track.GetName()];
        --m_capitals[InCapitals(track.GetName())];
        track.SetName(name.c_str());
        AddDisplayName(track.GetName());
    }

 private:
    using Counts = std::unordered_map<std::string, int>;

    static std::string InCapitals(std::string text) {
        UpString(text);
        return text;
    }
    static int CountOf(const Counts& counts, const std::string& name) {
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    }
    void AddDisplayName(const std::string& name) {
        ++m_displayNames[name];
        ++m_capitals[InCapitals(name)];
    }

    Counts m_capitals;      // display and file names
    Counts m_displayNames;  // as they are
};

}  // namespace

bool CTrackMan::GetTrackName(const std::string& name, std::string& out) {
    return Shorten(name, out, [this](const std::string& cut) { return IsNameTaken(cut); });
}

void CTrackMan::ConstructTrackName(const std::string& name, std::string& out) {
    int number = 0;
    out = Numbered(name, number, [this](const std::string& numbered) { return IsNameTaken(numbered); });
}

bool CTrackMan::IsNameTaken(const std::string& name) {
    return GetTrack(name) != nullptr || GetTrackByFile(name) != nullptr;
}

// Of tracks with one display name the last keeps it.
void CTrackMan::CheckTrackIsSameName() {
    Names names(m_vecTracks);
    const IsTaken isTaken = [&names](const std::string& name) { return names.AreTaken(name); };
    for (std::size_t i = m_vecTracks.size(); i-- > 0 && !platform::StopRequested();) {
        const std::string name = m_vecTracks[i]->GetName();
        std::string shortened;
        if (Shorten(name, shortened, isTaken)) {
            names.Rename(*m_vecTracks[i], shortened);
            continue;
        }
        int number = 0;  // no name becomes free in between, so each search goes on where the last one ended
        for (std::size_t j = i; j-- > 0 && names.AreShared(name);)
            if (m_vecTracks[j]->GetName() == name)
                names.Rename(*m_vecTracks[j], Numbered(name, number, isTaken));
    }
}
