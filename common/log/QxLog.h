#pragma once

#include "../QxString.h"

#include <atomic>
#include <string_view>
#include <utility>

/// A sink of the diagnostic log, reference-counted so that it outlives a reconfiguration during a write.
/// The logger calls Write under its lock; an implementation must never throw and never log.
class QxLog {
public:
    virtual ~QxLog() = default;
    /// Text of one or more lines, each ended by a line feed.
    virtual void Write(std::wstring_view text) noexcept = 0;

    const QxString& Name() const noexcept { return m_name; }
    void AddRef() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void Release() noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

protected:
    explicit QxLog(QxString name) noexcept : m_name(std::move(name)) {}

private:
    QxString m_name;
    std::atomic<long> m_references{1};
};
