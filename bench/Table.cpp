#include "Table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>

namespace {

volatile std::size_t used = 0;

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Iterations per repetition. Google Benchmark measures only once to find them; if that run is disturbed, all
/// repetitions are too short.
benchmark::IterationCount Iterations(const std::function<void()>& work) {
    constexpr double repetitionSeconds = 0.0005;
    constexpr double enough = 0.02;
    double fastest = Seconds(work);
    for (double spent = fastest; spent < enough;) {
        const double seconds = Seconds(work);
        spent += seconds;
        fastest = std::min(fastest, seconds);
    }
    return std::max<benchmark::IterationCount>(
        1, static_cast<benchmark::IterationCount>(repetitionSeconds / std::max(fastest, 1e-6)));
}

/// Keeps the time of each benchmark's fastest repetition, the least disturbed one.
class Collector : public benchmark::BenchmarkReporter {
public:
    explicit Collector(const std::string& work) : m_work(work) { SetErrorStream(&m_silent); }
    bool ReportContext(const Context&) override {
        std::fprintf(stderr, "%s\n", m_work.c_str());
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
            const auto known = m_seconds.try_emplace(run.run_name.function_name, seconds).first;
            known->second = std::min(known->second, seconds);
        }
    }
    /// 0 if it was not run.
    double Seconds(const std::string& name) const {
        const auto found = m_seconds.find(name);
        return found == m_seconds.end() ? 0 : found->second;
    }

private:
    const std::string& m_work;
    std::ostream m_silent{nullptr}; // discards a message per filtered row
    std::map<std::string, double> m_seconds;
};

std::string Text(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string TimeText(double seconds) {
    if (seconds < 1e-6)
        return Text("%.1f ns", seconds * 1e9);
    if (seconds < 1e-3)
        return Text("%.2f µs", seconds * 1e6);
    return Text("%.2f ms", seconds * 1e3);
}

/// About three significant digits.
std::string RatioText(double ratio) {
    return Text(ratio < 0.1 ? "%.4f" : ratio < 10 ? "%.2f" : "%.1f", ratio);
}

} // namespace

void Table::Time(const std::string& work, const std::vector<Contender>& contenders,
                 const std::vector<Goal>& goals, int repetitions) {
    for (const Contender& contender : contenders) {
        const auto repeat = [&contender](benchmark::State& state) {
            for ([[maybe_unused]] auto round : state)
                contender.work();
        };
        auto* const timed = benchmark::RegisterBenchmark((work + " / " + contender.name).c_str(), repeat);
        timed->UseRealTime()->Iterations(Iterations(contender.work));
        if (repetitions > 0)
            timed->Repetitions(repetitions);
    }
    Collector collector(work);
    benchmark::RunSpecifiedBenchmarks(&collector);
    benchmark::ClearRegisteredBenchmarks();
    for (const Contender& contender : contenders) {
        const double seconds = collector.Seconds(work + " / " + contender.name) / contender.units;
        if (seconds > 0)
            m_times.push_back({work, contender.name, seconds});
    }
    for (const Goal& goal : goals) {
        const std::string& subject = goal.subject.empty() ? contenders.front().name : goal.subject;
        Compare(work, {work, subject}, {work, goal.against}, goal.atMost);
    }
    for (const Contender& contender : contenders) {
        if (goals.empty())
            break;
        const bool named = std::any_of(goals.begin(), goals.end(), [&](const Goal& goal) {
            return goal.against == contender.name || goal.subject == contender.name;
        });
        if (!named && contender.name != contenders.front().name)
            Compare(work, {work, contenders.front().name}, {work, contender.name}, 0);
    }
}

void Table::Figure(const std::string& work, const std::string& measured, double value, double atMost,
                   const std::string& unit) {
    m_lines.push_back({work, measured + " " + RatioText(value) + " " + unit, "", "",
                       atMost > 0 ? Text("%g ", atMost) + unit : std::string(),
                       atMost <= 0 || value <= atMost});
}

double Table::Seconds(const std::string& work, const std::string& contender) const {
    for (const Timed& timed : m_times) {
        if (timed.work == work && timed.contender == contender)
            return timed.seconds;
    }
    return 0;
}

void Table::Compare(const std::string& work, const std::pair<std::string, std::string>& subject,
                    const std::pair<std::string, std::string>& against, double atMost) {
    const double seconds = Seconds(subject.first, subject.second);
    const double other = Seconds(against.first, against.second);
    if (seconds == 0 || other == 0)
        return; // left out by a filter
    const double ratio = seconds / other;
    const bool sameRow = subject.first == against.first;
    m_lines.push_back({work, (sameRow ? subject.second : subject.first) + " " + TimeText(seconds),
                       (sameRow ? against.second : against.first) + " " + TimeText(other), RatioText(ratio),
                       atMost > 0 ? Text("%g", atMost) : std::string(), atMost <= 0 || ratio <= atMost});
}

void Table::Print() const {
    std::printf("| Work | Measured | Compared with | Ratio | Goal: at most |\n|---|---|---|---:|---|\n");
    const std::string* last = nullptr;
    for (const Line& line : m_lines) {
        const bool same = last && *last == line.work;
        last = &line.work;
        std::printf("| %s | %s | %s | %s | %s%s |\n", same ? "" : line.work.c_str(), line.measured.c_str(),
                    line.against.c_str(), line.ratio.c_str(), line.goal.c_str(),
                    line.met ? "" : " **missed**");
    }
}

std::size_t Table::Missed() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(m_lines.begin(), m_lines.end(), [](const Line& line) { return !line.met; }));
}

void Use(std::size_t result) noexcept {
    used = used + result;
}

void Require(bool condition, const std::string& what) {
    if (condition)
        return;
    std::fprintf(stderr, "wrong result: %s\n", what.c_str());
    std::exit(2);
}
