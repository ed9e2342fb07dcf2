#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace orv::text::charset::internal {

/// Takes elements one to one as long as `excess` gives 0 for them, storing what `map` makes of
/// them, as long as `mappedExcess` gives 0 for that. Ends at the first other element, or where
/// input or output do.
///
/// Written for compilers to vectorise: a block of elements at a time are tested and mapped without
/// a branch, through a local block because bytes may alias everything.
template <class Run, class Excess, class Map, class MappedExcess>
inline void takePlain(Run& run, Excess excess, Map map, MappedExcess mappedExcess)
{
    using Out = std::remove_pointer_t<decltype(run.out)>;
    constexpr std::ptrdiff_t BLOCK = 32;

    const auto* in = run.in;
    Out* out = run.out;
    std::ptrdiff_t left = std::min(run.inLeft(), run.outLeft());
    for (; left >= BLOCK; left -= BLOCK, in += BLOCK, out += BLOCK) {
        decltype(excess(*in)) bad = 0;
        for (std::ptrdiff_t i = 0; i < BLOCK; ++i) bad = bad | excess(in[i]);
        if (bad != 0) break;
        Out block[BLOCK];
        for (std::ptrdiff_t i = 0; i < BLOCK; ++i) block[i] = map(in[i]);
        decltype(mappedExcess(*block)) badMapped = 0;
        for (const Out mapped : block) badMapped = badMapped | mappedExcess(mapped);
        if (badMapped != 0) break;
        std::memcpy(out, block, sizeof block);
    }
    for (; left > 0 && excess(*in) == 0; --left) {
        const Out mapped = map(*in);
        if (mappedExcess(mapped) != 0) break;
        *out++ = mapped;
        ++in;
    }
    run.in = in;
    run.out = out;
}

template <class Run, class Excess, class Map>
inline void takePlain(Run& run, Excess excess, Map map)
{
    takePlain(run, excess, map, [](auto) { return 0; });
}

} // namespace orv::text::charset::internal
