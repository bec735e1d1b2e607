#include "host/simulation/simulated_vehicle.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr double kStep = 1 / kStepsPerSecond;  // [s]
constexpr double kRadPerDeg = 3.14159265358979 / 180;
constexpr double kHorizon = 700;  // [m] nothing farther ahead makes a vehicle brake

bool StopsAtEnd(const Road& road, std::size_t piece) {
    return road[piece].stop > 0 || piece + 1 == road.size();
}

// The greatest speed here that lets the vehicle keep every limit and stop within the next pieces.
double SafeSpeed(const Road& road, const Driving& driving, const Vehicle& vehicle) {
    double safe = road[vehicle.piece].limit, distance = road[vehicle.piece].length - vehicle.driven;
    for (std::size_t i = vehicle.piece; i < road.size() && distance < kHorizon; ++i) {
        const double atEnd = StopsAtEnd(road, i) ? 0 : road[i + 1].limit;
        safe = std::min(safe, std::sqrt(atEnd * atEnd + 2 * driving.braking * std::max(distance, 0.0)));
        if (i + 1 < road.size()) distance += road[i + 1].length;
    }
    return safe;
}

void Roll(const Road& road, Vehicle& vehicle, double distance) {
    const Piece& piece = road[vehicle.piece];
    vehicle.course = std::fmod(vehicle.course + piece.turn * distance / piece.length + 360, 360);
    vehicle.east += distance * SineOf(vehicle.course);
    vehicle.north += distance * CosineOf(vehicle.course);
    vehicle.height += distance * piece.grade;
    vehicle.driven += distance;
}

// Rolls on, into the next piece where this one ends, so that the way home leads home. Before a stop the last
// bit counts as rolled: the vehicle creeps up to it.
void RollOn(const Road& road, Vehicle& vehicle, double distance) {
    const double rest = road[vehicle.piece].length - vehicle.driven;
    const bool stops = StopsAtEnd(road, vehicle.piece);
    if (distance < rest - (stops ? 0.3 : 0)) return Roll(road, vehicle, distance);
    Roll(road, vehicle, rest);
    vehicle.waiting = road[vehicle.piece].stop;
    vehicle.driven = 0;
    ++vehicle.piece;
    if (stops)
        vehicle.speed = 0;
    else
        Roll(road, vehicle, distance - rest);
}

// Taylor's series, exact to the last bits for angles up to an eighth of a turn.
double SineOfSmall(double degrees) {
    const double x = degrees * kRadPerDeg, square = x * x;
    double sum = 0;
    for (int n = 17; n >= 3; n -= 2) sum = (1 + sum) * -square / (n * (n - 1));
    return x * (1 + sum);
}

double CosineOfSmall(double degrees) {
    const double x = degrees * kRadPerDeg, square = x * x;
    double sum = 0;
    for (int n = 18; n >= 2; n -= 2) sum = (1 + sum) * -square / (n * (n - 1));
    return 1 + sum;
}

}  // namespace

bool Advance(const Road& road, const Driving& driving, Vehicle& vehicle) {
    if (vehicle.waiting > 0) {
        vehicle.waiting -= kStep;
        return true;
    }
    if (vehicle.piece == road.size()) return false;
    const double faster = vehicle.speed + driving.acceleration * kStep,
                 slower = vehicle.speed - 1.5 * driving.braking * kStep;
    vehicle.speed = std::max({std::min(faster, SafeSpeed(road, driving, vehicle)), slower, driving.creep});
    RollOn(road, vehicle, vehicle.speed * kStep);
    return true;
}

double SineOf(double degrees) {
    const double quarters = std::floor(degrees / 90 + 0.5), rest = degrees - 90 * quarters;
    switch (static_cast<long>(quarters) & 3) {
        case 0:
            return SineOfSmall(rest);
        case 1:
            return CosineOfSmall(rest);
        case 2:
            return -SineOfSmall(rest);
        default:
            return -CosineOfSmall(rest);
    }
}

double CosineOf(double degrees) { return SineOf(degrees + 90); }

}  // namespace host
