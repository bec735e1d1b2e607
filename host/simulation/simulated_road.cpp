#include "host/simulation/simulated_road.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr std::size_t kAhead = 60, kBehind = 1000;  // pieces
constexpr double kFarFromHome = 20'000;             // [m]
constexpr double kHighest = 900, kLowest = 5;       // [m]
constexpr double kRadPerDeg = 3.14159265358979 / 180;

double LateralAcceleration(Profile profile) {  // [m/s^2]
    switch (profile) {
        case Profile::Car:
            return 2.5;
        case Profile::Walk:
            return 1.0;
        default:
            return 0.3;
    }
}

}  // namespace

Driving DrivingOf(Profile profile) {
    switch (profile) {
        case Profile::Car:
            return {};
        case Profile::Walk:
            return {0.6, 0.8, 0.2};
        default:
            return {0.06, 0.08, 0.2};
    }
}

void EndlessRoad::Prepare(Vehicle& vehicle) {
    while (m_road.size() < vehicle.piece + kAhead) Extend();
    if (vehicle.piece <= kBehind) return;
    m_road.erase(m_road.begin(), m_road.begin() + static_cast<std::ptrdiff_t>(vehicle.piece));
    vehicle.piece = 0;
}

void EndlessRoad::Extend() {
    if (m_profile == Profile::Walk) return ExtendPath();
    if (m_profile == Profile::Boat) return ExtendWater();
    const double kind = m_chance.Next();
    const int pieces = 6 + static_cast<int>(m_chance.Next() * 10);
    for (int i = 0; i < pieces; ++i) {
        if (kind < 0.4)
            ExtendTown();
        else if (kind < 0.75)
            ExtendCountry();
        else
            ExtendMotorway();
    }
}

// Streets between crossings, of which some have a light that is red.
void EndlessRoad::ExtendTown() {
    const double limit = Kmh(m_chance.Next() < 0.2 ? 30 : 50);
    Add({m_chance.Between(80, 500), Turn(6), limit, Grade(0.02), Stop(0.35, 60)});
    if (m_chance.Next() < 0.4) Add({16, std::copysign(90.0, Turn(90)), limit});
}

void EndlessRoad::ExtendCountry() {
    Add({m_chance.Between(200, 1500), Turn(60), Kmh(m_chance.Between(60, 90)), Grade(0.05), Stop(0.06, 15)});
}

void EndlessRoad::ExtendMotorway() {
    const bool tunnel = m_chance.Next() < 0.08;
    const double length = tunnel ? m_chance.Between(300, 1800) : m_chance.Between(1000, 4000);
    const double limit = tunnel ? Kmh(100) : Kmh(m_chance.Between(110, 130));
    Add({length, Turn(20), limit, Grade(0.025), 0, tunnel});
}

void EndlessRoad::ExtendPath() {
    const double pace = m_chance.Between(1.1, 1.6);
    Add({m_chance.Between(20, 180), Turn(40), pace, Grade(0.08), Stop(0.08, 120)});
    if (m_chance.Next() < 0.3) Add({3, Turn(110), pace});
}

void EndlessRoad::ExtendWater() {
    Add({m_chance.Between(300, 3000), Turn(8), m_chance.Between(2, 4)});
    Add({m_chance.Between(60, 200), Turn(70), m_chance.Between(2, 3)});
}

void EndlessRoad::Add(Piece piece) {
    const double radius = piece.length / std::max(std::fabs(piece.turn) * kRadPerDeg, 1e-6);
    piece.limit = std::min(piece.limit, std::sqrt(LateralAcceleration(m_profile) * radius));
    m_road.push_back(piece);
    const double middle = m_end.course + piece.turn / 2;
    m_end.east += piece.length * SineOf(middle);
    m_end.north += piece.length * CosineOf(middle);
    m_end.height += piece.length * piece.grade;
    m_end.course = std::fmod(m_end.course + piece.turn + 360, 360);
}

// To either side; far from the start, to the side where it lies.
double EndlessRoad::Turn(double most) {
    const double turn = m_chance.Within(most);
    const bool isFar = m_end.east * m_end.east + m_end.north * m_end.north > kFarFromHome * kFarFromHome;
    if (!isFar) return turn;
    const double homeToTheRight = m_end.north * SineOf(m_end.course) - m_end.east * CosineOf(m_end.course);
    return std::copysign(turn, homeToTheRight);
}

double EndlessRoad::Grade(double most) {
    const double grade = m_chance.Within(most);
    if (m_end.height > kHighest) return -std::fabs(grade);
    return m_end.height < kLowest ? std::fabs(grade) : grade;
}

int EndlessRoad::Stop(double probability, double longest) {
    const bool stops = m_chance.Next() < probability;
    const double seconds = m_chance.Between(4, longest);
    return stops ? static_cast<int>(seconds) : 0;
}

}  // namespace host
