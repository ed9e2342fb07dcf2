// Processes draw numbered tickets from one roll: the roll is memory that they share, and a named
// semaphore lets one at a time draw. The program starts itself again for each of them.

#include <orv/Exception>
#include <orv/Reference>
#include <orv/String>
#include <orv/exec/Process>
#include <orv/ipc/SemaphoreR>
#include <orv/ipc/SharedMemory>

#include <cstdio>
#include <vector>

using namespace orv;

namespace {

constexpr int CUSTOMERS = 4;
constexpr int TICKETS = 1000; // for each

struct Roll {
    int next;
    int sum;
};

/// What a customer does. Both names are the parent's, so that two parents don't meet.
int draw(const char* name)
{
    ipc::SharedMemory memory(name, sizeof(Roll), 0, 0600);
    ipc::SemaphoreR turn(name, 1);
    auto* const roll = static_cast<Roll*>(memory.get());
    for (int i = 0; i < TICKETS; ++i) {
        turn.wait(); // comes back by itself if this process is killed
        const int ticket = roll->next + 1;
        roll->sum += ticket;
        roll->next = ticket;
        turn.signal();
    }
    return 0;
}

int sell(const String& program)
{
    String name(u"tickets-");
    name.append(String::valueOf(exec::Process::getCurrentID()));
    // Memory and semaphore vanish with the last process that has them open.
    const ipc::SharedMemory memory(name.getBytes(), sizeof(Roll), ipc::SharedMemory::CREATE, 0600);
    const ipc::SemaphoreR turn(name.getBytes(), 1);

    String line;
    line.format(u"\"{0}\" {1}", -1, program.getData(), name.getData());
    std::vector<Reference<exec::Process>> customers;
    for (int i = 0; i < CUSTOMERS; ++i) {
        customers.push_back(makeReference<exec::Process>(program.getData(), line.getData()));
    }
    for (const auto& customer : customers) {
        if (customer->join() != 0) return 1;
    }
    const auto* const roll = static_cast<const Roll*>(memory.get());
    const int last = CUSTOMERS * TICKETS;
    std::printf("%d tickets drawn, %s\n", roll->next,
                roll->sum == last * (last + 1) / 2 ? "each of them once" : "some twice");
    return 0;
}

} // namespace

int main(int count, char** words)
{
    try {
        return count > 1 ? draw(words[1]) : sell(words[0]);
    } catch (const Exception& exception) {
        std::printf("failed: 0x%08X\n", static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
