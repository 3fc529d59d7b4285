#include "CatalogueStub.h"

#include "JobObjects/contents/CatalogueFile.h"
#include "common/log/QxLogger.h"

#include <atomic>
#include <utility>

namespace {

struct File {
    std::wstring text = CatalogueStub::DefaultText();
    bool readable = true;
    std::atomic<int> reads = 0;
};

File& TheFile() {
    static File file;
    return file;
}

} // namespace

bool ReadCatalogueFile(std::wstring& text) {
    File& file = TheFile();
    ++file.reads;
    if (file.readable)
        text = file.text;
    else
        LogError(L"Failed to load job attributes xml file '%ls'. %ls", L"C:\\x\\JobAttributes.xml", L"Gone.");
    return file.readable;
}

CatalogueStub::CatalogueStub(std::wstring text) {
    TheFile().reads = 0;
    SetText(std::move(text));
}

CatalogueStub::CatalogueStub() {
    TheFile().reads = 0;
    TheFile().readable = false;
}

CatalogueStub::~CatalogueStub() {
    SetText(DefaultText());
}

void CatalogueStub::SetText(std::wstring text) {
    TheFile().text = std::move(text);
    TheFile().readable = true;
}

int CatalogueStub::Reads() const {
    return TheFile().reads;
}

const std::wstring& CatalogueStub::DefaultText() {
    static const std::wstring text = LR"(<?xml version="1.0"?>
<JobAttributes>
  <PaperSizes>
    <PaperSize DbId="1" Default="true">
      <PaperDimensions><X>2100</X><Y>2970</Y><XEpsilon>20</XEpsilon><YEpsilon>30</YEpsilon></PaperDimensions>
      <PaperNames>
        <PaperName Default="false">ISO A4</PaperName>
        <PaperName Default="true">A4</PaperName>
      </PaperNames>
    </PaperSize>
    <PaperSize DbId="2" Default="false">
      <PaperDimensions><X>2159</X><Y>2794</Y></PaperDimensions>
      <PaperNames>
        <PaperName Default="true">Letter</PaperName>
        <PaperName Default="false">8.5x11</PaperName>
      </PaperNames>
    </PaperSize>
    <PaperSize DbId="3" Default="false">
      <PaperDimensions><X>2970</X><Y>4200</Y></PaperDimensions>
      <PaperNames><PaperName Default="true">A3</PaperName></PaperNames>
    </PaperSize>
  </PaperSizes>
  <PageAttributePairs>
    <PageAttributePair>
      <First DbId="1" Default="true">Simplex</First>
      <Second DbId="2" Default="false">Duplex</Second>
    </PageAttributePair>
    <PageAttributePair>
      <First DbId="4" Default="true">B&amp;W</First>
      <Second DbId="8" Default="false">Color</Second>
    </PageAttributePair>
  </PageAttributePairs>
  <PageAttributes>
    <PageAttribute DbId="16" Default="false">TonerSave</PageAttribute>
    <PageAttribute DbId="32" Default="false">Draft</PageAttribute>
  </PageAttributes>
  <FinishingAttributes>
    <FinishingAttribute DbId="1" Default="false">Staple</FinishingAttribute>
    <FinishingAttribute DbId="2" Default="false">Punch</FinishingAttribute>
    <FinishingAttribute DbId="4" Default="false">Fold</FinishingAttribute>
  </FinishingAttributes>
  <Pdls>
    <Pdl DbId="1" Default="false">PCL</Pdl>
    <Pdl DbId="2" Default="true">PostScript</Pdl>
    <Pdl DbId="3" Default="false">NT EMF 1.008</Pdl>
  </Pdls>
</JobAttributes>
)";
    return text;
}
