#include "Html.h"

std::string Html::Text(std::string_view text) {
    std::string html;
    for (const char c : text) {
        if (c == '<')
            html += "&lt;";
        else if (c == '>')
            html += "&gt;";
        else if (c == '&')
            html += "&amp;";
        else if (c == '"')
            html += "&quot;";
        else if (c == '\'')
            html += "&#39;";
        else
            html += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? ' ' : c;
    }
    return html;
}

std::string Html::Number(std::int64_t number) {
    std::string digits = std::to_string(number);
    const std::size_t first = number < 0 ? 1 : 0;
    for (std::size_t at = digits.size(); at > first + 3;)
        digits.insert(at -= 3, 1, ',');
    return digits;
}

std::string Html::Percent(std::int64_t part, std::int64_t all) {
    if (all <= 0)
        return "–";
    const std::int64_t tenths = (2000 * part + all) / (2 * all); // rounded
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
}
