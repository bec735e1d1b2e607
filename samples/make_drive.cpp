// Makes the sample drive: about 45 minutes of NMEA 0183 at one fix a second, from a car on an island that no
// map shows.
//     make_drive > samples/drive.nmea
// Out of town, over a country road and a motorway with a tunnel to a view point; half an hour and more of rest
// there, the receiver switched off; and the same way home. Every run writes the same bytes: all chance comes
// from a fixed seed, and the figures are printed with too few digits to show the last bits of sine and cosine.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// --- The road ---

// A piece of road. Curvature is even along it; the car stands for `stop` seconds at its end.
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

// --- The car ---

constexpr double kStep = 0.1;          // [s]
constexpr double kAcceleration = 1.6;  // [m/s^2]
constexpr double kBraking = 2.0;       // [m/s^2]
constexpr double kRadPerDeg = 3.14159265358979 / 180;

struct Car {
    double east = 0, north = 0, height = 38;  // [m] from the start; above the sea
    double course = 97;                       // [deg]
    double speed = 0;                         // [m/s]
    std::size_t piece = 0;
    double driven = 0;   // [m] of the piece
    double waiting = 0;  // [s] still to stand
};

bool StopsAtEnd(const Road& road, std::size_t piece) {
    return road[piece].stop > 0 || piece + 1 == road.size();
}

// The greatest speed here that lets the car keep every limit and stop within the next pieces.
double SafeSpeed(const Road& road, const Car& car) {
    double safe = road[car.piece].limit, distance = road[car.piece].length - car.driven;
    for (std::size_t i = car.piece; i < road.size() && distance < 700; ++i) {
        const double atEnd = StopsAtEnd(road, i) ? 0 : road[i + 1].limit;
        safe = std::min(safe, std::sqrt(atEnd * atEnd + 2 * kBraking * std::max(distance, 0.0)));
        if (i + 1 < road.size()) distance += road[i + 1].length;
    }
    return safe;
}

void Roll(const Road& road, Car& car, double distance) {
    const Piece& piece = road[car.piece];
    car.course = std::fmod(car.course + piece.turn * distance / piece.length + 360, 360);
    car.east += distance * std::sin(car.course * kRadPerDeg);
    car.north += distance * std::cos(car.course * kRadPerDeg);
    car.height += distance * piece.grade;
    car.driven += distance;
}

// Rolls on, into the next piece where this one ends, so that the way home leads home. Before a stop the last
// bit counts as rolled: the car creeps up to it.
void RollOn(const Road& road, Car& car, double distance) {
    const double rest = road[car.piece].length - car.driven;
    const bool stops = StopsAtEnd(road, car.piece);
    if (distance < rest - (stops ? 0.3 : 0)) return Roll(road, car, distance);
    Roll(road, car, rest);
    car.waiting = road[car.piece].stop;
    car.driven = 0;
    ++car.piece;
    if (stops)
        car.speed = 0;
    else
        Roll(road, car, distance - rest);
}

// One step of time. False at the end of the road.
bool Advance(const Road& road, Car& car) {
    if (car.waiting > 0) {
        car.waiting -= kStep;
        return true;
    }
    if (car.piece == road.size()) return false;
    const double faster = car.speed + kAcceleration * kStep, slower = car.speed - 1.5 * kBraking * kStep;
    car.speed = std::max({std::min(faster, SafeSpeed(road, car)), slower, 0.4});
    RollOn(road, car, car.speed * kStep);
    return true;
}

// --- The receiver ---

// Numbers from 0 to 1: the splitmix64 sequence of Sebastiano Vigna.
class Chance {
 public:
    explicit Chance(std::uint64_t seed) : m_state(seed) {}
    double Next() {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return static_cast<double>((z ^ (z >> 31)) >> 11) / 9007199254740992.0;
    }
    double Within(double most) { return (2 * Next() - 1) * most; }

 private:
    std::uint64_t m_state;
};

// The error of the position: it wanders by decimetres and stays within some metres.
struct Wander {
    double east = 0, north = 0, height = 0;  // [m]
    void Step(Chance& chance) {
        for (double* error : {&east, &north, &height}) *error = 0.97 * *error + chance.Within(0.45);
    }
};

constexpr double kLatitude = 46.0 + 31.0 / 60, kLongitude = -(23.0 + 12.0 / 60);  // the open Atlantic
constexpr double kMetresPerMinute = 1852;
constexpr double kKnots = 3600.0 / 1852;

std::string Format(const char* format, double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, value);
    return text.data();
}

std::string TwoDigits(int value) {
    return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

std::string Clock(int second) {
    return TwoDigits(second / 3600) + TwoDigits(second / 60 % 60) + TwoDigits(second % 60);
}

// "dddmm.mmmm,S": rounded in units of the last digit, so that no 60.0000 minutes appear.
std::string Angle(double degrees, const char* wholeFormat, char positive, char negative) {
    const double units = std::floor(std::fabs(degrees) * 600000 + 0.5);
    const double whole = std::floor(units / 600000);
    return Format(wholeFormat, whole) + Format("%07.4f", (units - whole * 600000) / 10000) + ',' +
           (degrees < 0 ? negative : positive);
}

std::string Position(const Car& car, const Wander& error) {
    const double minutesNorth = (car.north + error.north) / kMetresPerMinute;
    const double minutesEast =
        (car.east + error.east) / (kMetresPerMinute * 0.688141);  // cosine of the latitude
    return Angle(kLatitude + minutesNorth / 60, "%02.0f", 'N', 'S') + ',' +
           Angle(kLongitude + minutesEast / 60, "%03.0f", 'E', 'W');
}

void PrintSentence(const std::string& body) {
    unsigned sum = 0;
    for (const char c : body) sum ^= static_cast<unsigned char>(c);
    std::printf("$%s*%02X\r\n", body.c_str(), sum);
}

class Receiver {
 public:
    explicit Receiver(std::uint64_t seed) : m_chance(seed) {}

    void PrintFix(int second, const Car& car) {
        const bool stands = car.waiting > 0;
        if (!stands) m_error.Step(m_chance);  // it holds its position while the car stands
        const double knots = stands ? 0 : std::max(0.1, (car.speed + m_chance.Within(0.08)) * kKnots);
        if (!stands) m_course = std::fmod(car.course + m_chance.Within(0.6) + 360, 360);
        const std::string position = Position(car, m_error);
        PrintSentence("GPRMC," + Clock(second) + ",A," + position + ',' + Format("%.1f", knots) + ',' +
                      Format("%.1f", std::min(m_course, 359.9)) + ",120524,,,A");
        PrintSentence("GPGGA," + Clock(second) + ',' + position + ",1," + TwoDigits(Satellites()) + ",0.9," +
                      Format("%.1f", car.height + m_error.height) + ",M,54.0,M,,");
    }

    void PrintNoFix(int second) {
        PrintSentence("GPRMC," + Clock(second) + ",V,,,,,,,120524,,,N");
        PrintSentence("GPGGA," + Clock(second) + ",,,,,0,00,,,,,,,");
    }

 private:
    int Satellites() { return 8 + static_cast<int>(m_chance.Next() * 4); }

    Chance m_chance;
    Wander m_error;
    double m_course = 0;  // [deg]
};

// --- The drive ---

bool InTunnel(const Road& road, const Car& car) { return car.piece < road.size() && road[car.piece].tunnel; }

// Drives the road to its end, printing each second; returns the second after it. The receiver finds its first
// fix after `secondsToFix`, and again some seconds behind a tunnel.
int Drive(const Road& road, Car& car, Receiver& receiver, int second, int secondsToFix) {
    car.piece = 0;
    car.driven = 0;
    car.waiting = secondsToFix + 8;
    for (int lost = secondsToFix;; ++second, lost = InTunnel(road, car) ? 3 : std::max(lost - 1, 0)) {
        lost > 0 ? receiver.PrintNoFix(second) : receiver.PrintFix(second, car);
        for (int i = 0; i < 10; ++i)
            if (!Advance(road, car)) return second + 1;
    }
}

}  // namespace

int main() {
    constexpr int kStart = 8 * 3600 + 15 * 60;  // 08:15:00
    constexpr int kRest = 41 * 60;
    Car car;
    Receiver receiver(20240512);
    const int arrival = Drive(Joined({kTown, kCountry, kMotorway, kClimb}), car, receiver, kStart, 6);
    car.course = std::fmod(car.course + 180, 360);
    Drive(Joined({Back(kClimb), Back(kMotorway), Back(kCountry), Back(kTown)}), car, receiver, arrival + kRest,
          3);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0 ? 0 : 1;
}
