// A vehicle that keeps to a road: it accelerates, keeps limits, slows down for what comes and waits at stops.
// Where roads come from: host/simulation/simulated_road.h, and samples/make_drive.cpp for the sample drive.
// What a receiver in it says: host/simulation/simulated_receiver.h.
#pragma once

#include <cstddef>
#include <vector>

namespace host {

// A piece of road. Curvature is even along it; the vehicle stands for `stop` seconds at its end.
struct Piece {
    double length;     // [m]
    double turn;       // [deg] to the right, over the whole piece
    double limit;      // [m/s]
    double grade = 0;  // rise over run
    int stop = 0;      // [s]
    bool tunnel = false;
};

using Road = std::vector<Piece>;

constexpr double Kmh(double speed) { return speed / 3.6; }

struct Driving {
    double acceleration = 1.6;  // [m/s^2]
    double braking = 2.0;       // [m/s^2]
    double creep = 0.4;         // [m/s] the least speed while it moves
};

constexpr double kStepsPerSecond = 10;

struct Vehicle {
    double east = 0, north = 0, height = 38;  // [m] from the start; above the sea
    double course = 97;                       // [deg]
    double speed = 0;                         // [m/s]
    std::size_t piece = 0;
    double driven = 0;   // [m] of the piece
    double waiting = 0;  // [s] still to stand
};

// One step of time. False at the end of the road, which counts as a stop.
bool Advance(const Road& road, const Driving& driving, Vehicle& vehicle);

// Sine and cosine of an angle [deg], made of sums and products alone: the same bits on every machine, which the
// system's own do not promise.
double SineOf(double degrees);
double CosineOf(double degrees);

}  // namespace host
