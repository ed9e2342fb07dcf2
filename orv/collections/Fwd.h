#pragma once

namespace orv::collections {

template <class T>
class Collection;
template <class T>
class ConstIterator;
template <class T>
class ConstListIterator;
class IntegerHashMap;
template <class T>
class Iterator;
template <class T>
class List;
template <class T>
class ListIterator;
template <class K, class V>
class Map;
template <class K, class V>
struct MapEntry;
template <class T>
class Set;
class StringHashMap;
template <class T>
class TypedCursor;

namespace quark {

class AbstractCollection;
class AbstractList;
class AbstractListIterator;
class AbstractListSubList;
class AbstractMap;
class AbstractMapKeySet;
class AbstractMapValueCollection;
class AbstractSet;
class ArrayList;
class Collection;
class ConstIterator;
class ConstListIterator;
class ElementCursor;
class HashMap;
class HashMapEntry;
class HashMapEntrySet;
class HashMapIterator;
class HashSet;
class Iterator;
class LinkedList;
class List;
class ListIterator;
class Map;
class MapEntry;
class Set;

} // namespace quark

} // namespace orv::collections
