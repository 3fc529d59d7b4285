#include "QxString.h"

#include "CopyText.h"

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
    *QxMisc::CopyText(data->characters(), text) = L'\0';
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
    // A text's only owner needs no interlocked operation.
    if (m_data->references.load(std::memory_order_acquire) != 1 &&
        m_data->references.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (m_data->block)
        Release(m_data->block, 1);
    else
        ::operator delete(m_data);
}

void QxString::Release(Block* block, unsigned count) noexcept {
    if (block->references.fetch_sub(count, std::memory_order_acq_rel) == count)
        ::operator delete(block);
}
