#pragma once

/// The base URI of the "xmlns" attribute of all records; a record's path follows it.
#define QX_XML_NAMESPACE_BASE L"http://schemas.corvane.example"
