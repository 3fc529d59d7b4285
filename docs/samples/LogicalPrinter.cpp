#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto printer = JobObjects::LogicalPrinter::Create();
    printer.PrinterName(L"Office colour");
    printer.PortName(L"IP_10.1.2.3");
    printer.ColorCapable(true);
    printer.DriverName(L"Universal Driver");
    printer.Destination(L"<Destination><Floor>2</Floor></Destination>");
    std::printf("%ls on %ls, colour: %s\n", printer.PrinterName().c_str(), printer.PortName().c_str(),
                printer.ColorCapable() ? "True" : "False");

    // A destination must be well-formed.
    try {
        printer.Destination(L"second floor");
    } catch (const JobObjects::Error& error) {
        std::printf("%lX %ls\n", static_cast<unsigned long>(error.Result()), error.Description().c_str());
    }
}
