#include "Sweep.h"

#include "orv/Class.h"
#include "orv/ClassManager.h"
#include "orv/ipc/Semaphore.h"
#include "orv/sync/Mutex.h"
#include "tests/support/SharedNames.h"

namespace orv::test {

namespace {

/// An object between processes; its state is the number of files that it has.
struct Shared {
    std::string name = uniqueName();
    Reference<ipc::Semaphore> semaphore = Reference<ipc::Semaphore>();

    std::string state() const { return std::to_string(filesOf(name)); }
};

void addLocks(std::vector<Row>& rows)
{
    rows.push_back(product("Mutex", [] { return makeReference<sync::Mutex>() ? 1 : 0; }));
    rows.push_back(row(
        "ipc::Semaphore", [] { return Shared(); },
        [](Shared& it) { it.semaphore = makeReference<ipc::Semaphore>(it.name.c_str(), 1u); }));
}

void addClasses(std::vector<Row>& rows)
{
    rows.push_back(product("createInstance", [] {
        const Class* const known = Class::forName(u"orv::text::charset::BTCASCII");
        return Reference<Object>(known->createInstance()) ? 1 : 0;
    }));
    const auto registering = [] {
        ClassManager::getInstance()->registerClass(u"orv::test::Row", &typeid(Row), nullptr);
        return String(Class::forName(u"orv::test::Row")->getName());
    };
    rows.push_back(product("registerClass", registering, Promise::OnlyFresh));
}

} // namespace

std::vector<Row> objectRows()
{
    std::vector<Row> rows;
    addLocks(rows);
    addClasses(rows);
    return rows;
}

} // namespace orv::test
