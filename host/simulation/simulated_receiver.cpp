#include "host/simulation/simulated_receiver.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/text/iso_time.h"
#include "host/text/text.h"

namespace host {
namespace {

constexpr double kLatitude = 46.0 + 31.0 / 60, kLongitude = -(23.0 + 12.0 / 60);
constexpr double kLongitudeScale = 0.688141;  // cosine of the latitude
constexpr double kMetresPerMinute = 1852;
constexpr double kKnots = 3600.0 / 1852, kKmhPerKnot = 1.852;

std::string ZeroPadded(const std::string& digits, std::size_t width) {
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
}

std::string TwoDigits(int value) { return ZeroPadded(std::to_string(value), 2); }

// "dddmm.mmmm,S": rounded in units of the last digit, so that no 60.0000 minutes appear.
std::string Angle(double degrees, std::size_t wholeWidth, char positive, char negative) {
    const double units = std::floor(std::fabs(degrees) * 600000 + 0.5);
    const double whole = std::floor(units / 600000);
    return ZeroPadded(Decimals(whole, 0), wholeWidth) +
           ZeroPadded(Decimals((units - whole * 600000) / 10000, 4), 7) + ',' +
           (degrees < 0 ? negative : positive);
}

std::string Sentence(const std::string& body) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    unsigned sum = 0;
    for (const char c : body) sum ^= static_cast<unsigned char>(c);
    return '$' + body + '*' + kDigits[sum / 16] + kDigits[sum % 16] + "\r\n";
}

// "120524" out of "2024-05-12T…".
std::string Date(std::int64_t time) {
    const std::string iso = IsoText(time / 10);
    return iso.substr(8, 2) + iso.substr(5, 2) + iso.substr(2, 2);
}

}  // namespace

double Chance::Next() {
    std::uint64_t z = (m_state += 0x9e3779b97f4a7c15);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return static_cast<double>((z ^ (z >> 31)) >> 11) / 9007199254740992.0;
}

Receiver::Receiver(std::uint64_t seed, int rate, bool isVerbose)
    : m_chance(seed), m_rate(rate), m_isVerbose(isVerbose) {}

// Several fixes a second wander less from one to the next, and as far in the long run.
void Receiver::Step() {
    const double seconds = 1.0 / m_rate;
    const double keeps = 0.97 + 0.03 * (1 - seconds), most = 0.45 * std::sqrt(seconds);
    for (double* error : {&m_error.east, &m_error.north, &m_error.height})
        *error = keeps * *error + m_chance.Within(most);
}

std::string Receiver::Clock(std::int64_t time) const {
    const std::string iso = IsoText(time / 10);
    const std::string clock = iso.substr(11, 2) + iso.substr(14, 2) + iso.substr(17, 2);
    return m_rate == 1 ? clock : clock + '.' + std::to_string(time % 10) + '0';
}

std::string Receiver::Position(const Vehicle& vehicle) const {
    const double minutesNorth = (vehicle.north + m_error.north) / kMetresPerMinute;
    const double minutesEast = (vehicle.east + m_error.east) / (kMetresPerMinute * kLongitudeScale);
    return Angle(kLatitude + minutesNorth / 60, 2, 'N', 'S') + ',' +
           Angle(kLongitude + minutesEast / 60, 3, 'E', 'W');
}

std::string Receiver::Details(int satellites, double knots, double course) const {
    std::string used;
    for (int i = 0; i < 12; ++i) used += (i < satellites ? TwoDigits(2 + 2 * i) : "") + ',';
    return Sentence("GPGSA,A,3," + used + "1.6,0.9,1.3") +
           Sentence("GPVTG," + Decimals(course, 1) + ",T,,M," + Decimals(knots, 1) + ",N," +
                    Decimals(knots * kKmhPerKnot, 1) + ",K,A");
}

std::string Receiver::Fix(std::int64_t time, const Vehicle& vehicle) {
    const bool stands = vehicle.waiting > 0;
    if (!stands) Step();  // it holds its position while the vehicle stands
    const double knots = stands ? 0 : std::max(0.1, (vehicle.speed + m_chance.Within(0.08)) * kKnots);
    if (!stands) m_course = std::fmod(vehicle.course + m_chance.Within(0.6) + 360, 360);
    const double course = std::min(m_course, 359.9);
    const std::string position = Position(vehicle), clock = Clock(time);
    const int satellites = Satellites();
    return Sentence("GPRMC," + clock + ",A," + position + ',' + Decimals(knots, 1) + ',' + Decimals(course, 1) +
                    ',' + Date(time) + ",,,A") +
           Sentence("GPGGA," + clock + ',' + position + ",1," + TwoDigits(satellites) + ",0.9," +
                    Decimals(vehicle.height + m_error.height, 1) + ",M,54.0,M,,") +
           (m_isVerbose ? Details(satellites, knots, course) : "");
}

std::string Receiver::NoFix(std::int64_t time) const {
    return Sentence("GPRMC," + Clock(time) + ",V,,,,,,," + Date(time) + ",,,N") +
           Sentence("GPGGA," + Clock(time) + ",,,,,0,00,,,,,,,");
}

}  // namespace host
