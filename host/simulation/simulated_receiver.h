// A GPS receiver in a simulated vehicle: what it says each time, as NMEA 0183, with the errors of a real one.
// The same seed gives the same bytes on every machine. The vehicle: host/simulation/simulated_vehicle.h.
#pragma once

#include <cstdint>
#include <string>

#include "host/simulation/simulated_vehicle.h"

namespace host {

// Numbers from 0 to 1: the splitmix64 sequence of Sebastiano Vigna.
class Chance {
 public:
    explicit Chance(std::uint64_t seed) : m_state(seed) {}
    double Next();
    double Within(double most) { return (2 * Next() - 1) * most; }
    double Between(double low, double high) { return low + (high - low) * Next(); }

 private:
    std::uint64_t m_state;
};

class Receiver {
 public:
    // `rate`: fixes a second, 1, 2, 5 or 10. `isVerbose`: GSA and VTG with each fix, besides RMC and GGA.
    Receiver(std::uint64_t seed, int rate, bool isVerbose);

    // The sentences of one time [tenths of a second since 1970], each with CR LF. Positions are the vehicle's,
    // from the start, which lies in the open Atlantic, where no map shows a road.
    std::string Fix(std::int64_t time, const Vehicle& vehicle);
    std::string NoFix(std::int64_t time) const;

 private:
    // The error of the position: it wanders by decimetres and stays within some metres.
    struct Wander {
        double east = 0, north = 0, height = 0;  // [m]
    };

    void Step();
    int Satellites() { return 8 + static_cast<int>(m_chance.Next() * 4); }
    std::string Clock(std::int64_t time) const;
    std::string Position(const Vehicle& vehicle) const;
    std::string Details(int satellites, double knots, double course) const;

    Chance m_chance;
    int m_rate;
    bool m_isVerbose;
    Wander m_error;
    double m_course = 0;  // [deg]
};

}  // namespace host
