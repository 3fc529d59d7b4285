#include "ClassMap.h"

#include "JobObjects/contents/CCopyLineImpl.h"
#include "JobObjects/contents/CCopyLinesImpl.h"
#include "JobObjects/contents/CJobContentsImpl.h"
#include "JobObjects/frame/ComObject.h"
#include "JobObjects/printer/CLogicalPrinterImpl.h"
#include "JobObjects/printer/CWindowsPrintInfoImpl.h"
#include "JobObjects/records/CCopyJobImpl.h"
#include "JobObjects/records/CFaxJobImpl.h"
#include "JobObjects/records/CPolicyResultsImpl.h"
#include "JobObjects/records/CPrintJobImpl.h"
#include "JobObjects/records/CScanJobImpl.h"

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
