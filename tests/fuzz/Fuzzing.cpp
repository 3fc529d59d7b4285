#include "Fuzzing.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Fuzzing {

void Fail(const char* what) {
    std::fprintf(stderr, "wrong: %s\n", what);
    std::abort();
}

std::wstring Widen(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(), [](char byte) {
        const unsigned value = static_cast<unsigned char>(byte);
        return static_cast<wchar_t>(value < 0xC0 ? value : 0x2600 | (value & 0x3F));
    });
    return text;
}

std::string_view TakeLine(std::string_view& bytes) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return line;
}

std::uint32_t TakeNumber(std::string_view& bytes) {
    std::uint32_t number = 0;
    for (unsigned shift = 0; shift < 32 && !bytes.empty(); shift += 8) {
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes.front())) << shift;
        bytes.remove_prefix(1);
    }
    return number;
}

} // namespace Fuzzing
