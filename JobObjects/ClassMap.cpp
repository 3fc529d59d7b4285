#include "ClassMap.h"

#include "contents/CCopyLineImpl.h"
#include "contents/CCopyLinesImpl.h"
#include "contents/CJobContentsImpl.h"
#include "frame/ComObject.h"
#include "printer/CLogicalPrinterImpl.h"
#include "printer/CWindowsPrintInfoImpl.h"
#include "records/CCopyJobImpl.h"
#include "records/CFaxJobImpl.h"
#include "records/CPolicyResultsImpl.h"
#include "records/CPrintJobImpl.h"
#include "records/CScanJobImpl.h"

constexpr std::array<ClassMapEntry, ClassCount> ClassMap{{
    {&CLSID_CopyJob, L"CopyJob", false, CreateObject<CCopyJobImpl>},
    {&CLSID_CopyLine, L"CopyLine", false, CreateObject<CCopyLineImpl>},
    {&CLSID_CopyLines, L"CopyLines", false, CreateObject<CCopyLinesImpl>},
    {&CLSID_FaxJob, L"FaxJob", false, CreateObject<CFaxJobImpl>},
    {&CLSID_JobContents, L"JobContents", false, CreateObject<CJobContentsImpl>},
    {&CLSID_LogicalPrinter, L"LogicalPrinter", true, CreateAggregatableObject<CLogicalPrinterImpl>},
    {&CLSID_PolicyResults, L"PolicyResults", false, CreateObject<CPolicyResultsImpl>},
    {&CLSID_PrintJob, L"PrintJob", false, CreateObject<CPrintJobImpl>},
    {&CLSID_ScanJob, L"ScanJob", false, CreateObject<CScanJobImpl>},
    {&CLSID_WindowsPrintInfo, L"WindowsPrintInfo", false, CreateObject<CWindowsPrintInfoImpl>},
}};
