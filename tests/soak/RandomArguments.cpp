#include "RandomArguments.h"

#include <algorithm>
#include <limits>

namespace {

const std::wstring_view Texts[] = {L"",
                                   L"A4",
                                   L"A4,Duplex,B&W,PostScript",
                                   L",,,;;;",
                                   L"1,24,0,12,6;2,1,1,1,1",
                                   L"-1,-1,-1,-1,-1",
                                   L"{3F2504E0-4F89-41D3-9A0C-0305E82C3301}",
                                   L"Staple,Punch",
                                   L"true",
                                   L"2147483648",
                                   L"-7",
                                   L"1e308",
                                   L"2010-03-04T05:06:07",
                                   L"%s%n%ls",
                                   L"<Destination><Address>x</Address></Destination>",
                                   L"<&\"'>",
                                   L"\xD83D",
                                   std::wstring_view(L"a\0b", 3)};
const LONG Longs[] = {
    0, 1, 2, -1, 3, 7, 100, 65536, std::numeric_limits<LONG>::max(), std::numeric_limits<LONG>::min()};
const double Doubles[] = {0.0,
                          1.0,
                          -1.0,
                          40241.25,
                          2958465.99,
                          -657434.0,
                          2958466.0,
                          1e9,
                          1e308,
                          -1e308,
                          1e-308,
                          0.5,
                          60.75,
                          std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity()};
const VARTYPE Types[] = {VT_EMPTY,    VT_NULL,     VT_I1,      VT_UI1,  VT_I2,   VT_UI2,   VT_I4,
                         VT_UI4,      VT_I8,       VT_UI8,     VT_INT,  VT_UINT, VT_R4,    VT_R8,
                         VT_CY,       VT_DATE,     VT_BSTR,    VT_BSTR, VT_BOOL, VT_ERROR, VT_DECIMAL,
                         VT_DISPATCH, VT_DISPATCH, VT_UNKNOWN, VT_ARRAY};

VARIANT Typed(VARTYPE type) {
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    return value;
}

VARIANT SomeText(ArgumentSource& source) {
    VARIANT value = Typed(VT_BSTR);
    if (source.random.OneIn(8))
        return value; // a null BSTR
    value.bstrVal =
        UniqueBstr(source.random.OneIn(4) ? std::wstring_view(source.document) : source.random.Of(Texts))
            .Detach();
    return value;
}

VARIANT SomeObject(ArgumentSource& source) {
    VARIANT value = Typed(VT_DISPATCH);
    value.pdispVal = ComPtr<IDispatch>(source.random.Of(source.objects)).Detach();
    return value;
}

VARIANT SomeArray(Random& random) {
    const VARTYPE elements[] = {VT_I4, VT_UI1, VT_BSTR, VT_VARIANT, VT_DISPATCH};
    const VARTYPE element = random.Of(elements);
    VARIANT value = Typed(static_cast<VARTYPE>(VT_ARRAY | element));
    value.parray = SafeArrayCreateVector(element, 0, random.Below(4));
    REQUIRE(value.parray != nullptr);
    return value;
}

VARIANT SomeValue(ArgumentSource& source, VARTYPE type) {
    Random& random = source.random;
    VARIANT value = Typed(type);
    switch (type) {
    case VT_BSTR:
        return SomeText(source);
    case VT_DISPATCH:
        return SomeObject(source);
    case VT_ARRAY:
        return SomeArray(random);
    case VT_BOOL:
        value.boolVal = static_cast<VARIANT_BOOL>(random.OneIn(2) ? VARIANT_TRUE : random.Of(Longs));
        break;
    case VT_R4:
        value.fltVal = static_cast<float>(random.Of(Doubles));
        break;
    case VT_R8:
    case VT_DATE:
        value.dblVal = random.Of(Doubles);
        break;
    case VT_DECIMAL:
        VarDecFromI4(random.Of(Longs), &value.decVal);
        value.vt = VT_DECIMAL; // vt overlaps the decimal's first bytes
        break;
    case VT_ERROR:
        value.scode = random.OneIn(2) ? DISP_E_PARAMNOTFOUND : E_FAIL;
        break;
    case VT_UNKNOWN: // null, see AddAny
    case VT_EMPTY:
    case VT_NULL:
        break;
    default: // integers
        value.llVal = random.OneIn(2) ? random.Of(Longs) : static_cast<LONG>(random.Next());
    }
    return value;
}

bool HoldsPointer(const VARIANT& value) {
    return value.vt == VT_BSTR || value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN ||
           (value.vt & VT_ARRAY) != 0;
}

} // namespace

RandomArguments::~RandomArguments() {
    // References do not own their values; the places do.
    for (VARIANT& value : m_values)
        if ((value.vt & VT_BYREF) == 0)
            VariantClear(&value);
    for (const auto& place : m_places) {
        if (HoldsPointer(place->original) &&
            (place->current.vt != place->original.vt || place->current.byref != place->original.byref))
            VariantClear(&place->original);
        VariantClear(&place->current);
    }
}

void RandomArguments::AddByReference(const VARIANT& value) {
    m_places.push_back(std::make_unique<Place>(Place{value, value}));
    VARIANT& place = m_places.back()->current;
    VARIANT reference = Typed(static_cast<VARTYPE>(VT_BYREF | value.vt));
    reference.byref = value.vt == VT_DECIMAL ? static_cast<void*>(&place.decVal) : &place.llVal;
    m_values.push_back(reference);
}

void RandomArguments::AddAny(ArgumentSource& source) {
    constexpr std::uint32_t byValue = 5;
    const VARIANT value = SomeValue(source, source.random.Of(Types));
    // Wine's type information leaks a reference to an object of the wrong type unless it is passed as
    // VT_DISPATCH by value.
    const std::uint32_t way = value.vt == VT_DISPATCH ? byValue : source.random.Below(byValue + 1);
    // VT_EMPTY and VT_NULL have no by-reference form.
    if (way == 0 && value.vt != VT_EMPTY && value.vt != VT_NULL) {
        AddByReference(value);
    } else if (way == 1) {
        m_places.push_back(std::make_unique<Place>(Place{value, value}));
        VARIANT reference = Typed(VT_BYREF | VT_VARIANT);
        reference.pvarVal = &m_places.back()->current;
        m_values.push_back(reference);
    } else {
        m_values.push_back(value);
    }
}

void RandomArguments::AddFitting(ArgumentSource& source, const Parameter& parameter) {
    if (parameter.isOut)
        AddByReference(SomeValue(source, parameter.type));
    else
        m_values.push_back(SomeValue(source, parameter.type));
}

std::vector<VARIANT>& RandomArguments::Values() {
    std::reverse(m_values.begin(), m_values.end());
    return m_values;
}
