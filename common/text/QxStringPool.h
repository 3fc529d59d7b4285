#pragma once

#include "QxString.h"

#include <cstddef>
#include <string_view>

/// Allocates the texts read from one document in shared blocks: one allocation per text would cost more than
/// the rest of a read. A text keeps its whole block, which is small, alive.
///
/// One thread at a time may use a pool; its texts are like any others.
class QxStringPool {
public:
    QxStringPool() noexcept = default;
    QxStringPool(const QxStringPool&) = delete;
    QxStringPool& operator=(const QxStringPool&) = delete;
    ~QxStringPool();

    /// Starts a new document; its length determines the block size.
    void Begin(std::size_t documentLength) noexcept;
    /// Throws std::bad_alloc.
    QxString Make(std::wstring_view text);

private:
    void AddBlock();
    void ReleaseBlock() noexcept;

    QxString::Block* m_block = nullptr; // the block being filled
    /// The pool's references to the block: one for each further text, so that making a text needs no
    /// interlocked operation.
    unsigned m_references = 0;
    std::size_t m_blockSize = 0;
    std::size_t m_used = 0;
};
