#include "Unwinding.h"

#ifdef RUNTIME_UNWINDS_BY_TABLES

// Throws without memory.
//
// Out of memory is thrown like any other failure. GCC's static runtime allocates for the first exception of
// each thread, and for every exception when it could not allocate its reserve while the library was loaded;
// if that fails, it ends the process. The functions here replace the ones that allocate: the state of a
// thread is in the block that the loader makes for each thread, and exceptions have a reserve inside the
// library.

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// The exceptions of a thread, as the compiler's C++ ABI lays them out. The runtime reads and writes it.
struct ThreadState {
    void* caught;
    unsigned int uncaught;
};

/// In the section that the loader copies for each thread.
[[gnu::section(".tls$exceptions"), gnu::used]] ThreadState initialState{};

/// Room for the runtime's own data before the thrown object: 80 bytes, and some to spare.
constexpr std::size_t HeaderSize = 128;

/// Blocks for exceptions when malloc fails: one for each exception that is being handled.
class Reserve {
public:
    static constexpr std::size_t PlaceSize = 256;

    void* Take(std::size_t size) noexcept {
        for (std::size_t i = 0; size <= PlaceSize && i < m_places.size(); ++i)
            if (!m_taken[i].exchange(true, std::memory_order_acquire))
                return m_places[i].bytes;
        return nullptr;
    }
    /// False for a block from the heap.
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

// The linker's and the runtime's names. NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {

extern char _tls_start;  // the section that the loader copies
extern ULONG _tls_index; // of this library's copy among those of a thread

ThreadState* __cxa_get_globals_fast() noexcept {
    char** blocks = nullptr; // one for each library, from the thread's environment block
    __asm__("movl %%fs:0x2c, %0" : "=r"(blocks));
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
