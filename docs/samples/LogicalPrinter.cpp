#include "client.h"

int main() {
    Apartment apartment;
    auto printer = Create<LogicalPrinter, ILogicalPrinter>();
    Check(printer->put_PrinterName(Text(L"Office colour")));
    Check(printer->put_PortName(Text(L"IP_10.1.2.3")));
    Check(printer->put_ColorCapable(VARIANT_TRUE));
    Check(printer->put_DriverName(Text(L"Universal Driver")));
    Check(printer->put_Destination(Text(L"<Destination><Floor>2</Floor></Destination>")));

    Text name, port;
    VARIANT_BOOL color;
    Check(printer->get_PrinterName(name.Put()));
    Check(printer->get_PortName(port.Put()));
    Check(printer->get_ColorCapable(&color));
    Print(L"%ls on %ls, colour: %ls\n", name.Get(), port.Get(), TrueOrFalse(color));

    // A destination must be well-formed.
    const HRESULT result = printer->put_Destination(Text(L"second floor"));
    Print(L"%lX %ls\n", static_cast<unsigned long>(result), ErrorText().Get());
}
