// The library's entry points.

#include "CJobObjectsApp.h"
#include "CJobObjectsModule.h"
#include "Registration.h"

#include <windows.h>
#include <olectl.h>

namespace {
constinit CJobObjectsApp app;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(instance);
        return app.InitInstance(instance);
    }
    if (reason == DLL_PROCESS_DETACH && !processEnds)
        app.ExitInstance();
    return TRUE;
}

STDAPI DllCanUnloadNow() {
    return TheModule().LockCount() == 0 ? S_OK : S_FALSE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
    return TheModule().GetClassObject(classId, iid, object);
}

STDAPI DllRegisterServer() {
    return RegisterLibrary();
}

STDAPI DllUnregisterServer() {
    return UnregisterLibrary();
}
