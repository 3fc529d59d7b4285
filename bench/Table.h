#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// One way to do a piece of work, compared with the others of its row.
struct Contender {
    std::string name;
    std::function<void()> work;
    double units = 1; ///< work items per call
};

/// Limits the time of the subject (default: the first contender) to a multiple of another contender's.
struct Goal {
    std::string against;
    double atMost;
    std::string subject = {};
};

/// Measures the rows and collects their lines.
class Table {
public:
    /// Times the contenders alternately in many repetitions, so that a disturbance affects all alike. Adds a
    /// line per goal and per contender without a goal. Without any goals it adds no line and only keeps the
    /// times for Seconds and Compare. 0 repetitions: the number from the command line.
    void Time(const std::string& work, const std::vector<Contender>& contenders,
              const std::vector<Goal>& goals, int repetitions = 0);
    /// Adds a figure that is not a contender's time; 0: no goal.
    void Figure(const std::string& work, const std::string& measured, double value, double atMost,
                const std::string& unit);
    /// The contender's time in seconds; 0 if it did not run.
    double Seconds(const std::string& work, const std::string& contender) const;
    /// Compares contenders of two rows.
    void Compare(const std::string& work, const std::pair<std::string, std::string>& subject,
                 const std::pair<std::string, std::string>& against, double atMost);

    /// Prints all lines as a Markdown table.
    void Print() const;
    /// The number of missed goals.
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

/// Keeps the compiler from removing the computation of a result.
void Use(std::size_t result) noexcept;

/// Ends the program with a message unless the condition holds.
void Require(bool condition, const std::string& what);
