#include <cstddef>
#include <cstdio>
#include <cstring>

// Overruns a buffer on its stack. Compiled with the product's options.

namespace {

void Fill(char* buffer, std::size_t size) {
    std::memset(buffer, 'x', size);
}

void Overrun(std::size_t excess) {
    char buffer[16];
    Fill(buffer, sizeof(buffer) + excess);
    std::printf("%c\n", buffer[0]);
}

} // namespace

int main(int count, char**) {
    Overrun(count > 1 ? 32 : 0); // any argument requests the overrun
    return 0;
}
