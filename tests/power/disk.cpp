#include "tests/power/disk.h"

#include <algorithm>
#include <random>

namespace power {
namespace {

using disk_log::Record;

bool IsContent(const Record& record) {
    return record.what == disk_log::kWrite || record.what == disk_log::kTruncate;
}

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
}

// A name's change is on storage once one of the folders that it touches is.
bool TouchesFolder(const Record& record, const std::string& folder) {
    return FolderOf(record.text) == folder ||
           (record.what == disk_log::kRename && FolderOf(record.more) == folder);
}

}  // namespace

DiskModel::DiskModel(const std::string& root, const Disk& atFirst) : m_root(root) {
    int number = -1;  // files of before have numbers of their own until the program opens them
    for (const auto& [path, content] : atFirst) {
        m_settled.names[path] = number;
        m_settled.contents[number--] = content;
    }
}

std::string DiskModel::Below(const std::string& path) const {
    return path.rfind(m_root + '/', 0) == 0 ? path.substr(m_root.size() + 1) : path;
}

void DiskModel::Take(const Record& given) {
    Record record = given;
    if (!IsContent(record)) {
        record.text = Below(record.text);
        record.more = Below(record.more);
    }
    switch (record.what) {
        case disk_log::kExisting: {
            const int before = m_settled.names.at(record.text);
            m_settled.names[record.text] = record.file;
            m_settled.contents[record.file] = m_settled.contents.at(before);
            return;
        }
        case disk_log::kSync:
            return Settle([&](const Record& r) { return IsContent(r) && r.file == record.file; });
        case disk_log::kSyncFolder:
            return Settle([&](const Record& r) { return !IsContent(r) && TouchesFolder(r, record.text); });
        case disk_log::kFolder:
        case disk_log::kMark:
            return;
        default:
            m_pending.push_back(record);
    }
}

void DiskModel::Settle(const std::function<bool(const Record&)>& isSettled) {
    std::vector<Record> left;
    for (const Record& record : m_pending) {
        if (isSettled(record))
            Apply(record, m_settled);
        else
            left.push_back(record);
    }
    m_pending = left;
}

void DiskModel::Apply(const Record& record, Media& media) {
    std::string& content = media.contents[record.file];
    const auto offset = static_cast<std::size_t>(record.number);
    switch (record.what) {
        case disk_log::kCreate:
            media.names[record.text] = record.file;
            break;
        case disk_log::kTruncate:
            content.resize(offset);
            break;
        case disk_log::kWrite:
            if (content.size() < offset + record.text.size()) content.resize(offset + record.text.size());
            content.replace(offset, record.text.size(), record.text);
            break;
        case disk_log::kRename:
            media.names.erase(record.text);
            media.names[record.more] = record.file;
            break;
        case disk_log::kUnlink:
            media.names.erase(record.text);
            break;
    }
}

Disk DiskModel::DiskOf(const Media& media) {
    Disk disk;
    for (const auto& [path, file] : media.names) {
        const auto content = media.contents.find(file);
        disk[path] = content == media.contents.end() ? "" : content->second;
    }
    return disk;
}

DiskModel::Media DiskModel::With(const std::vector<bool>& chosen) const {
    Media media = m_settled;
    for (std::size_t i = 0; i < m_pending.size(); ++i)
        if (chosen[i]) Apply(m_pending[i], media);
    return media;
}

Disk DiskModel::Complete() const { return DiskOf(With(std::vector<bool>(m_pending.size(), true))); }

void DiskModel::VisitTorn(std::size_t prefix, const std::function<void(const Disk&)>& visit) const {
    const Record& last = m_pending[prefix];
    if (last.what != disk_log::kWrite) return;
    std::vector<bool> chosen(m_pending.size(), false);
    std::fill_n(chosen.begin(), prefix, true);
    const auto begin = static_cast<std::size_t>(last.number), end = begin + last.text.size();
    for (std::size_t cut = (begin / kSector + 1) * kSector; cut < end; cut += kSector) {
        for (const bool front : {true, false}) {  // the sectors before the tear, or those behind it
            Media media = With(chosen);
            Record torn = last;
            torn.text = front ? last.text.substr(0, cut - begin) : last.text.substr(cut - begin);
            if (!front) torn.number = static_cast<long>(cut);
            Apply(torn, media);
            visit(DiskOf(media));
        }
    }
}

void DiskModel::VisitStates(unsigned seed, std::size_t subsets,
                            const std::function<void(const Disk&)>& visit) const {
    const std::size_t count = m_pending.size();
    std::vector<bool> chosen(count, false);
    visit(DiskOf(With(chosen)));
    for (std::size_t prefix = 0; prefix < count; ++prefix) {
        VisitTorn(prefix, visit);
        chosen[prefix] = true;
        visit(DiskOf(With(chosen)));
    }
    std::mt19937 random(seed);
    const bool all = count < 10 && (std::size_t{1} << count) <= subsets;
    const std::size_t visits = all ? std::size_t{1} << count : subsets;
    for (std::size_t subset = 0; subset < visits; ++subset) {
        const std::size_t bits = all ? subset : random();
        for (std::size_t i = 0; i < count; ++i) chosen[i] = ((all ? bits >> i : random()) & 1) != 0;
        visit(DiskOf(With(chosen)));
    }
}

}  // namespace power
