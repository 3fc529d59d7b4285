#pragma once

// Lets Google Benchmark compile with a standard library without threads, such as that of the product's
// compiler. The benchmarks use one thread, so locks do nothing and no thread is started.

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
            abort(); // no other thread could make it true
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
#define thread no_thread // the library's std::thread exists but cannot start a thread
#endif
