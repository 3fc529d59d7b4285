#include "tests/support/RegisteredKeys.h"

const std::vector<RegisteredClass>& RegisteredClasses() {
    static const std::vector<RegisteredClass> classes = {
        {L"CopyJob", L"{D0166F63-1697-4253-80C7-46CC2F5C08AE}"},
        {L"CopyLine", L"{B277E8AC-06C2-4643-A78C-34A04147E8D5}"},
        {L"CopyLines", L"{409471F5-F3EC-4A82-8E28-D87B45E713CF}"},
        {L"FaxJob", L"{75700FBE-59DA-49D0-BBCF-05F57D6313EA}"},
        {L"JobContents", L"{C9C5F25D-4220-4ED0-813F-A3AACCA825C6}"},
        {L"LogicalPrinter", L"{572F1D05-1E2D-49F9-AD75-58D16DA32DEC}"},
        {L"PolicyResults", L"{B3355079-0AAB-4683-8EE5-E22DC82B9500}"},
        {L"PrintJob", L"{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}"},
        {L"ScanJob", L"{D970D128-65FA-4574-9A89-07A680126CBE}"},
        {L"WindowsPrintInfo", L"{19CA5C2A-D9EF-42D3-B393-F234BE10FCFA}"},
    };
    return classes;
}

void AddAppId(RegistryTree& tree) {
    tree[L"AppID"];
    tree[L"AppID\\" + AppId];
    tree[L"AppID\\" + AppId + L"|"] = L"JobObjects";
    tree[L"AppID\\" + AppId + L"|DllSurrogate"] = L"";
    tree[L"AppID\\Tarnwick.DLL"];
    tree[L"AppID\\Tarnwick.DLL|AppID"] = AppId;
}

void AddClass(RegistryTree& tree, const RegisteredClass& of, const std::wstring& modulePath) {
    const std::wstring description = std::wstring(of.name) + L" Class";
    const std::wstring progId = std::wstring(L"Corvane.") + of.name;
    tree[progId + L".1"];
    tree[progId + L".1|"] = description;
    tree[progId + L".1\\CLSID"];
    tree[progId + L".1\\CLSID|"] = of.classId;
    tree[progId];
    tree[progId + L"|"] = description;
    tree[progId + L"\\CLSID"];
    tree[progId + L"\\CLSID|"] = of.classId;
    tree[progId + L"\\CurVer"];
    tree[progId + L"\\CurVer|"] = progId + L".1";
    const std::wstring key = std::wstring(L"CLSID\\") + of.classId;
    tree[L"CLSID"];
    tree[key];
    tree[key + L"|"] = description;
    tree[key + L"|AppID"] = AppId;
    tree[key + L"\\ProgID"];
    tree[key + L"\\ProgID|"] = progId + L".1";
    tree[key + L"\\VersionIndependentProgID"];
    tree[key + L"\\VersionIndependentProgID|"] = progId;
    tree[key + L"\\Programmable"];
    tree[key + L"\\InprocServer32"];
    tree[key + L"\\InprocServer32|"] = modulePath;
    tree[key + L"\\InprocServer32|ThreadingModel"] = L"Apartment";
    tree[key + L"\\TypeLib"];
    tree[key + L"\\TypeLib|"] = TypeLibraryId;
}

RegistryTree ExpectedKeys(const std::wstring& modulePath) {
    RegistryTree tree;
    AddAppId(tree);
    for (const RegisteredClass& each : RegisteredClasses())
        AddClass(tree, each, modulePath);
    return tree;
}
