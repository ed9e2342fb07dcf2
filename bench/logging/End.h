#pragma once

#include "bench/common/Case.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

/// \file
/// Where the entries of all loggers of the benchmark end.

namespace orv::bench {

/// What has happened to an entry when a synchronous call returns.
enum class Term {
    Memory, ///< it is in a block of memory
    Kernel, ///< it has gone to the system by write()
    Synced, ///< it is on the disk
};

/// Takes the bytes of entries, for loggers whose own files do not go where the term wants them.
class End {
public:
    End(Term term, const std::string& file) : m_term(term), m_block(1 << 20)
    {
        if (term == Term::Memory) return;
        m_file = ::open(file.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0644);
    }
    ~End()
    {
        if (m_file >= 0) ::close(m_file);
    }
    End(const End&) = delete;
    End& operator=(const End&) = delete;

    /// Takes a whole entry.
    void put(const char* bytes, std::size_t size)
    {
        ++m_entries;
        if (m_term != Term::Memory) {
            if (::write(m_file, bytes, size) != static_cast<ssize_t>(size)) std::abort();
            return;
        }
        if (m_used + size > m_block.size()) m_used = 0;
        std::memcpy(&m_block[m_used], bytes, size);
        m_used += size;
    }
    void flush()
    {
        if (m_term == Term::Synced && ::fdatasync(m_file) != 0) std::abort();
    }
    long entries() const noexcept { return m_entries; }

private:
    Term m_term;
    std::vector<char> m_block;
    std::size_t m_used = 0;
    int m_file = -1;
    long m_entries = 0;
};

/// What a logger is to be built like.
struct Plan {
    Term term;
    bool async;
    std::string file;
};

/// The text of each entry, and its length.
inline constexpr char TEXT[] = "request handled for client 10.2.3.4 ok..";
static_assert(sizeof TEXT == 41);

} // namespace orv::bench
