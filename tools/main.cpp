// jobobjects: diagnoses installations, records and catalogues from the command line.

#include "CommandLine.h"
#include "Console.h"

#include <objbase.h>

#include <exception>
#include <vector>

namespace {

/// No exception leaves it.
int RunGuarded(const std::vector<std::wstring>& arguments) {
    try {
        return RunCommandLine(arguments);
    } catch (const ToolError& error) {
        Console::ErrorLine(error);
    } catch (const std::bad_alloc&) {
        Console::ErrorLine(L"jobobjects: out of memory");
    } catch (const std::exception&) {
        Console::ErrorLine(L"jobobjects: unexpected failure");
    }
    return ExitCannotRun;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const HRESULT initialized = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const int exitCode = RunGuarded(std::vector<std::wstring>(argv + 1, argv + argc));
    Console::Flush();
    if (SUCCEEDED(initialized))
        CoUninitialize();
    return exitCode;
}
