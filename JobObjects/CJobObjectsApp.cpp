#include "CJobObjectsApp.h"

#include "CJobObjectsModule.h"
#include "JobObjects/frame/ResourceStrings.h"
#include "common/LogRegistry.h"
#include "common/log/QxLogger.h"
#include "JobObjects/contents/JobAttributeCatalogue.h"

bool CJobObjectsApp::InitInstance(HINSTANCE instance) noexcept {
    TheModule().Initialize(instance);
    try {
        const QxString registryRoot(LoadResourceString(StringRegistryRoot));
        ConfigureLog(registryRoot.c_str(), HKEY_LOCAL_MACHINE, KEY_READ,
                     LoadResourceString(StringLogSourceName));
    } catch (...) {
        // Out of memory: the library works without a log.
    }
    return true;
}

void CJobObjectsApp::ExitInstance() noexcept {
    TheModule().Terminate();
    TheCatalogue().Unload();
    QxLogger::Instance().Close(); // last: the calls above may log
}
