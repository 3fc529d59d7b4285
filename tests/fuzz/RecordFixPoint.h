#pragma once

#include "Fuzzing.h"

#include "common/xml/QxXmlWriter.h"

#include <string>
#include <string_view>

namespace Fuzzing {

template<class Record>
std::wstring XmlOf(const Record& record) {
    QxXmlWriter writer(256);
    record.WriteXml(writer);
    return std::wstring(writer.Text());
}

/// Reads a text into a record, which may refuse it. The record's own text must then round-trip unchanged
/// through another record and through itself.
template<class Record>
void CheckFixPoint(Record& record, std::wstring_view xml) {
    record.put_Xml(xml);
    const std::wstring written = XmlOf(record);
    Record other;
    Require(other.put_Xml(written), "a record refuses what it wrote");
    Require(XmlOf(other) == written, "another record writes a different text");
    Require(record.put_Xml(written) && XmlOf(record) == written, "a record's own text changes it");
}

} // namespace Fuzzing
