#include "orv/quark/ComponentExports.h"

#include "components/icodec/CharCodec.h"
#include "orv/quark/ClassRow.h"

#include <iterator>
#include <utility>

namespace orv::components::icodec {

namespace {

template <std::size_t... ROWS>
quark::ClassData* classes(std::index_sequence<ROWS...>)
{
    static quark::ClassData rows[] = {quark::classRow<CodecOf<ROWS>>(codePages[ROWS].classId)...,
                                      quark::endOfClasses()};
    return rows;
}

} // namespace

} // namespace orv::components::icodec

orv::quark::ClassData* orv::quark::componentClasses()
{
    using namespace components::icodec;
    return classes(std::make_index_sequence<std::size(codePages)>());
}
