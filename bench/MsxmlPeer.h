#pragma once

#include "Records.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include <msxml2.h>

/// MSXML 6, the system's XML library, through its COM interfaces.
namespace MsxmlPeer {

ComPtr<IXMLDOMDocument> NewDocument();
void Load(IXMLDOMDocument* document, BSTR text);
/// Loads the document and reads every value.
JobValues Read(IXMLDOMDocument* document, BSTR text);
/// The loaded document's text.
UniqueBstr Write(IXMLDOMDocument* document);
/// Builds the record's document from scratch and returns its text.
UniqueBstr Write(IXMLDOMDocument* document, const JobValues& values);

} // namespace MsxmlPeer
