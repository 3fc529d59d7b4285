#include "ChildRecord.h"

#include <objbase.h>
#include <ole2.h>

HRESULT CreateByProgId(const wchar_t* progId, REFIID iid, void** object) noexcept {
    CLSID classId;
    ComPtr<IUnknown> created;
    HRESULT result = CLSIDFromProgID(progId, &classId);
    if (SUCCEEDED(result))
        result = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IID_IUnknown, created.PutVoid());
    if (SUCCEEDED(result))
        result = OleRun(created.Get());
    return SUCCEEDED(result) ? created->QueryInterface(iid, object) : result;
}
