#pragma once

#include "components/textbundle/Catalogue.h"

#include "orv/sync/Mutex.h"
#include "platform/files.h"

#include <functional>
#include <map>
#include <string>

namespace orv::components::textbundle {

/// The catalogues that this process has read, each once for all its bundles.
///
/// Threads: any number.
class Catalogues {
public:
    /// Those of the process, for as long as it lives.
    static Catalogues& instance();

    /// The catalogue in the file at `path`, read anew where the file has changed since the last
    /// time. Throws as Catalogue::read().
    Reference<const Catalogue> open(const String& path);

private:
    struct Read {
        Reference<const Catalogue> catalogue;
        orvcore::FileStamp stamp{};
        /// Whether a change after the reading is sure to show in the stamp.
        bool settled = false;
    };

    sync::Mutex m_lock{"orv::components::textbundle::Catalogues::m_lock"};
    std::map<std::u16string, Read, std::less<>> m_read;
};

} // namespace orv::components::textbundle
