// Makes libFuzzer change records by elements. A quarter of the inputs, and those without elements, are
// changed by bytes.

#include "RecordEdits.h"

#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char* bytes, std::size_t size, std::size_t maxSize);

namespace {

std::string_view View(const unsigned char* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

/// Returns the text's size, or 0 if it does not fit.
std::size_t Store(const std::string& text, unsigned char* bytes, std::size_t maxSize) {
    if (text.size() > maxSize)
        return 0;
    std::memcpy(bytes, text.data(), text.size());
    return text.size();
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char* bytes, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    RecordEdits edits(View(bytes, size), seed, LLVMFuzzerMutate);
    bool edited = false;
    for (unsigned edit = seed % 4; edit > 0; --edit)
        edited = edits.Edit();
    const std::size_t newSize = edited ? Store(edits.Text(), bytes, maxSize) : 0;
    return newSize != 0 ? newSize : LLVMFuzzerMutate(bytes, size, maxSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const unsigned char* bytes, std::size_t size,
                                                 const unsigned char* other, std::size_t otherSize,
                                                 unsigned char* out, std::size_t maxSize, unsigned seed) {
    RecordEdits edits(View(bytes, size), seed, LLVMFuzzerMutate);
    return edits.Graft(View(other, otherSize)) ? Store(edits.Text(), out, maxSize) : 0;
}
