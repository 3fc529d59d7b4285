#include "QxStringPool.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

// Values are about a fifth of a record's characters, plus a header for each: a block of five sixteenths of
// the document usually holds them all.
constexpr std::size_t SmallestBlock = 128;
constexpr std::size_t LargestBlock = 4096;

} // namespace

QxStringPool::~QxStringPool() {
    ReleaseBlock();
}

void QxStringPool::Begin(std::size_t documentLength) noexcept {
    ReleaseBlock();
    m_blockSize = std::clamp(documentLength / 16 * (5 * sizeof(wchar_t)), SmallestBlock, LargestBlock);
}

QxString QxStringPool::Make(std::wstring_view text) {
    // A long text gains nothing from a block, and would keep it alive.
    if (text.empty() || text.size() > m_blockSize / (8 * sizeof(wchar_t)))
        return QxString(text);
    const std::size_t size = QxString::DataSize(text.size());
    if (!m_block || m_blockSize - m_used < size)
        AddBlock();
    void* const place = reinterpret_cast<char*>(m_block) + m_used;
    m_used += size;
    --m_references;
    return QxString(QxString::MakeData(place, m_block, text));
}

void QxStringPool::AddBlock() {
    void* const memory = ::operator new(m_blockSize);
    ReleaseBlock();
    m_references = static_cast<unsigned>(m_blockSize); // more than texts fit into it
    m_block = new (memory) QxString::Block{{m_references}};
    m_used = sizeof(QxString::Block);
}

void QxStringPool::ReleaseBlock() noexcept {
    if (m_block)
        QxString::Release(std::exchange(m_block, nullptr), m_references);
}
