// Makes the sample drive: about 45 minutes of NMEA 0183 at one fix a second, from a car on an island that no
// map shows.
//     make_drive > samples/drive.nmea
// Out of town, over a country road and a motorway with a tunnel to a view point; half an hour and more of rest
// there, the receiver switched off; and the same way home. Every run writes the same bytes.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "host/simulation/simulated_receiver.h"
#include "host/simulation/simulated_vehicle.h"

using namespace host;

namespace {

// --- The road ---

Piece Corner(double turn) { return {16, turn, Kmh(20)}; }
Piece Street(double length, int stop = 0) { return {length, 0, Kmh(50), 0, stop}; }

// Through the town's grid of streets, with its traffic lights.
const Road kTown = {{60, 0, Kmh(30), 0, 4},
                    Corner(90),
                    Street(240, 31),
                    Street(310),
                    Corner(-90),
                    Street(180, 18),
                    Street(420),
                    Street(150, 47),
                    {70, 25, Kmh(40), 0.01},
                    Street(260, 9),
                    Corner(90),
                    Street(330, 38),
                    Street(520),
                    Corner(-90),
                    Street(210, 22)};

const Road kCountry = {{700, 12, Kmh(80), 0.005},  {450, -38, Kmh(70), 0.02}, {900, 5, Kmh(90), 0.03},
                       {260, 55, Kmh(60), 0.035},  {230, -60, Kmh(60), 0.03}, {1400, -8, Kmh(90), 0.01},
                       {320, 40, Kmh(70), -0.015}, {1100, 0, Kmh(80), -0.02}, {180, -70, Kmh(40), 0, 6}};

const Road kMotorway = {{420, 95, Kmh(60)},           {2600, 8, Kmh(120), 0.012},
                        {3100, -14, Kmh(130), 0.02},  {1500, 3, Kmh(100), 0.01, 0, true},
                        {3400, 17, Kmh(130), -0.012}, {2300, -6, Kmh(110), -0.02},
                        {2800, -10, Kmh(130), 0.004}, {400, 80, Kmh(50), 0, 14}};

// Hairpins up to the view point.
const Road kClimb = {{380, -20, Kmh(60), 0.05}, {60, 165, Kmh(25), 0.04}, {300, 6, Kmh(50), 0.07},
                     {60, -170, Kmh(25), 0.04}, {340, 10, Kmh(50), 0.07}, {60, 160, Kmh(25), 0.04},
                     {280, -15, Kmh(50), 0.06}, {40, -60, Kmh(15), 0, 20}};

Road Joined(std::initializer_list<Road> roads) {
    Road all;
    for (const Road& road : roads) all.insert(all.end(), road.begin(), road.end());
    return all;
}

// The same road driven from its end. The stops stay with their places.
Road Back(const Road& road) {
    Road back;
    for (std::size_t i = road.size(); i-- > 0;) {
        Piece piece = road[i];
        piece.turn = -piece.turn;
        piece.grade = -piece.grade;
        piece.stop = i > 0 ? road[i - 1].stop : 20;
        back.push_back(piece);
    }
    return back;
}

// --- The drive ---

bool InTunnel(const Road& road, const Vehicle& car) {
    return car.piece < road.size() && road[car.piece].tunnel;
}

// Drives the road to its end, printing each second [since 1970]; returns the second after it. The receiver
// finds its first fix after `secondsToFix`, and again some seconds behind a tunnel.
std::int64_t Drive(const Road& road, Vehicle& car, Receiver& receiver, std::int64_t second, int secondsToFix) {
    car.piece = 0;
    car.driven = 0;
    car.waiting = secondsToFix + 8;
    for (int lost = secondsToFix;; ++second, lost = InTunnel(road, car) ? 3 : std::max(lost - 1, 0)) {
        std::cout << (lost > 0 ? receiver.NoFix(10 * second) : receiver.Fix(10 * second, car));
        for (int i = 0; i < 10; ++i)
            if (!Advance(road, {}, car)) return second + 1;
    }
}

}  // namespace

int main() {
    constexpr std::int64_t kStart = 1'715'501'700;  // 2024-05-12 08:15:00
    constexpr int kRest = 41 * 60;
    Vehicle car;
    Receiver receiver(20240512, 1, false);
    const auto arrival = Drive(Joined({kTown, kCountry, kMotorway, kClimb}), car, receiver, kStart, 6);
    car.course = std::fmod(car.course + 180, 360);
    Drive(Joined({Back(kClimb), Back(kMotorway), Back(kCountry), Back(kTown)}), car, receiver, arrival + kRest,
          3);
    return std::cout.flush() ? 0 : 1;
}
