#pragma once

/// A static object that is never destroyed: static destructors can still use it, and loading the library does
/// not allocate an atexit entry.
template<class T>
class NeverDestroyed {
public:
    constexpr NeverDestroyed() noexcept : m_object() {}
    // The default destructor is deleted when T has one. NOLINTNEXTLINE(modernize-use-equals-default)
    ~NeverDestroyed() {}
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    T& Get() noexcept { return m_object; }

private:
    union {
        T m_object;
    };
};
