#pragma once

#include "Findings.h"
#include "XmlTree.h"

#include <deque>

/// Compares a record's text with what the library writes after reading it.
class RoundTrip {
public:
    RoundTrip(const XmlTree& given, const XmlTree& written, Findings& findings, bool listDefaults)
        : m_given(given), m_written(written), m_findings(findings), m_listDefaults(listDefaults) {}

    void Compare();
    /// The number of elements that are missing and get their default.
    std::size_t Defaults() const noexcept { return m_defaults; }

private:
    using Element = XmlTree::Element;
    struct Pair {
        Element given, written;
        bool isMerged = false; ///< one of several copy lines that come back as one
    };

    void CompareAttributes(const Pair& pair);
    void CompareText(const Pair& pair);
    void CompareChildren(const Pair& pair);
    void CompareOtherChildren(const Pair& pair, Element given, Element written);
    void CompareCopyLines(const Pair& pair);
    void ReportMerged(Element first, Element written, std::size_t count);
    void ReportOlderLine(const Pair& pair);
    void ReportDefault(Element given, Element written);
    void Match(const Pair& parent, Element given, Element written);

    const XmlTree& m_given;
    const XmlTree& m_written;
    Findings& m_findings;
    bool m_listDefaults;
    std::size_t m_defaults = 0;
    std::deque<Pair> m_pending;
};
