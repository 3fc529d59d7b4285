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
    QxString name; ///< as the file writes it
};

/// Two page-attribute words that exclude each other, such as "Simplex" and "Duplex".
struct PageAttributePair {
    CatalogueEntry first;
    CatalogueEntry second;

    /// First if it is marked as the default, otherwise second.
    const CatalogueEntry& DefaultSide() const noexcept { return first.isDefault ? first : second; }
};

struct PaperName {
    bool isDefault = false;
    QxString name;
};

/// A paper size with all the names it goes by.
struct PaperSizeEntry {
    std::uint32_t dbId = 0;
    bool isDefault = false;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t xEpsilon = 0; ///< kept for components that compare measured sizes; no look-up uses it
    std::int32_t yEpsilon = 0;
    std::vector<PaperName> names;

    /// The first name marked as the default; empty if none is.
    QxString DefaultName() const noexcept;
    /// "x,y".
    QxString Dimensions() const;
};

/// Orders texts by the code units of their lower-cased form (A to Z only). Look-ups thus ignore case
/// without a lower-cased copy of the sought word.
struct LowerCaseLess {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
};

using CatalogueMap = std::map<QxString, CatalogueEntry, LowerCaseLess>;
using PaperNameMap = std::map<QxString, std::uint32_t, LowerCaseLess>;

/// What the catalogue file defines.
struct CatalogueTables {
    CatalogueMap pageAttributes;
    std::vector<PageAttributePair> pageAttributePairs;
    PaperNameMap paperNames; ///< name to the index of its entry in paperSizes
    std::vector<PaperSizeEntry> paperSizes;
    CatalogueMap finishingAttributes;
    CatalogueMap pdls;
};

/// The dictionary between the words of job contents and the codes that the database stores.
///
/// Every operation loads the tables first if that has not succeeded yet. No operation fails: a word or a
/// code that is not defined is logged, and 0, an empty text or the default entry is returned. Any thread may
/// call any operation.
class JobAttributeCatalogue {
public:
    /// A paper as a record keeps it.
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

    /// Reads the catalogue file unless an earlier call has fully succeeded. After a failure the tables hold
    /// what was read so far, and the next call tries again.
    void EnsureLoaded();
    /// Drops the tables. For the unloading of the module, when no other thread can be inside: takes no lock.
    void Unload() noexcept;

    /// The code of the paper size with this name, or 0.
    std::uint32_t PaperDbIdFromName(std::wstring_view name);
    /// The paper that the first paper word names; the word is removed. Without one, the default paper.
    Paper PaperFromAttributeWords(AttributeText::Words& words);
    /// Finds the paper size that a database code stands for. False when the code is 0 or above the number of
    /// paper sizes: codes run 1, 2, 3 in the order of the file.
    bool PaperFromDbId(std::uint32_t dbId, Paper& paper);

    /// The OR of the words' codes.
    std::uint32_t AttributeMaskFromNames(std::wstring_view names);
    /// The words of a mask, pairs first; of a pair at most one side, the first preferred.
    QxString AttributeNamesFromMask(std::uint32_t mask);
    /// The page attributes among the words, in the catalogue's wording and one word a pair; they are removed
    /// from the list. A pair without a word gives its default side if addDefaults is set.
    std::wstring NormalizePageAttributes(AttributeText::Words& words, bool addDefaults);

    std::uint32_t FinishingMaskFromNames(std::wstring_view names);
    QxString FinishingNamesFromMask(std::uint32_t mask);

    /// An unknown name gives the default PDL's code.
    std::uint32_t PdlDbIdFromName(std::wstring_view name);
    /// An unknown code gives the default PDL's name.
    QxString PdlNameFromDbId(std::uint32_t dbId);

    /// All finishing words and the first PDL word (the default PDL without one), removed from the list.
    JobOptions JobOptionsFromAttributeWords(AttributeText::Words& words);

    /// Name of the first entry, in the map's order, that is marked as the default; empty if none is.
    QxString DefaultEntryName(CatalogueMap CatalogueTables::*map);

private:
    class Access;

    bool FindPdl(std::wstring_view name, std::uint32_t& dbId);

    std::atomic<bool> m_loaded = false;
    std::unique_ptr<CatalogueTables> m_tables; // made by the first load: a map needs construction at run time
    QxLock m_lock;
};

/// The catalogue that all records of the process share. It needs no construction at load.
JobAttributeCatalogue& TheCatalogue() noexcept;
