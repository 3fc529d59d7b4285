#include "DateText.h"

#include <utility>

namespace {

/// Appends the last `count` digits.
void AppendDigits(std::string& text, unsigned number, std::size_t count) {
    const std::size_t begin = text.size();
    text.append(count, '0');
    for (std::size_t at = text.size(); at > begin; number /= 10)
        text[--at] = static_cast<char>('0' + number % 10);
}

} // namespace

std::string DateText(DATE date) {
    SYSTEMTIME t;
    if (!VariantTimeToSystemTime(date, &t))
        return "(invalid date)";
    std::string text;
    AppendDigits(text, t.wYear, 4);
    for (const auto& [separator, number] :
         {std::pair('-', t.wMonth), std::pair('-', t.wDay), std::pair('T', t.wHour),
          std::pair(':', t.wMinute), std::pair(':', t.wSecond)}) {
        text += separator;
        AppendDigits(text, number, 2);
    }
    return text;
}

std::string MillisecondsText(long milliseconds) {
    std::string text;
    if (milliseconds > 0) {
        text = ".";
        AppendDigits(text, static_cast<unsigned>(milliseconds), 3);
    }
    return text;
}
