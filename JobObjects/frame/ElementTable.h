#pragma once

#include "common/QxDateTime.h"
#include "common/text/QxString.h"
#include "common/QxVersion.h"
#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"
#include "common/xml/XmlName.h"

#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

// The XML form of a record: one table, in document order, drives writing and reading. Where a plain row does
// not suffice, a row names two functions.

/// How a read treats a field whose element is missing.
enum class Missing : std::uint8_t {
    Reset,          ///< to empty, 0 (or the minimum), false or the zero date
    Kept,           ///< unchanged
    ResetInAnyForm, ///< as Reset, also in versions without the element
};

/// The part of a row that does not depend on the record's class.
struct ElementForm {
    /// Markup is stored and written verbatim, tags included.
    enum class Kind : std::uint8_t { Text, Markup, Number, Flag, Date, Custom };

    bool BelongsTo(const QxVersion& version) const noexcept {
        return !versioned || (version >= since && (!until.IsValid() || version < until));
    }
    void Write(QxXmlWriter& writer, const void* field) const;
    /// Requires BelongsTo(version).
    void Read(const QxXmlParser& parser, ChildReader& children, void* field) const;
    void Reset(void* field) const;

    XmlName name;
    Kind kind;
    Missing missing = Missing::Reset;
    bool versioned = false;                                          ///< false: in all versions
    std::int32_t minimum = std::numeric_limits<std::int32_t>::min(); ///< lower numbers are raised to it
    QxVersion since{};                                               ///< undefined: the first
    QxVersion until{};                                               ///< first version without the element
};

/// One row: an element and its field.
template<class Record>
class Element : public ElementForm {
public:
    using Writer = void (Record::*)(QxXmlWriter& writer) const;
    using Reader = void (Record::*)(QxXmlParser& parser, ChildReader& children);

    constexpr Element(XmlName elementName, QxString Record::* field)
        : ElementForm{elementName, Kind::Text}, m_text(field) {}
    constexpr Element(XmlName elementName, std::int32_t Record::* field)
        : ElementForm{elementName, Kind::Number}, m_number(field) {}
    constexpr Element(XmlName elementName, bool Record::* field)
        : ElementForm{elementName, Kind::Flag}, m_flag(field) {}
    constexpr Element(XmlName elementName, QxDateTime Record::* field)
        : ElementForm{elementName, Kind::Date}, m_date(field) {}
    /// Custom functions, called for every version; a null one does nothing.
    constexpr Element(Writer writer, Reader reader)
        : ElementForm{L"", Kind::Custom}, m_custom{writer, reader} {}

    constexpr Element Since(QxVersion version) const { return Versioned(&ElementForm::since, version); }
    constexpr Element Until(QxVersion version) const { return Versioned(&ElementForm::until, version); }
    constexpr Element AtLeast(std::int32_t value) const { return With(&ElementForm::minimum, value); }
    constexpr Element WhenMissing(Missing what) const { return With(&ElementForm::missing, what); }
    constexpr Element AsMarkup() const { return With(&ElementForm::kind, Kind::Markup); }

    void WriteTo(QxXmlWriter& writer, const QxVersion& version, const Record& record) const {
        if (kind != Kind::Custom) {
            if (BelongsTo(version))
                Write(writer, FieldOf(record));
        } else if (m_custom.writer) {
            (record.*m_custom.writer)(writer);
        }
    }
    void ReadFrom(QxXmlParser& parser, ChildReader& children, const QxVersion& version,
                  Record& record) const {
        if (kind != Kind::Custom) {
            if (BelongsTo(version))
                Read(parser, children, FieldOf(record));
            else if (missing == Missing::ResetInAnyForm)
                Reset(FieldOf(record));
        } else if (m_custom.reader) {
            (record.*m_custom.reader)(parser, children);
        }
    }

private:
    struct Functions {
        Writer writer;
        Reader reader;
    };

    template<class Value>
    constexpr Element With(Value ElementForm::* member, std::type_identity_t<Value> value) const {
        Element changed = *this;
        changed.*member = value;
        return changed;
    }
    constexpr Element Versioned(QxVersion ElementForm::* bound, QxVersion version) const {
        return With(bound, version).With(&ElementForm::versioned, true);
    }
    /// The field is const if the record is.
    template<class Owner>
    auto FieldOf(Owner& record) const noexcept
        -> std::conditional_t<std::is_const_v<Owner>, const void*, void*> {
        switch (kind) {
        case Kind::Number:
            return &(record.*m_number);
        case Kind::Flag:
            return &(record.*m_flag);
        case Kind::Date:
            return &(record.*m_date);
        default:
            return &(record.*m_text);
        }
    }

    union {
        QxString Record::* m_text;
        std::int32_t Record::* m_number;
        bool Record::* m_flag;
        QxDateTime Record::* m_date;
        Functions m_custom;
    };
};

template<class Record>
using ElementTable = std::span<const Element<Record>>;

/// Writes the version's elements.
template<class Record>
void WriteElements(QxXmlWriter& writer, const QxVersion& version, const Record& record,
                   std::type_identity_t<ElementTable<Record>> table) {
    for (const Element<Record>& element : table)
        element.WriteTo(writer, version, record);
}

/// Reads the version's elements from the parser's current element.
template<class Record>
void ReadElements(QxXmlParser& parser, ChildReader& children, const QxVersion& version, Record& record,
                  std::type_identity_t<ElementTable<Record>> table) {
    for (const Element<Record>& element : table)
        element.ReadFrom(parser, children, version, record);
}
