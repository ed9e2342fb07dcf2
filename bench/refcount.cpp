#include "orv/Object.h"
#include "orv/Reference.h"

#include "bench/common/Case.h"

#include <atomic>
#include <memory>
#include <vector>

#if __has_include(<QExplicitlySharedDataPointer>)
#include <QExplicitlySharedDataPointer>
#include <QSharedPointer>
#endif
#if __has_include(<Poco/AutoPtr.h>)
#include <Poco/AutoPtr.h>
#include <Poco/RefCountedObject.h>
#include <Poco/SharedPtr.h>
#endif
#if __has_include(<boost/smart_ptr/intrusive_ptr.hpp>)
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#endif

// Counted pointers: copy and drop, alone and by two threads on one object; create and destroy.

namespace orv::bench {
namespace {

/// Registers all cases for pointers that `make` gives.
template <class Make>
void addPointer(const char* peer, Make make)
{
    using Pointer = decltype(make());
    addCase("copy_drop/1_thread", peer, [make](benchmark::State& state) {
        Pointer pointer = make();
        for (auto _ : state) {
            benchmark::DoNotOptimize(pointer);
            Pointer copy(pointer);
            benchmark::DoNotOptimize(copy);
        }
    });
    addCase("copy_drop/2_threads_same_object", peer,
            [make](benchmark::State& state) {
                static const Pointer shared = make();
                for (auto _ : state) {
                    Pointer copy(shared);
                    benchmark::DoNotOptimize(copy);
                }
            })
        ->Threads(2)
        ->UseRealTime();
    addCase("create_destroy/1_thread", peer, [make](benchmark::State& state) {
        for (auto _ : state) {
            Pointer pointer = make();
            benchmark::DoNotOptimize(pointer);
        }
    });
    addCase("array_of_1000_copy/per_pointer", peer, [make](benchmark::State& state) {
        std::vector<Pointer> pointers;
        for (int i = 0; i < 1000; ++i) pointers.push_back(make());
        for (auto _ : state) {
            std::vector<Pointer> copies(pointers);
            benchmark::DoNotOptimize(copies);
        }
        state.SetItemsProcessed(state.iterations() * 1000);
    });
}

struct Plain {
    virtual ~Plain() = default;
    int value = 1;
};

struct Counted : Object {
    int value = 1;
};

/// The least that a count for several threads costs: one locked addition, one locked subtraction.
class Limit {
public:
    Limit() : m_block(new Block) {}
    Limit(const Limit& other) : m_block(other.m_block)
    {
        m_block->count.fetch_add(1, std::memory_order_relaxed);
    }
    Limit& operator=(const Limit&) = delete;
    ~Limit()
    {
        if (m_block->count.fetch_sub(1, std::memory_order_acq_rel) == 1) delete m_block;
    }

private:
    struct Block {
        std::atomic<int> count{1};
        int value = 1;
    };
    Block* m_block;
};

void addPeers()
{
    addPointer("std_shared_ptr", [] { return std::make_shared<Plain>(); });
#if __has_include(<QExplicitlySharedDataPointer>)
    struct QtData : QSharedData {
        virtual ~QtData() = default;
        int value = 1;
    };
    addPointer("qt_shared_pointer", [] { return QSharedPointer<Plain>::create(); });
    addPointer("qt_shared_data", [] { return QExplicitlySharedDataPointer<QtData>(new QtData); });
#endif
#if __has_include(<Poco/AutoPtr.h>)
    struct PocoData : Poco::RefCountedObject {
        int value = 1;
    };
    addPointer("poco_autoptr", [] { return Poco::AutoPtr<PocoData>(new PocoData); });
    addPointer("poco_sharedptr", [] { return Poco::SharedPtr<Plain>(new Plain); });
#endif
#if __has_include(<boost/smart_ptr/intrusive_ptr.hpp>)
    struct Intrusive : boost::intrusive_ref_counter<Intrusive, boost::thread_safe_counter> {
        virtual ~Intrusive() = default;
        int value = 1;
    };
    addPointer("boost_intrusive", [] { return boost::intrusive_ptr<Intrusive>(new Intrusive); });
#endif
    addPointer("limit_atomic", [] { return Limit(); });
}

const bool registered = [] {
    addPointer(LIBRARY, [] { return makeReference<Counted>(); });
    addPeers();
    return true;
}();

} // namespace
} // namespace orv::bench
