#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// One way to do a piece of work, timed beside the others of its row.
struct Contender {
    std::string name;
    std::function<void()> work;
    double units = 1; ///< how often one call does the work
};

/// The first contender's time, or that of the named subject, may be at most this many times the other's.
struct Goal {
    std::string against;
    double atMost;
    std::string subject = {};
};

/// Measures the rows and collects their lines.
class Table {
public:
    /// Times all contenders in turn, many times over, so that a disturbance hits all alike. Adds one line for
    /// each goal and one for each contender that no goal names; none without goals, when the times are for
    /// other lines. Without a number of repetitions as many as the program's options tell.
    void Time(const std::string& work, const std::vector<Contender>& contenders,
              const std::vector<Goal>& goals, int repetitions = 0);
    /// Adds a figure that is no comparison of times.
    void Figure(const std::string& work, const std::string& measured, double value, double atMost,
                const std::string& unit);
    /// The time in seconds that the row's contender took; 0 if it was not run.
    double Seconds(const std::string& work, const std::string& contender) const;
    /// Compares the times of two rows' contenders.
    void Compare(const std::string& work, std::pair<std::string, std::string> subject,
                 std::pair<std::string, std::string> against, double atMost);

    /// Prints all lines as a Markdown table.
    void Print() const;
    /// How many goals were missed.
    std::size_t Missed() const noexcept;

private:
    struct Line {
        std::string work;
        std::string measured;
        std::string against;
        std::string ratio;
        std::string goal;
        bool met = true;
    };
    struct Timed {
        std::string work;
        std::string contender;
        double seconds;
    };

    std::vector<Timed> m_times;
    std::vector<Line> m_lines;
};

/// Keeps a result from being optimised away.
void Use(std::size_t result) noexcept;

/// Ends the program with a message unless the condition holds: what is timed must be right.
void Require(bool condition, const std::string& what);
