#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"
#include "platform/orvcore.h"

namespace orv::exec {

/// A child process with pipes on its three standard streams.
///
///     Process sort(nullptr, u"sort -u");
///     sort.getOutputStream()->write(lines, length);
///     sort.endOutput();
///     ... read sort.getInputStream() to its end ...
///     const std::int32_t exitCode = sort.join();
///
/// A pipe holds some 64 KiB. A child that writes more to its standard error than that stands still
/// until somebody reads it, even while its standard output is being read: read the two on two
/// threads, each with a stream taken beforehand. For the same reason read before join().
///
/// The child inherits no other descriptor, an empty signal mask and the default SIGPIPE. A process
/// that nobody joins runs on when the object is gone; its pipes are closed then, as soon as nobody
/// holds their streams.
///
/// Threads: the object is driven from one thread at a time, each stream too.
class ORV_API Process : public Object {
public:
    /// Starts a program. Both slashes separate in paths.
    ///
    /// `program` is its path, or null: then the first word of `commandLine`, found on PATH.
    /// `commandLine` is cut into words at blanks; double quotes keep a word together. Its first
    /// word is what the program is told as its own name; null tells just `program`.
    /// `workingDirectory` is where it starts, null for the folder of this process.
    /// `environment` is a list of NAME=VALUE that null ends; null for that of this process.
    /// `flags` is 0.
    ///
    /// Throws ResultException with the code of the system, such as 0x80070002 for a program that
    /// is not there and 0x80070005 for one that may not be run.
    explicit Process(const char16_t* program, const char16_t* commandLine = nullptr,
                     const char16_t* workingDirectory = nullptr,
                     const char16_t* const* environment = nullptr, std::uint32_t flags = 0);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() noexcept(false) override;

    /// Waits for the end of the child and gives its exit code: 128 plus the signal where a signal
    /// ended it, -1 where the host ignores SIGCHLD and the code is lost.
    ///
    /// Throws IllegalStateException "process already joined" the second time, and ResultException
    /// "process join failed" with nothing changed.
    std::int32_t join();

    /// Joins a child that has ended and says whether it did; never waits. False for a failure of
    /// the system too. Throws "process already joined" where it is.
    bool tryJoin();

    /// The exit code of a joined process. Throws IllegalStateException "process has not been
    /// joined", also when the child ended long ago.
    std::int32_t getExitCode() const;

    /// Not offered: always throws ResultException with E_NOT_AVAILABLE.
    std::uint32_t getID() const;

    /// The identifier of the calling process.
    static std::uint32_t getCurrentID() noexcept;

    /// What the child writes to its standard output; the same object each time.
    ///
    /// close() on this and the other two has no effect: a pipe is closed with the last reference
    /// on its stream, one of which this object holds.
    Reference<io::InputStream> getInputStream();

    /// What the child reads from its standard input. Writing to a child that has ended throws
    /// ResultException.
    Reference<io::OutputStream> getOutputStream();

    /// What the child writes to its standard error.
    Reference<io::InputStream> getErrorStream();

    /// Closes the child's standard input, so that the child reads its end. Later writes throw
    /// ResultException; calling it again does nothing.
    void endOutput();

private:
    void checkJoinable() const;

    ORVHandle m_handle = ORV_NO_HANDLE;
    ORVStandardHandles m_pipes{ORV_NO_HANDLE, ORV_NO_HANDLE, ORV_NO_HANDLE};
    std::int32_t m_exitCode = -1;
    Reference<io::InputStream> m_inputStream;
    Reference<io::OutputStream> m_outputStream;
    Reference<io::InputStream> m_errorStream;
};

} // namespace orv::exec
