#pragma once

/// Base URI of every record's "xmlns"; the record appends its path.
#define QX_XML_NAMESPACE_BASE L"http://schemas.corvane.example"
