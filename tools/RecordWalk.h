#pragma once

#include "RecordView.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <oaidl.h>

/// Hands all properties of a record to a view, as its type information lists them.
class RecordWalk {
public:
    explicit RecordWalk(RecordView& view) : m_view(view) {}
    void Object(IDispatch* object);

private:
    struct Property {
        DISPID member;
        std::wstring name;
    };
    struct Type {
        std::vector<Property> properties;
        std::size_t width = 0; ///< of the longest name
        bool isCollection = false;
    };

    static void AddProperty(ITypeInfo* info, const FUNCDESC& function, Type& type);
    const Type& TypeOf(IDispatch* object);
    void Object(IDispatch* object, const Type& type);
    void ShowProperty(IDispatch* object, const Property& property, std::size_t width);
    void Child(const Property& property, std::size_t width, IUnknown* child);
    void Items(IDispatch* collection);

    RecordView& m_view;
    std::map<std::wstring, Type> m_types; ///< by the interface's name
};
