// A ring as its description tells it, point by point and with no regard to blocks or speed: what the
// recording's file and plan are compared with.
#pragma once

#include <vector>

// Slots hold numbers that the caller chooses; 0 stands for a record of zeros.
struct PlainRing {
    static constexpr int kNeverWritten = -1;
    static constexpr int kOld = -2;

    struct Answer {
        bool accepted;
        int recorded;  // points gained
    };

    PlainRing(int slotCount, bool mayOverwrite, int firstSlot = 0, int held = 0)
        : capacity(slotCount),
          overwrite(mayOverwrite),
          start(firstSlot),
          count(held),
          slots(static_cast<std::size_t>(held), kOld) {}

    // Points are numbered from `first` on.
    Answer Append(int batch, int first = 1) {
        if (batch < 1 || batch >= capacity || (count >= capacity && !overwrite)) return {false, 0};
        const bool wrapped = start != 0;
        const int place = wrapped ? start : count;
        const bool crosses = wrapped ? place + batch >= capacity : place + batch > capacity;
        if (wrapped && !overwrite) {
            MoveStart(batch);
            return {true, 0};
        }
        const int fits = crosses && !overwrite ? capacity - place : batch;
        for (int i = 0; i < fits; ++i) At((place + i) % capacity) = first + i;
        if (crosses && overwrite) LeaveZeros(batch, capacity - place);
        if (wrapped)
            MoveStart(batch);
        else if (crosses && overwrite)
            start = place + batch - capacity;
        count = wrapped || crosses ? capacity : count + batch;
        return {true, fits};
    }

    int capacity;
    bool overwrite;
    int start;
    int count;
    std::vector<int> slots;

 private:
    void MoveStart(int batch) {
        start = start + batch < capacity ? start + batch : start + batch - capacity;
        count = capacity;
    }
    // Behind what came round, as many zeros as there were points before the end.
    void LeaveZeros(int batch, int beforeTheEnd) {
        for (int i = batch - beforeTheEnd; i < batch; ++i) At(i) = 0;
    }
    int& At(int slot) {
        if (slots.size() <= static_cast<std::size_t>(slot))
            slots.resize(static_cast<std::size_t>(slot) + 1, kNeverWritten);
        return slots[static_cast<std::size_t>(slot)];
    }
};
