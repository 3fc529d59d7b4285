#pragma once

#include "QxString.h"

#include <cstddef>
#include <string_view>

/// Makes the texts that are read from one document, many of them in one block of memory: a block for each
/// would cost more than the rest of a read. A text keeps its whole block, which is small, until it goes
/// itself.
///
/// A pool is used by one thread at a time; its texts are like any others.
class QxStringPool {
public:
    QxStringPool() noexcept = default;
    QxStringPool(QxStringPool&& other) noexcept;
    QxStringPool& operator=(QxStringPool&& other) noexcept;
    ~QxStringPool();

    /// Begins with the texts of a document of that many characters.
    void Begin(std::size_t documentLength) noexcept;
    /// Throws std::bad_alloc.
    QxString Make(std::wstring_view text);

private:
    void AddBlock();

    QxString::Block* m_block = nullptr; // the one that is being filled
    std::size_t m_blockSize = 0;
    std::size_t m_used = 0;
};
