#include "components/textbundle/Catalogues.h"

#include "orv/Failure.h"
#include "orv/sync/Lock.h"

#include <chrono>

namespace orv::components::textbundle {

namespace {

/// Whether the system's clock for files has moved on since the change that `stamp` tells of.
bool isSettled(const orvcore::FileStamp& stamp)
{
    using namespace std::chrono;
    const nanoseconds longestStep = seconds(2);
    const nanoseconds now = system_clock::now().time_since_epoch();
    return nanoseconds(stamp.changed) + longestStep < now;
}

} // namespace

Catalogues& Catalogues::instance()
{
    // Never destroyed: a thread may open a bundle while the process ends.
    static auto* const catalogues = new Catalogues;
    return *catalogues;
}

Reference<const Catalogue> Catalogues::open(const String& path)
{
    const std::u16string name(path.getData());
    const sync::Lock lock(m_lock);
    orvcore::FileStamp stamp{};
    if (const Result result = orvcore::fileStamp(name.c_str(), &stamp); failed(result)) {
        m_read.erase(name);
        throwResult(result);
    }
    Read& read = m_read[name];
    if (read.catalogue == nullptr || !read.settled || stamp != read.stamp) {
        // The stamp is older than what is read, so a change in between is seen the next time.
        const bool settled = isSettled(stamp);
        read = {Catalogue::read(path, {}), stamp, settled};
    }
    return read.catalogue;
}

} // namespace orv::components::textbundle
