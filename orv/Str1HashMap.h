#pragma once

#include "orv/ComObject.h"
#include "orv/OwningArray.h"
#include "orv/Reference.h"
#include "orv/Str1.h"

#include <cstdint>

namespace orv {

/// A chained hash table from Str1 to `T`: Str1, Reference<ComObject> or void*.
///
///     Str1HashMap<void*> records(101, 0.75F);
///     records.put(Str1Copy(u"UTF-8"), &record, nullptr);
///     void* found = nullptr;
///     if (records.get(name, found)) { ... }
///
/// Keys share the buffers of the caller's texts; a key over memory that ends before the map goes in
/// as a Str1Copy. Long keys hash by a sample of at most 63 units.
///
/// Errors: put() throws OutOfMemoryException and leaves the map as it was.
///
/// Threads: one at a time for the map together with all texts that share buffers with its keys;
/// several may read while none writes, provided that each brings a key of its own and takes no
/// values of a map to Str1, which share their texts too.
template <class T>
class ORV_API Str1HashMap : public CoreAllocated {
    struct Entry;

public:
    /// What to give the constructor where nothing better is known.
    static constexpr std::int32_t DEFAULT_CAPACITY = 101;
    static constexpr float DEFAULT_LOAD = 0.75F;

    /// A place in the map, set up by iteratorInit().
    class KeyValueIterator {
        friend class Str1HashMap;

        const Str1HashMap* m_map = nullptr;
        std::int32_t m_modifications = 0;
        std::int32_t m_tables = 0;
        std::int32_t m_nextBucket = 0;
        const Entry* m_entry = nullptr;
    };

    /// Begins with `capacity` buckets, at least 1, and grows when `loadFactor` times as many keys
    /// are in.
    explicit Str1HashMap(std::int32_t capacity = DEFAULT_CAPACITY, float loadFactor = DEFAULT_LOAD);
    Str1HashMap(const Str1HashMap&) = delete;
    Str1HashMap& operator=(const Str1HashMap&) = delete;
    virtual ~Str1HashMap();

    /// Drops all entries and keeps the buckets. getSize() and isEmpty() keep their old answers, and
    /// growth goes on counting from the old size: for an empty map to count anew take a new one.
    virtual void clear();

    /// Whether there is an entry with that key.
    virtual bool containsKey(const Str1& key) const;

    /// Stores the value of `key` and returns true; leaves `value` alone where there is none.
    virtual bool get(const Str1& key, T& value) const;

    /// The number of entries put and not removed; clear() does not lower it.
    virtual std::int32_t getSize() const;

    /// Adds an entry, or changes the value of the one with that key and stores the old one in
    /// `*previous`, unless that is null.
    virtual void put(const Str1& key, const T& value, T* previous);

    /// Takes an entry out and stores its value in `*previous`, unless that is null.
    virtual void remove(const Str1& key, T* previous);

    // Iteration, in no particular order. A new key, a removal and clear() end it quietly, a new
    // value does not.

    virtual void iteratorInit(KeyValueIterator& iterator) const;
    virtual bool iteratorHasNext(KeyValueIterator& iterator) const;
    /// Stores where key and value of the next entry are, each unless its pointer is null. Stores
    /// nothing where iteratorHasNext() is false.
    virtual void iteratorNext(KeyValueIterator& iterator, const Str1** key, const T** value) const;

    bool isEmpty() const { return getSize() == 0; }

protected:
    /// Sets `out` to the form in which `key` is kept and looked up: here the key itself.
    virtual void normalizeKey(Str1& out, const Str1& key) const;

private:
    std::uint32_t getKeyHashCode(const Str1& key) const;
    void allocTable(std::int32_t capacity);
    void rehash();
    void deleteEntries();
    std::int32_t bucketOf(std::uint32_t hash) const noexcept;
    Entry*& head(std::int32_t bucket) const noexcept;
    Entry** find(const Str1& normalized, std::uint32_t hash) const;
    void toNextBucket(KeyValueIterator& iterator) const;

    std::int32_t m_size = 0;
    std::int32_t m_capacity = 0;
    float m_loadFactor;
    std::int32_t m_threshold = 0;
    OwningArray<Entry*> m_table;
    std::int32_t m_modifications = 0;
    std::int32_t m_tables = 0; ///< tables so far
};

/// The same with keys in lower case, as ORVToLowerW() maps them.
template <class T>
class ORV_API Str1HashMapLC : public Str1HashMap<T> {
public:
    using Str1HashMap<T>::Str1HashMap;
    ~Str1HashMapLC() override;

protected:
    void normalizeKey(Str1& out, const Str1& key) const override;
};

extern template class ORV_API Str1HashMap<Str1>;
extern template class ORV_API Str1HashMap<Reference<ComObject>>;
extern template class ORV_API Str1HashMap<void*>;
extern template class ORV_API Str1HashMapLC<Str1>;
extern template class ORV_API Str1HashMapLC<Reference<ComObject>>;
extern template class ORV_API Str1HashMapLC<void*>;

} // namespace orv
