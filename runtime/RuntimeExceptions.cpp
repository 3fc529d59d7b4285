#include "Unwinding.h"

#ifdef RUNTIME_HAS_GCC_EXCEPTIONS

// Makes throwing work when memory is exhausted: out of memory is thrown like any other failure.
//
// GCC's static runtime allocates a thread's exception state on its first exception, and a reserve for
// exceptions at load. It ends the process if the state cannot be allocated, or if an exception cannot and
// there is no reserve. Here the state is in the loader's per-thread block, and the reserve is a static array.

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// A thread's exception state, laid out by the compiler's C++ ABI. The runtime reads and writes it.
struct ThreadState {
    void* caught;
    unsigned int uncaught;
};

/// The loader copies this section for each thread.
[[gnu::section(".tls$exceptions"), gnu::used]] ThreadState initialState{};

/// Room for the runtime's header before the thrown object, which takes 80 bytes, in 64 bits 160.
constexpr std::size_t HeaderSize = 32 * sizeof(void*);

/// Blocks for exceptions when malloc fails, one per exception in flight.
class Reserve {
public:
    static constexpr std::size_t PlaceSize = HeaderSize + 128;

    void* Take(std::size_t size) noexcept {
        for (std::size_t i = 0; size <= PlaceSize && i < m_places.size(); ++i)
            if (!m_taken[i].exchange(true, std::memory_order_acquire))
                return m_places[i].bytes;
        return nullptr;
    }
    /// False if the block is from the heap.
    bool GiveBack(const void* block) noexcept {
        for (std::size_t i = 0; i < m_places.size(); ++i)
            if (block == m_places[i].bytes) {
                m_taken[i].store(false, std::memory_order_release);
                return true;
            }
        return false;
    }

private:
    struct alignas(16) Place {
        std::byte bytes[PlaceSize];
    };
    std::array<Place, 32> m_places{};
    std::array<std::atomic<bool>, 32> m_taken{};
};

constinit Reserve reserve;

} // namespace

// Names of the linker and the runtime. NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {

extern char _tls_start;  // start of the section that the loader copies
extern ULONG _tls_index; // index of this library's copy

ThreadState* __cxa_get_globals_fast() noexcept {
    char** blocks = nullptr; // one per library, from the thread environment block
#ifdef _WIN64
    __asm__("movq %%gs:0x58, %0" : "=r"(blocks));
#else
    __asm__("movl %%fs:0x2c, %0" : "=r"(blocks));
#endif
    return reinterpret_cast<ThreadState*>(blocks[_tls_index] +
                                          (reinterpret_cast<char*>(&initialState) - &_tls_start));
}

ThreadState* __cxa_get_globals() noexcept {
    return __cxa_get_globals_fast();
}

void* __cxa_allocate_exception(std::size_t thrownSize) noexcept {
    const std::size_t size = HeaderSize + thrownSize;
    void* block = std::malloc(size);
    if (!block)
        block = reserve.Take(size);
    if (!block)
        std::terminate();
    std::memset(block, 0, HeaderSize);
    return static_cast<std::byte*>(block) + HeaderSize;
}

void __cxa_free_exception(void* thrown) noexcept {
    void* const block = static_cast<std::byte*>(thrown) - HeaderSize;
    if (!reserve.GiveBack(block))
        std::free(block);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

#endif
