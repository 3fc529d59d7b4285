#pragma once

#include "common/text/QxString.h"

#include <memory>
#include <string_view>
#include <utility>

/// A sink of the diagnostic log. The logger calls Write under its lock; an implementation must never throw
/// and never log.
class QxLog {
public:
    virtual ~QxLog() = default;
    /// Text of one or more lines, each ended by a line feed.
    virtual void Write(std::wstring_view text) noexcept = 0;

    const QxString& Name() const noexcept { return m_name; }

protected:
    explicit QxLog(QxString name) noexcept : m_name(std::move(name)) {}

private:
    QxString m_name;
};

/// A counted reference: a changed configuration shares the sinks that it keeps with the one before.
using QxLogPtr = std::shared_ptr<QxLog>;
