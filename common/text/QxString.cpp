#include "QxString.h"

#include <algorithm>
#include <limits>
#include <new>

QxString::QxString(std::wstring_view text) {
    if (text.empty())
        return;
    if (text.size() > std::numeric_limits<std::size_t>::max() / sizeof(wchar_t) - sizeof(Data))
        throw std::bad_alloc();
    m_data = MakeData(::operator new(DataSize(text.size())), nullptr, text);
}

QxString::Data* QxString::MakeData(void* place, Block* block, std::wstring_view text) noexcept {
    Data* const data = new (place) Data{{1}, block, text.size()};
    wchar_t* const end = std::copy(text.begin(), text.end(), data->characters());
    *end = L'\0';
    return data;
}

QxString::QxString(const QxString& other) noexcept : m_data(other.m_data) {
    if (m_data)
        m_data->references.fetch_add(1, std::memory_order_relaxed);
}

const wchar_t* QxString::c_str() const noexcept {
    return view().data();
}

void QxString::Release() noexcept {
    if (m_data->references.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (m_data->block)
        Release(m_data->block);
    else
        ::operator delete(m_data);
}

void QxString::Release(Block* block) noexcept {
    if (block && block->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        ::operator delete(block);
}
