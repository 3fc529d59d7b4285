// Exceptions when there is no memory.
//
// A failure for want of memory is reported to the caller like any other, and it travels as an exception. But
// GCC's static runtime needs memory for the first exception of each thread, and for every one when it could
// not set its reserve aside while the library was loaded; without it the runtime ends the process, which is
// the host's. So the library brings the five functions itself through which the runtime takes that memory:
// the state of a thread lies in the block that the loader makes for each thread of the process, and
// exceptions have a reserve inside the library.

#include <cstddef> // says whose runtime this is

#if defined(__MINGW32__) && defined(__GLIBCXX__)

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// What a thread knows of its exceptions, as the C++ ABI of the compiler lays it out; the runtime works on
/// it.
struct ThreadState {
    void* caught;
    unsigned int uncaught;
};

/// In the section from which the loader copies a block for each thread.
[[gnu::section(".tls$exceptions"), gnu::used]] ThreadState initialState{};

/// The runtime's own data lies before the object that is thrown. It takes some 80 bytes; the rest is to
/// spare.
constexpr std::size_t headerSize = 128;

/// For exceptions when the heap gives nothing. Each one that is being handled takes a place.
class Reserve {
public:
    static constexpr std::size_t placeSize = 256;

    void* Take(std::size_t size) noexcept {
        for (std::size_t i = 0; size <= placeSize && i < m_places.size(); ++i)
            if (!m_taken[i].exchange(true, std::memory_order_acquire))
                return m_places[i].bytes;
        return nullptr;
    }
    /// False if the block is none of the reserve's.
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
        std::byte bytes[placeSize];
    };
    std::array<Place, 32> m_places{};
    std::array<std::atomic<bool>, 32> m_taken{};
};

constinit Reserve reserve;

} // namespace

// The linker's and the runtime's names. NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {

extern char _tls_start;  // what the loader's blocks are copied from
extern ULONG _tls_index; // of this library among all that have a block

ThreadState* __cxa_get_globals_fast() noexcept {
    char** blocks = nullptr; // the thread's, one for each library, from the thread's environment block
    __asm__("movl %%fs:0x2c, %0" : "=r"(blocks));
    return reinterpret_cast<ThreadState*>(blocks[_tls_index] +
                                          (reinterpret_cast<char*>(&initialState) - &_tls_start));
}

ThreadState* __cxa_get_globals() noexcept {
    return __cxa_get_globals_fast();
}

void* __cxa_allocate_exception(std::size_t thrownSize) noexcept {
    const std::size_t size = headerSize + thrownSize;
    void* block = std::malloc(size);
    if (!block)
        block = reserve.Take(size);
    if (!block)
        std::terminate();
    std::memset(block, 0, headerSize);
    return static_cast<std::byte*>(block) + headerSize;
}

void __cxa_free_exception(void* thrown) noexcept {
    void* const block = static_cast<std::byte*>(thrown) - headerSize;
    if (!reserve.GiveBack(block))
        std::free(block);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

#endif
