// Programs that do the same work, measured in turn: round after round each of them once, so that whatever else
// the machine does meets all of them alike. What is printed is read by scripts/bench.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

// What is measured: the processor's time of all threads, which other people's programs hardly touch; for works
// that wait for storage the time that passes; for whole programs the processor's time of those that have ended.
enum class Measured { Processor, Passing, Children };

// One work at one size. Ours is added first; the others are compared with it.
class SideBySide {
 public:
    SideBySide(std::string work, std::size_t size, Measured measured = Measured::Processor)
        : m_work(std::move(work)), m_size(size), m_measured(measured) {}

    // `prepare` comes before each run and is not measured.
    void Add(std::string who, std::function<void()> run, std::function<void()> prepare = nullptr);

    // Measures and prints one line each: work, size, who, median seconds, how many times ours that is, and the
    // least and the most of it in any round.
    void Measure();

 private:
    struct Contender {
        std::string who;
        std::function<void()> run;
        std::function<void()> prepare;
        std::size_t repeats = 1;  // in one round, so that a short work takes long enough to be measured
        std::vector<double> seconds;
    };

    void Warm(Contender& contender) const;
    void RunOnce(Contender& contender) const;

    std::string m_work;
    std::size_t m_size;
    Measured m_measured;
    std::vector<Contender> m_contenders;
};

// [s] from some moment on.
double Now(Measured measured);

double Median(std::vector<double> values);

// The numbers given to a program, or else its own.
std::vector<std::size_t> SizesFrom(int argc, char** argv, std::vector<std::size_t> usual);

// Ends the program, with a word about it, when a result is not what it must be.
void Check(bool isRight, const char* what);

// A figure of ours that is compared with nothing: one line of the same form, without a ratio.
void PrintFigure(const std::string& work, std::size_t size, const std::string& what, double value);
