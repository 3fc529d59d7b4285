#pragma once

#include "Rows.h"

#include <memory>
#include <string>
#include <variant>

/// A property's value: none (no object), text, number or flag.
using PropertyValue = std::variant<std::monostate, std::wstring, std::int64_t, bool>;

/// Receives a record's properties in order, and shows them in one format.
class RecordView {
public:
    static std::unique_ptr<RecordView> Make(Format format, bool areSeveralFiles);

    RecordView() = default;
    RecordView(const RecordView&) = delete;
    RecordView& operator=(const RecordView&) = delete;
    virtual ~RecordView() = default;

    virtual void BeginRecord(const std::wstring& file, const std::wstring& className) = 0;
    virtual void EndRecord() = 0;
    /// `width` is that of the longest name beside it.
    virtual void Value(const std::wstring& name, std::size_t width, const PropertyValue& value) = 0;
    virtual void Failure(const std::wstring& name, std::size_t width, const std::wstring& error) = 0;
    virtual void BeginObject(const std::wstring& name) = 0;
    virtual void EndObject() = 0;
    /// The items of a collection are objects.
    virtual void BeginItems() = 0;
    virtual void BeginItem(std::size_t index) = 0;
    virtual void EndItem() = 0;
    virtual void EndItems() = 0;
};
