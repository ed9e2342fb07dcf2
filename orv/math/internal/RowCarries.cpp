#include "orv/math/internal/RowCarries.h"

#include <algorithm>
#include <cstring>

// Row i adds a * b[i] at byte i. With n the size of `a`, let W be the n bytes of the sum above its
// byte i before row i, L the low n bytes of a * b[i] and H the byte above them. The row makes
// W + L, whose carry c out of the n bytes belongs at byte i + n; it is added at byte i + 1 instead,
// unless this is the last row. So the product is the exact one, with c taken off at i + n and put
// in at i + 1 for each row but the last. W of the next row is the n bytes H : (W + L) / 256.
//
// Only the carries are needed, and they depend on the top of W and L alone, but for the rare sums
// that come so near to the limit that the neglected bytes decide.

namespace orv::math::internal {

namespace {

std::size_t wordsOf(std::int32_t bytes) noexcept
{
    return (static_cast<std::size_t>(bytes) + BYTES_PER_WORD - 1) / BYTES_PER_WORD;
}

unsigned char byteAt(const Word* words, std::int32_t index) noexcept
{
    return reinterpret_cast<const unsigned char*>(words)[index];
}

Word loadWord(const unsigned char* place) noexcept
{
    Word word;
    std::memcpy(&word, place, sizeof word);
    return word;
}

void storeWord(unsigned char* place, Word word) noexcept
{
    std::memcpy(place, &word, sizeof word);
}

bool losesNothing(std::int32_t size, std::int32_t otherSize) noexcept
{
    return size == 1 || otherSize <= 2;
}

/// Stores the carry of row i at carries[i + 1], for each row but the last. `a` has up to one word:
/// W, L and the carry are moved to the top of a word, and what is left of lower bytes below them
/// changes no carry.
void findInWord(unsigned char* carries, Word a, std::int32_t size, const Word* b,
                std::int32_t rows) noexcept
{
    const int unused = 8 * (static_cast<int>(BYTES_PER_WORD) - size);
    const Word top = a << unused;
    Word window = 0;
    Word carry = 0;
    for (std::int32_t i = 0; i + 1 < rows; ++i) {
        const WideWord product = WideWord{top} * byteAt(b, i);
        const Word sum = window + static_cast<Word>(product);
        const Word whole = sum + (carry << unused);
        carry = static_cast<Word>(sum < window) | static_cast<Word>(whole < sum);
        carries[i + 1] = static_cast<unsigned char>(carry);
        window = (whole >> 8) + (highWord(product) << 56);
    }
}

/// The same from the top seven bytes of a longer `a`; false where they do not decide. W and L lie
/// in the upper seven bytes of a word. In units of the lowest of these the true L is less than 255
/// above the one taken, the true W less than 3, and a carry that comes in adds less than 1.
bool findByTop(unsigned char* carries, const Word* a, std::int32_t size, const Word* b,
               std::int32_t rows) noexcept
{
    constexpr Word unit = 256;
    constexpr Word sure = ~Word{0} - 512 * unit;
    constexpr Word topByte = Word{0xFF} << 56;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(a);
    const Word top = loadWord(bytes + size - BYTES_PER_WORD) / unit;
    Word window = 0;
    bool undecided = false;
    for (std::int32_t i = 0; i + 1 < rows; ++i) {
        const Word product = top * byteAt(b, i); // H in the highest byte, L below
        const Word low = product * unit;
        const Word sum = window + low;
        carries[i + 1] = sum < low;
        undecided |= low > sure;
        undecided |= sum > sure;
        window = sum / 256 + (product & topByte);
    }
    return !undecided;
}

/// Row after row, eight bytes at a time.
void multiplyByRows(Word* product, std::size_t count, const Word* a, std::int32_t size,
                    const Word* b, std::int32_t rows) noexcept
{
    const std::size_t whole = static_cast<std::size_t>(size) / BYTES_PER_WORD;
    const int restBits = 8 * (size % static_cast<int>(BYTES_PER_WORD));
    const Word restMask = (Word{1} << restBits) - 1;
    auto* row = reinterpret_cast<unsigned char*>(product);
    std::fill_n(product, count, Word{0});

    Word sumCarry = 0;
    for (std::int32_t i = 0; i < rows; ++i, ++row) {
        const Word factor = byteAt(b, i);
        Word productCarry = 0;
        unsigned char* place = row;
        for (std::size_t k = 0; k < whole; ++k, place += BYTES_PER_WORD) {
            const WideWord term = WideWord{a[k]} * factor + productCarry;
            productCarry = highWord(term);
            storeWord(place, addWithCarry(loadWord(place), static_cast<Word>(term), sumCarry));
        }
        if (restBits != 0) {
            const Word term = a[whole] * factor + productCarry;
            productCarry = term >> restBits;
            const Word there = loadWord(place);
            const Word sum = (there & restMask) + (term & restMask) + sumCarry;
            sumCarry = sum >> restBits;
            storeWord(place, (there & ~restMask) | (sum & restMask));
        }
        row[size] = static_cast<unsigned char>(productCarry);
    }
    row[size - 1] = static_cast<unsigned char>(row[size - 1] + sumCarry);
}

} // namespace

std::size_t rowCarryScratch(std::int32_t size, std::int32_t otherSize) noexcept
{
    if (losesNothing(size, otherSize)) return 0;
    return wordsOf(otherSize) + wordsOf(size) + wordsOf(otherSize);
}

void loseRowCarries(Word* product, const Word* a, std::int32_t size, const Word* b,
                    std::int32_t otherSize, Word* scratch) noexcept
{
    if (losesNothing(size, otherSize)) return;
    const std::size_t others = wordsOf(otherSize);
    const std::size_t count = wordsOf(size) + others;
    auto* const carries = reinterpret_cast<unsigned char*>(scratch);
    carries[0] = 0;
    std::fill_n(carries + otherSize, others * BYTES_PER_WORD - static_cast<std::size_t>(otherSize),
                static_cast<unsigned char>(0));

    if (size <= static_cast<std::int32_t>(BYTES_PER_WORD)) {
        findInWord(carries, a[0], size, b, otherSize);
    } else if (!findByTop(carries, a, size, b, otherSize)) {
        multiplyByRows(product, count, a, size, b, otherSize);
        return;
    }
    if (significantWords(scratch, others) == 0) return;
    Word* const wrongPlace = scratch;
    Word* const rightPlace = scratch + others;
    const std::size_t first = static_cast<std::size_t>(size - 1) / BYTES_PER_WORD;
    std::fill(rightPlace + first, rightPlace + count, Word{0});
    std::memcpy(reinterpret_cast<unsigned char*>(rightPlace) + size - 1, carries,
                static_cast<std::size_t>(otherSize));
    addInto(product, count, wrongPlace, others);
    subtractFrom(product + first, count - first, rightPlace + first, count - first);
}

} // namespace orv::math::internal
