// Roads without end, drawn by lot: streets with traffic lights, country roads, motorways with tunnels; paths
// for walkers; courses for boats. What drives on them: host/simulation/simulated_vehicle.h.
#pragma once

#include <cstdint>

#include "host/simulation/simulated_receiver.h"
#include "host/simulation/simulated_vehicle.h"

namespace host {

enum class Profile { Car, Walk, Boat };

Driving DrivingOf(Profile profile);

// The road ahead of a vehicle. Curves have limits that a passenger would choose; heights stay between the sea
// and the mountains; who is far from the start turns back.
class EndlessRoad {
 public:
    EndlessRoad(Profile profile, std::uint64_t seed) : m_profile(profile), m_chance(seed) {}

    // Goes on ahead of the vehicle for farther than it looks, and forgets what lies far behind it.
    void Prepare(Vehicle& vehicle);
    const Road& Pieces() const { return m_road; }

 private:
    void Extend();
    void ExtendTown();
    void ExtendCountry();
    void ExtendMotorway();
    void ExtendPath();
    void ExtendWater();
    void Add(Piece piece);
    double Turn(double most);
    double Grade(double most);
    int Stop(double probability, double longest);

    Profile m_profile;
    Chance m_chance;
    Road m_road;
    Vehicle m_end{};  // where the road ends
};

}  // namespace host
