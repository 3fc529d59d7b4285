#include "Timing.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int Rounds = 401;
constexpr double RoundSeconds = 0.0005;

volatile std::size_t used = 0;

double Seconds(const std::function<void()>& work, int repetitions) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < repetitions; ++i)
        work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// How often the work fits into a round.
int Repetitions(const std::function<void()>& work) {
    int repetitions = 1;
    while (Seconds(work, repetitions) < RoundSeconds)
        repetitions *= 2;
    return repetitions;
}

double Median(std::vector<double> sample) {
    const auto middle = sample.begin() + static_cast<std::ptrdiff_t>(sample.size() / 2);
    std::nth_element(sample.begin(), middle, sample.end());
    return *middle;
}

} // namespace

void PrintTable(const std::string& title, const std::vector<Contender>& contenders) {
    std::vector<int> repetitions;
    for (const Contender& contender : contenders)
        repetitions.push_back(Repetitions(contender.work));
    std::vector<std::vector<double>> times(contenders.size());
    for (int round = 0; round < Rounds; ++round) {
        for (std::size_t i = 0; i < contenders.size(); ++i)
            times[i].push_back(Seconds(contenders[i].work, repetitions[i]) / repetitions[i]);
    }
    std::printf("%s\n", title.c_str());
    for (std::size_t i = 0; i < contenders.size(); ++i) {
        std::vector<double> ratios;
        for (std::size_t round = 0; round < Rounds; ++round)
            ratios.push_back(times[i][round] / times.back()[round]);
        std::printf("  %-44s %10.3f us  %6.2f\n", contenders[i].name.c_str(), Median(times[i]) * 1e6,
                    Median(ratios));
    }
}

void Use(std::size_t result) {
    used = used + result;
}

void Require(bool condition, const char* what) {
    if (condition)
        return;
    std::printf("wrong result: %s\n", what);
    std::exit(1);
}
