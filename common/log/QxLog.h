#pragma once

#include "common/text/QxString.h"

#include <memory>
#include <string_view>
#include <utility>

/// A sink of the log. The logger calls Write under its lock; an implementation must not log.
class QxLog {
public:
    virtual ~QxLog() = default;
    /// One or more lines, each ending in a line feed.
    virtual void Write(std::wstring_view text) noexcept = 0;

    const QxString& Name() const noexcept { return m_name; }

protected:
    explicit QxLog(QxString name) noexcept : m_name(std::move(name)) {}

private:
    QxString m_name;
};

/// Shared: a changed configuration keeps unchanged sinks.
using QxLogPtr = std::shared_ptr<QxLog>;
