#pragma once

#include "AttributeText.h"

#include "common/text/QxLock.h"
#include "common/text/QxString.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A word of the job vocabulary and its database code.
struct CatalogueEntry {
    std::uint32_t dbId = 0; ///< a bit for page attributes and finishing options, a plain value for PDLs
    bool isDefault = false;
    QxString name; ///< as spelled in the file
};

/// Two page-attribute words that exclude each other, such as "Simplex" and "Duplex".
struct PageAttributePair {
    CatalogueEntry first;
    CatalogueEntry second;

    /// first if it is marked as the default, otherwise second.
    const CatalogueEntry& DefaultSide() const noexcept { return first.isDefault ? first : second; }
};

struct PaperName {
    bool isDefault = false;
    QxString name;
};

/// A paper size with all its names.
struct PaperSizeEntry {
    std::uint32_t dbId = 0;
    bool isDefault = false;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t xEpsilon = 0; ///< contract: read, but not used
    std::int32_t yEpsilon = 0; ///< contract: read, but not used
    std::vector<PaperName> names;

    /// The first name marked as the default; empty if none is.
    QxString DefaultName() const noexcept;
    /// "x,y".
    QxString Dimensions() const;
};

/// Orders texts by code units with A to Z lower-cased. Look-ups ignore case without a lower-cased copy.
struct LowerCaseLess {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
};

using CatalogueMap = std::map<QxString, CatalogueEntry, LowerCaseLess>;
using PaperNameMap = std::map<QxString, std::uint32_t, LowerCaseLess>;

/// The contents of the catalogue file.
struct CatalogueTables {
    CatalogueMap pageAttributes;
    std::vector<PageAttributePair> pageAttributePairs;
    PaperNameMap paperNames; ///< to the index in paperSizes
    std::vector<PaperSizeEntry> paperSizes;
    CatalogueMap finishingAttributes;
    CatalogueMap pdls;
};

/// Translates between the words of job contents and the database's codes.
///
/// Every operation first loads the tables unless an earlier load succeeded. Unknown words and codes are not
/// errors: they are logged and give 0, an empty text or the default entry. Thread-safe.
class JobAttributeCatalogue {
public:
    /// A paper as stored in records.
    struct Paper {
        QxString name;
        QxString dimensions;
    };
    /// The job-wide options among attribute words.
    struct JobOptions {
        QxString pdl;
        QxString finishing;
    };

    constexpr JobAttributeCatalogue() noexcept = default;
    JobAttributeCatalogue(const JobAttributeCatalogue&) = delete;
    JobAttributeCatalogue& operator=(const JobAttributeCatalogue&) = delete;
    ~JobAttributeCatalogue();

    /// Reads the catalogue file unless an earlier call succeeded. After a failure the tables contain the
    /// sections read so far, and the next call tries again.
    void EnsureLoaded();
    /// Frees the tables. Takes no lock: for unloading only, when no other thread can be in the library.
    void Unload() noexcept;

    /// 0 for an unknown name.
    std::uint32_t PaperDbIdFromName(std::wstring_view name);
    /// Removes the first paper word and returns its paper; without one, the default paper.
    Paper PaperFromAttributeWords(AttributeText::Words& words);
    /// False if the code is 0 or above the number of paper sizes: codes run 1, 2, 3 in the order of the file.
    bool PaperFromDbId(std::uint32_t dbId, Paper& paper);

    /// The OR of the words' codes.
    std::uint32_t AttributeMaskFromNames(std::wstring_view names);
    /// The words of a mask, pairs first; one side per pair, preferably the first.
    QxString AttributeNamesFromMask(std::uint32_t mask);
    /// Removes the page attributes from the words and returns them in the catalogue's spelling, one word per
    /// pair. With addDefaults, a pair without a word gives its default side.
    std::wstring NormalizePageAttributes(AttributeText::Words& words, bool addDefaults);

    std::uint32_t FinishingMaskFromNames(std::wstring_view names);
    QxString FinishingNamesFromMask(std::uint32_t mask);

    /// The default PDL's code for an unknown name.
    std::uint32_t PdlDbIdFromName(std::wstring_view name);
    /// The default PDL's name for an unknown code.
    QxString PdlNameFromDbId(std::uint32_t dbId);

    /// Removes and returns all finishing words and the first PDL word; without one, the default PDL.
    JobOptions JobOptionsFromAttributeWords(AttributeText::Words& words);

    /// Name of the first default entry in the map's order; empty if none.
    QxString DefaultEntryName(CatalogueMap CatalogueTables::* map);

private:
    class Access;

    bool FindPdl(std::wstring_view name, std::uint32_t& dbId);

    std::atomic<bool> m_loaded = false;
    std::unique_ptr<CatalogueTables>
        m_tables; // allocated by the first load: a map is not constant-initialised
    QxLock m_lock;
};

/// The process-wide catalogue; constant-initialised.
JobAttributeCatalogue& TheCatalogue() noexcept;
