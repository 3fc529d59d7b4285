#pragma once

#include <string>

/// Replaces the catalogue file in the unit tests. The default content, from which the process-wide
/// catalogue is loaded, is this small vocabulary:
///
/// Papers: 1 A4 (default; names "ISO A4", "A4"), 2 Letter ("Letter", "8.5x11"), 3 A3.
/// Pairs: Simplex 1 (default) / Duplex 2, B&W 4 (default) / Color 8. Page attributes: TonerSave 16,
/// Draft 32. Finishing: Staple 1, Punch 2, Fold 4. PDLs: PCL 1, PostScript 2 (default), NT EMF 1.008 3.
class CatalogueStub {
public:
    /// Sets the file's content until the stub goes out of scope.
    explicit CatalogueStub(std::wstring text);
    /// Makes the file unreadable: every read fails with the message of a missing file.
    CatalogueStub();
    ~CatalogueStub();
    CatalogueStub(const CatalogueStub&) = delete;
    CatalogueStub& operator=(const CatalogueStub&) = delete;

    void SetText(std::wstring text);
    /// Number of reads since the stub was created.
    int Reads() const;

    static const std::wstring& DefaultText();
};
