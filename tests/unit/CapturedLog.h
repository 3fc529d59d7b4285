#pragma once

#include "common/log/QxLogger.h"

#include <string>
#include <string_view>
#include <vector>

/// The log's current settings.
inline LogSettings CurrentSettings() {
    LogSettings settings;
    QxLogger::Instance().Change(
        [&settings](const LogConfiguration& configuration) { settings = configuration.settings; });
    return settings;
}

/// Keeps every text written to it.
class CapturingSink final : public QxLog {
public:
    explicit CapturingSink(std::vector<std::wstring>& texts, const wchar_t* name = L"capture")
        : QxLog(name), m_texts(texts) {}

    void Write(std::wstring_view text) noexcept override { m_texts.emplace_back(text); }

private:
    std::vector<std::wstring>& m_texts;
};

/// During its lifetime, the process's log is on and writes only here. Its destructor restores the
/// unconfigured log.
class CapturedLog {
public:
    explicit CapturedLog(std::uint32_t options = 0) {
        QxLogger::Instance().Change([&](LogConfiguration& configuration) {
            configuration.settings.enabled = true;
            configuration.settings.options = options;
            configuration.sinks = {{std::make_shared<CapturingSink>(m_texts)}};
        });
    }
    ~CapturedLog() { QxLogger::Instance().Close(); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    const std::vector<std::wstring>& Texts() const noexcept { return m_texts; }
    /// Removes and returns the texts so far, without their line ends.
    std::vector<std::wstring> TakeLines() {
        std::vector<std::wstring> lines;
        lines.swap(m_texts);
        for (std::wstring& line : lines)
            line.pop_back();
        return lines;
    }
    /// All texts, concatenated.
    std::wstring Joined() const {
        std::wstring joined;
        for (const std::wstring& text : m_texts)
            joined += text;
        return joined;
    }

private:
    std::vector<std::wstring> m_texts;
};
