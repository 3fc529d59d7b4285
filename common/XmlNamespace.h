#pragma once

/// Base of every record's "xmlns" attribute; the record's path, such as "/OutputManagement/PrintJob",
/// follows. It names the vocabulary only, nothing is fetched from it.
inline constexpr wchar_t XmlNamespaceBase[] = L"http://schemas.corvane.example";
