#include "orv/collections/List.h"
#include "orv/collections/Set.h"

namespace orv::collections {

template class ConstIterator<Integer32>;
template class ConstIterator<Object>;
template class ConstIterator<String>;
template class Iterator<Integer32>;
template class Iterator<Object>;
template class Iterator<String>;
template class ConstListIterator<Object>;
template class ConstListIterator<String>;
template class ListIterator<Object>;
template class ListIterator<String>;

template class Collection<Integer32>;
template class Collection<Object>;
template class Collection<String>;
template class Set<Integer32>;
template class Set<String>;
template class List<Object>;
template class List<String>;

} // namespace orv::collections
