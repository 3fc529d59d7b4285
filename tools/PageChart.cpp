#include "PageChart.h"

#include "Html.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <charconv>
#include <vector>

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::array MonthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr long LongestInDays = 45, LongestInWeeks = 380, LongestInMonths = 2000;
constexpr int DaysOfWeek = 7;
constexpr std::size_t MostLabels = 13;

struct Bar {
    std::string title, label; ///< an empty label is not shown
    PageCounts counts;
};

int NumberAt(const std::string& text, std::size_t at, std::size_t length) {
    int number = 0;
    std::from_chars(text.data() + at, text.data() + std::min(at + length, text.size()), number);
    return number;
}

sys_days DayOf(const std::string& date) {
    return year_month_day(std::chrono::year(NumberAt(date, 0, 4)),
                          std::chrono::month(static_cast<unsigned>(NumberAt(date, 5, 2))),
                          std::chrono::day(static_cast<unsigned>(NumberAt(date, 8, 2))));
}

std::string MonthName(const year_month_day& date) {
    return MonthNames.at(static_cast<unsigned>(date.month()) - 1);
}

std::string DayText(const year_month_day& date, bool withYear) {
    return std::to_string(static_cast<unsigned>(date.day())) + " " + MonthName(date) +
           (withYear ? " " + std::to_string(static_cast<int>(date.year())) : "");
}

enum class Unit : std::uint8_t { Day, Week, Month, Year };

/// The first day of the bar that contains a day. Weeks begin on Monday.
sys_days BarOf(sys_days day, Unit unit) {
    if (unit == Unit::Day)
        return day;
    if (unit == Unit::Week)
        return day - std::chrono::days((std::chrono::weekday(day).iso_encoding()) - 1);
    const year_month_day date = day;
    return year_month_day(date.year(), unit == Unit::Year ? std::chrono::January : date.month(),
                          std::chrono::day(1));
}

sys_days NextBar(sys_days bar, Unit unit) {
    constexpr std::array longest{1, DaysOfWeek, 31, 366};
    return BarOf(bar + std::chrono::days(longest.at(static_cast<std::size_t>(unit))), unit);
}

std::string TitleOf(sys_days bar, Unit unit) {
    const year_month_day date = bar;
    if (unit == Unit::Year)
        return std::to_string(static_cast<int>(date.year()));
    if (unit == Unit::Month)
        return MonthName(date) + " " + std::to_string(static_cast<int>(date.year()));
    return (unit == Unit::Week ? "Week of " : "") + DayText(date, true);
}

/// Weeks are labelled with the month that begins in them.
std::string LabelOf(sys_days bar, Unit unit) {
    const year_month_day date = bar;
    if (unit == Unit::Day)
        return DayText(date, false);
    if (unit != Unit::Week)
        return TitleOf(bar, unit);
    const year_month_day last = bar + std::chrono::days(DaysOfWeek - 1);
    const bool beginsMonth = static_cast<unsigned>(last.day()) <= DaysOfWeek;
    return beginsMonth ? MonthName(last) : "";
}

/// Bars without pages are in between, so that the axis is a time axis.
std::vector<Bar> BarsOf(const ReportNumbers::ByName& pages, Unit unit) {
    std::vector<Bar> bars;
    sys_days next{};
    for (const auto& [date, counts] : pages) {
        const sys_days bar = BarOf(DayOf(date), unit);
        for (next = bars.empty() ? bar : next; next <= bar; next = NextBar(next, unit))
            bars.push_back({TitleOf(next, unit), LabelOf(next, unit), {}});
        bars.back().counts += counts;
    }
    // Too many labels would overlap.
    std::size_t labels = 0;
    const auto all = static_cast<std::size_t>(
        std::count_if(bars.begin(), bars.end(), [](const Bar& bar) { return !bar.label.empty(); }));
    const std::size_t each = std::max<std::size_t>((all + MostLabels - 1) / MostLabels, 1);
    for (Bar& bar : bars)
        if (!bar.label.empty() && labels++ % each != 0)
            bar.label.clear();
    return bars;
}

/// A round number, at least a quarter of the highest bar.
std::int64_t GridStep(std::int64_t highest) {
    std::int64_t step = 1;
    for (std::int64_t power = 1;; power *= 10)
        for (const std::int64_t digit : {1, 2, 5}) {
            step = digit * power;
            if (step * 4 >= highest)
                return step;
        }
}

std::string Share(double part) {
    char text[32];
    const char* const end = std::to_chars(text, text + sizeof text, part, std::chars_format::fixed, 2).ptr;
    return {static_cast<const char*>(text), end};
}

/// The grid's lines from 0 to `top`, with their numbers.
std::string Grid(std::int64_t step, std::int64_t top) {
    std::string grid;
    for (std::int64_t line = 0; line <= top; line += step)
        grid += "<span style='bottom:" + Share(100.0 * static_cast<double>(line) / static_cast<double>(top)) +
                "%'><b>" + Html::Number(line) + "</b></span>";
    return grid;
}

/// One unit of the drawing wide; `top` pages are 100 units high.
std::string Rectangles(const Bar& bar, std::size_t at, std::int64_t top) {
    const auto height = [&](std::int64_t pages) {
        return 100.0 * static_cast<double>(pages) / static_cast<double>(top);
    };
    const std::string x = Share(static_cast<double>(at) + 0.14);
    const auto rectangle = [&](const std::string& kind, std::int64_t from, std::int64_t to) {
        return "<rect class='" + kind + "' x='" + x + "' y='" + Share(100.0 - height(to)) +
               "' width='.72' height='" + Share(height(to - from)) + "'/>";
    };
    const auto& [pages, color] = std::pair(bar.counts.pages, bar.counts.color);
    return "<g><title>" + bar.title + ": " + Html::Number(pages) + " pages, " + Html::Number(color) +
           " in colour</title>" + rectangle("color", 0, color) + rectangle("other", color, pages) + "</g>";
}

std::string Labels(const std::vector<Bar>& bars) {
    std::string labels;
    for (std::size_t at = 0; at < bars.size(); ++at)
        if (!bars[at].label.empty())
            labels += "<span style='left:" +
                      Share(100.0 * (static_cast<double>(at) + 0.5) / static_cast<double>(bars.size())) +
                      "%'>" + bars[at].label + "</span>";
    return labels;
}

Unit UnitOf(const ReportNumbers::ByName& days) {
    const auto length = (DayOf(days.rbegin()->first) - DayOf(days.begin()->first)).count();
    if (length <= LongestInDays)
        return Unit::Day;
    if (length <= LongestInWeeks)
        return Unit::Week;
    return length <= LongestInMonths ? Unit::Month : Unit::Year;
}

} // namespace

std::string PageChart(const ReportNumbers::ByName& days) {
    if (days.empty())
        return "<p>No job has a time.</p>";
    const Unit unit = UnitOf(days);
    const std::vector<Bar> bars = BarsOf(days, unit);
    constexpr std::array unitNames{"day", "week", "month", "year"};
    const std::string unitName = unitNames.at(static_cast<std::size_t>(unit));
    std::int64_t highest = 1;
    for (const Bar& bar : bars)
        highest = std::max(highest, bar.counts.pages);
    const std::int64_t step = GridStep(highest);
    const std::int64_t top = (highest + step - 1) / step * step;
    std::string drawing;
    for (std::size_t at = 0; at < bars.size(); ++at)
        drawing += Rectangles(bars[at], at, top);
    return "<figure class='chart'><div class='plot'><div class='grid' aria-hidden='true'>" + Grid(step, top) +
           "</div><svg role='img' aria-label='Pages by " + unitName + "' viewBox='0 0 " +
           std::to_string(bars.size()) + " 100' preserveAspectRatio='none'>" + drawing +
           "</svg></div><div class='axis' aria-hidden='true'>" + Labels(bars) +
           "</div><figcaption>One bar per " + unitName +
           ".<span class='key color'>Colour pages</span><span class='key other'>Black-and-white and blank "
           "pages</span></figcaption></figure>";
}
