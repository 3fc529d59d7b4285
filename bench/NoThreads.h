#pragma once

// Lets Google Benchmark compile where the compiler's standard library has no threads, as with the product's
// own compiler. Everything here runs on one thread: its locks have nothing to do and it starts no thread.

#include <cstdlib>
#include <mutex>
#include <thread>

#ifndef _GLIBCXX_HAS_GTHREADS
namespace std {

struct mutex {
    void lock() noexcept {}
    void unlock() noexcept {}
};

struct condition_variable {
    void notify_all() noexcept {}
    template<class Lock, class Condition>
    void wait(Lock&, Condition condition) {
        if (!condition())
            abort(); // nobody could make it true
    }
};

struct no_thread {
    no_thread() = default;
    template<class... Work>
    explicit no_thread(Work&&...) {
        abort();
    }
    void join() noexcept {}
};

} // namespace std
#define thread no_thread // the library's class is there, but cannot start a thread
#endif
