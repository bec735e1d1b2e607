// The tests' way to the private operations of the library's two classes, which name these structs as friends.
// They only hand through: whatever is asserted is asserted in the tests.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "library/track_manager.h"
#include "library/track_proxy.h"
#include "record/recording_strategy.h"

struct TrackProxyInside {
    static CTrack* GetTrack(CTrackProxy& proxy) { return proxy.GetTrack(); }
    static void DeleteTrack(CTrackProxy& proxy) { proxy.DeleteTrack(); }
    static bool IsLoaded(const CTrackProxy& proxy) { return proxy.m_pTrack != nullptr; }
    static CTrack* LoadedTrack(const CTrackProxy& proxy) { return proxy.m_pTrack; }
    static int Visibility(const CTrackProxy& proxy) { return proxy.m_iVisible; }
    static const std::string& DisplayName(const CTrackProxy& proxy) { return proxy.m_strName; }
    static const std::string& FileName(const CTrackProxy& proxy) { return proxy.m_strTrkFileName; }
    static unsigned long PointCount(const CTrackProxy& proxy) { return proxy.m_ulPtCount; }
    static std::size_t OwnPoints(const CTrackProxy& proxy) { return proxy.m_vecPtLst.size(); }
    static bool LoadHeadInfo(CTrackProxy& proxy, const std::string& path) { return proxy.LoadHeadInfo(path); }
    static bool SaveHeadInfo(CTrackProxy& proxy, const std::string& path) { return proxy.SaveHeadInfo(path); }
    static bool Save(CTrackProxy& proxy, const char* name) { return proxy.Save(name); }
};

struct TrackManInside {
    // Lists a handle as the scan does: without looking at its name. The manager takes it over.
    static CTrackProxy* List(CTrackMan& manager, std::unique_ptr<CTrackProxy> proxy) {
        manager.m_vecTracks.push_back(proxy.release());
        return manager.m_vecTracks.back();
    }
    static std::unique_ptr<ITrackSaveStragy> CreateSaveStragy(CTrackMan& manager) {
        return std::unique_ptr<ITrackSaveStragy>(manager.CreateSaveStragy());
    }
    static bool GetTrackName(CTrackMan& manager, const std::string& name, std::string& out) {
        return manager.GetTrackName(name, out);
    }
    static std::string ConstructTrackName(CTrackMan& manager, const std::string& name) {
        std::string out;
        manager.ConstructTrackName(name, out);
        return out;
    }
    static void CheckTrackIsSameName(CTrackMan& manager) { manager.CheckTrackIsSameName(); }
    static void RefreshStorage(CTrackMan& manager, std::string folder, int maxLength) {
        manager.RefreshStorage(folder.data(), maxLength);
    }
    static void LoadTrack(CTrackMan& manager) { manager.LoadTrack(); }
    // Path and last write time of each record of the scan, in the order in which they were found.
    static std::vector<std::pair<std::string, long>> ScanRecords(const CTrackMan& manager) {
        std::vector<std::pair<std::string, long>> records;
        for (const auto& record : manager.m_lstScan) records.emplace_back(record.path, record.lastWriteTime);
        return records;
    }
    static void AddScanRecord(CTrackMan& manager, const std::string& path, long lastWriteTime) {
        manager.m_lstScan.push_back({path, lastWriteTime});
    }
    static bool KnowsLoadThread(const CTrackMan& manager) { return manager.m_hLoadThread != -1; }
    static std::unique_ptr<CTrackMan> Copy(const CTrackMan& manager) {
        return std::make_unique<CTrackMan>(manager);
    }
    static void (*SingleTrackCallback(const CTrackMan& manager))(CTrackProxy*) {
        return manager.m_pSingleTrackCallback;
    }
    static void (*LoadCallback(const CTrackMan& manager))() { return manager.m_pLoadCallback; }
};
