// Four threads look for primes in pieces of work that a queue hands out.

#include <orv/Object>
#include <orv/Reference>
#include <orv/exec/IRunnable>
#include <orv/exec/Thread>
#include <orv/quark/Implements>
#include <orv/sync/Condition>
#include <orv/sync/Lock>
#include <orv/sync/Mutex>

#include <cstdio>
#include <deque>
#include <vector>

using namespace orv;
using exec::Thread;

namespace {

constexpr int LIMIT = 10000;
constexpr int PIECE = 100;
constexpr int NO_MORE = -1;

/// The first numbers of pieces; take() waits for one.
class Queue {
public:
    void put(int piece)
    {
        const sync::Condition::Holder holder(m_condition);
        m_pieces.push_back(piece);
        m_condition.signal();
    }
    /// NO_MORE stays in the queue, so that every thread gets it.
    int take()
    {
        const sync::Condition::Holder holder(m_condition);
        while (m_pieces.empty()) m_condition.wait();
        const int piece = m_pieces.front();
        if (piece == NO_MORE) {
            m_condition.signal();
        } else {
            m_pieces.pop_front();
        }
        return piece;
    }

private:
    sync::Condition m_condition{"pieces"};
    std::deque<int> m_pieces;
};

/// What the threads share.
struct Search {
    Queue queue;
    sync::Mutex lock{"found"};
    std::vector<int> found;
};

bool isPrime(int number)
{
    for (int divisor = 2; divisor * divisor <= number; ++divisor) {
        if (number % divisor == 0) return false;
    }
    return number > 1;
}

class Seeker : public quark::Implements<Object, exec::IRunnable> {
public:
    explicit Seeker(Search& search) : m_search(search) {}

    void* run() override
    {
        for (int from = m_search.queue.take(); from != NO_MORE; from = m_search.queue.take()) {
            for (int number = from; number < from + PIECE; ++number) {
                if (!isPrime(number)) continue;
                const sync::Lock lock(m_search.lock);
                m_search.found.push_back(number);
            }
        }
        return nullptr;
    }

private:
    Search& m_search;
};

} // namespace

int main()
{
    Search search;
    std::vector<Reference<Thread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.push_back(makeReference<Thread>(makeReference<Seeker>(search).get()));
        threads.back()->start();
    }
    for (int piece = 0; piece < LIMIT; piece += PIECE) search.queue.put(piece);
    search.queue.put(NO_MORE);
    for (const auto& thread : threads) thread->join();
    std::printf("%zu primes below %d\n", search.found.size(), LIMIT);
    return 0;
}
