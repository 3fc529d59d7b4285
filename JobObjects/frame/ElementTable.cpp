#include "ElementTable.h"

#include <algorithm>

namespace {

template<class Value>
Value& As(void* field) noexcept {
    return *static_cast<Value*>(field);
}
template<class Value>
const Value& As(const void* field) noexcept {
    return *static_cast<const Value*>(field);
}

} // namespace

void ElementForm::Write(QxXmlWriter& writer, const void* field) const {
    switch (kind) {
    case Kind::Text:
        writer.Element(name, As<QxString>(field).view());
        break;
    case Kind::Markup:
        writer.Raw(As<QxString>(field));
        break;
    case Kind::Number:
        writer.Element(name, As<std::int32_t>(field));
        break;
    case Kind::Flag:
        writer.Element(name, As<bool>(field));
        break;
    case Kind::Date:
        writer.Element(name, As<QxDateTime>(field));
        break;
    case Kind::Custom:
        break;
    }
}

void ElementForm::Read(const QxXmlParser& parser, ChildReader& children, void* field) const {
    if (!children.Find(name)) {
        if (missing != Missing::Kept)
            Reset(field);
        return;
    }
    switch (kind) {
    case Kind::Text:
        As<QxString>(field) = parser.GetChildData();
        break;
    case Kind::Markup:
        As<QxString>(field) = QxString(parser.GetChildSubDocument());
        break;
    case Kind::Number:
        As<std::int32_t>(field) = std::max(parser.GetChildNumber(), minimum);
        break;
    case Kind::Flag:
        As<bool>(field) = parser.GetChildFlag();
        break;
    case Kind::Date: {
        const QxDateTime value = QxDateTime::Parse(parser.GetChildData());
        As<QxDateTime>(field) = value.IsValid() ? value : QxDateTime();
        break;
    }
    case Kind::Custom:
        break;
    }
}

void ElementForm::Reset(void* field) const {
    switch (kind) {
    case Kind::Text:
    case Kind::Markup:
        As<QxString>(field) = {};
        break;
    case Kind::Number:
        As<std::int32_t>(field) = std::max<std::int32_t>(0, minimum);
        break;
    case Kind::Flag:
        As<bool>(field) = false;
        break;
    case Kind::Date:
        As<QxDateTime>(field) = QxDateTime();
        break;
    case Kind::Custom:
        break;
    }
}
