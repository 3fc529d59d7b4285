#include "QxString.h"

#include <algorithm>
#include <limits>
#include <new>

QxString::QxString(std::wstring_view text) {
    if (text.empty())
        return;
    if (text.size() > (std::numeric_limits<std::size_t>::max() - sizeof(Data)) / sizeof(wchar_t) - 1)
        throw std::bad_alloc();
    void* block = ::operator new(sizeof(Data) + (text.size() + 1) * sizeof(wchar_t));
    m_data = new (block) Data{{1}, text.size()};
    wchar_t* end = std::copy(text.begin(), text.end(), m_data->characters());
    *end = L'\0';
}

QxString::QxString(const QxString& other) noexcept : m_data(other.m_data) {
    if (m_data)
        m_data->references.fetch_add(1, std::memory_order_relaxed);
}

const wchar_t* QxString::c_str() const noexcept {
    return view().data();
}

void QxString::Release() noexcept {
    if (m_data->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        m_data->~Data();
        ::operator delete(m_data);
    }
}
