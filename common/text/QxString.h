#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// Immutable shared UTF-16 text: the form in which every record keeps its values.
///
/// One pointer wide; the empty text needs no allocation; a copy shares the characters, costs one interlocked
/// increment and never throws. The count is interlocked because the catalogue's texts are handed to records
/// in several apartments. Work in progress (building, replacing, splitting) uses std::wstring and views.
class QxString {
public:
    constexpr QxString() noexcept = default;
    /// Throws std::bad_alloc. Embedded NUL characters are kept.
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

    /// Memory that several texts share; it goes with the last of them.
    struct alignas(void*) Block {
        std::atomic<unsigned> references;
    };
    /// Header of one text; the characters and a NUL follow it.
    struct Data {
        std::atomic<unsigned> references;
        Block* block; ///< null for a text with memory of its own
        std::size_t size;
        wchar_t* characters() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
    };

    explicit QxString(Data* data) noexcept : m_data(data) {}
    /// What a text of that length takes, rounded up so that another may follow.
    static constexpr std::size_t DataSize(std::size_t length) noexcept {
        const std::size_t size = sizeof(Data) + (length + 1) * sizeof(wchar_t);
        return (size + alignof(Data) - 1) / alignof(Data) * alignof(Data);
    }
    static Data* MakeData(void* place, Block* block, std::wstring_view text) noexcept;
    static void Release(Block* block) noexcept;
    void Release() noexcept;

    Data* m_data = nullptr;
};
