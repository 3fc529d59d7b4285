#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// Immutable shared UTF-16 text: every record stores its texts in this form.
///
/// One pointer wide. The empty text does not allocate; a copy costs one interlocked increment and does not
/// throw. The count is interlocked because records in several apartments share the catalogue's texts. To
/// build, replace or split text, use std::wstring and views.
class QxString {
public:
    constexpr QxString() noexcept = default;
    /// Keeps embedded NULs. Throws std::bad_alloc.
    QxString(std::wstring_view text);
    QxString(const std::wstring& text) : QxString(std::wstring_view(text)) {}
    /// A null pointer gives the empty text.
    QxString(const wchar_t* text) : QxString(text ? std::wstring_view(text) : std::wstring_view()) {}

    QxString(const QxString& other) noexcept;
    QxString(QxString&& other) noexcept : m_data(other.m_data) { other.m_data = nullptr; }
    QxString& operator=(QxString other) noexcept {
        std::swap(m_data, other.m_data);
        return *this;
    }
    ~QxString() {
        if (m_data)
            Release();
    }

    std::wstring_view view() const noexcept {
        return m_data ? std::wstring_view(m_data->characters(), m_data->size) : std::wstring_view(L"");
    }
    operator std::wstring_view() const noexcept { return view(); }
    /// Always terminated by a NUL.
    const wchar_t* c_str() const noexcept;
    std::size_t size() const noexcept { return m_data ? m_data->size : 0; }
    bool empty() const noexcept { return m_data == nullptr; }

    friend bool operator==(const QxString& a, const QxString& b) noexcept { return a.view() == b.view(); }
    friend bool operator==(const QxString& a, std::wstring_view b) noexcept { return a.view() == b; }
    friend bool operator==(const QxString& a, const wchar_t* b) noexcept { return a.view() == b; }

private:
    friend class QxStringPool;

    /// Memory shared by several texts; freed with the last of them.
    struct alignas(void*) Block {
        std::atomic<unsigned> references;
    };
    /// Header of one text; the characters and a NUL follow it.
    struct Data {
        std::atomic<unsigned> references;
        Block* block; ///< null for a text that is not part of a block
        std::size_t size;
        wchar_t* characters() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
    };

    explicit QxString(Data* data) noexcept : m_data(data) {}
    /// Size of a text in memory, rounded up to the alignment of the next one.
    static constexpr std::size_t DataSize(std::size_t length) noexcept {
        const std::size_t size = sizeof(Data) + (length + 1) * sizeof(wchar_t);
        return (size + alignof(Data) - 1) / alignof(Data) * alignof(Data);
    }
    static Data* MakeData(void* place, Block* block, std::wstring_view text) noexcept;
    static void Release(Block* block, unsigned count) noexcept;
    void Release() noexcept;

    Data* m_data = nullptr;
};
