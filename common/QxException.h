#pragma once

#include "common/text/QxString.h"

#include <utility>

/// A failure with a message, which the caller gets as the error's description.
class QxException {
public:
    explicit QxException(QxString message) noexcept : m_message(std::move(message)) {}
    /// A null pointer gives an empty message.
    explicit QxException(const wchar_t* message) : m_message(message) {}
    QxException(const QxException&) noexcept = default;
    QxException& operator=(const QxException&) noexcept = default;
    virtual ~QxException() = default;

    const QxString& Message() const noexcept { return m_message; }

private:
    QxString m_message;
};
