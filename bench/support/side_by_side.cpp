#include "bench/support/side_by_side.h"

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kRounds = 7;
constexpr double kLongEnough = 0.02;  // [s] of one contender's share of a round
constexpr std::size_t kMostRepeats = 1000;

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

}  // namespace

double Now(Measured measured) {
    if (measured == Measured::Children) {
        rusage used{};
        getrusage(RUSAGE_CHILDREN, &used);
        return Seconds(used.ru_utime) + Seconds(used.ru_stime);
    }
    timespec now{};
    clock_gettime(measured == Measured::Processor ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::vector<std::size_t> SizesFrom(int argc, char** argv, std::vector<std::size_t> usual) {
    if (argc > 1) usual.clear();
    for (int i = 1; i < argc; ++i) usual.push_back(std::strtoul(argv[i], nullptr, 10));
    return usual;
}

void Check(bool isRight, const char* what) {
    if (isRight) return;
    std::fprintf(stderr, "bench: %s\n", what);
    std::exit(1);
}

void PrintFigure(const std::string& work, std::size_t size, const std::string& what, double value) {
    std::printf("%s\t%zu\t%s\t%.9g\t\n", work.c_str(), size, what.c_str(), value);
    std::fflush(stdout);
}

void SideBySide::Add(std::string who, std::function<void()> run, std::function<void()> prepare) {
    m_contenders.push_back({std::move(who), std::move(run), std::move(prepare), 1, {}});
}

void SideBySide::RunOnce(Contender& contender) const {
    double spent = 0.0;
    for (std::size_t i = 0; i < contender.repeats; ++i) {
        if (contender.prepare) contender.prepare();
        const double start = Now(m_measured);
        contender.run();
        spent += Now(m_measured) - start;
    }
    contender.seconds.push_back(spent / static_cast<double>(contender.repeats));
}

// The first run fills caches and tells how often to repeat; it does not count.
void SideBySide::Warm(Contender& contender) const {
    RunOnce(contender);
    const double once = std::max(contender.seconds.back(), 1e-9);
    contender.repeats = std::clamp<std::size_t>(static_cast<std::size_t>(kLongEnough / once), 1, kMostRepeats);
    contender.seconds.clear();
}

void SideBySide::Measure() {
    for (Contender& contender : m_contenders) Warm(contender);
    for (int round = 0; round < kRounds; ++round)
        for (Contender& contender : m_contenders) RunOnce(contender);
    const std::vector<double>& ours = m_contenders.front().seconds;
    for (const Contender& contender : m_contenders) {
        const double seconds = Median(contender.seconds);
        std::vector<double> ratios;
        for (std::size_t round = 0; round < ours.size(); ++round)
            ratios.push_back(contender.seconds[round] / ours[round]);
        const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
        std::printf("%s\t%zu\t%s\t%.9g\t%.3f\t%.3f\t%.3f\n", m_work.c_str(), m_size, contender.who.c_str(),
                    seconds, seconds / Median(ours), *least, *most);
    }
    std::fflush(stdout);
}
