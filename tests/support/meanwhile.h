// What another does to a folder's file while that is being exchanged for a new one.
#pragma once

#include <atomic>
#include <filesystem>
#include <iterator>
#include <thread>

// Runs both at a time: `other` waits until the new file lies beside the only one of the folder, so that it
// comes before the exchange; when there never is one, until `work` is done.
template <typename Work, typename Other>
void WithOther(const std::filesystem::path& folder, Work work, Other other) {
    std::atomic<bool> isDone = false;
    std::thread thread([&] {
        const auto files = [&] { return std::distance(std::filesystem::directory_iterator(folder), {}); };
        while (!isDone && files() < 2) std::this_thread::yield();
        other();
    });
    work();
    isDone = true;
    thread.join();
}
