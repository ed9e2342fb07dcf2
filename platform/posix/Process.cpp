#include "platform/files.h"

#include "platform/posix/internal/NarrowList.h"
#include "platform/posix/internal/NativePath.h"
#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/Record.h"

#include <cerrno>
#include <climits>
#include <cstdio>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvcore {
namespace {

constexpr std::int32_t codeLost = -1;
constexpr std::int32_t killedBySignal = 128;

struct ProcessRecord {
    pid_t process = 0;
    ProcessRecord* next = nullptr; ///< among the detached
};

// Children that nobody waits for stay as dead entries in the system until they are waited for all
// the same, which the next operation on a process does.
constinit RawLock s_detachedLock;
constinit ProcessRecord* s_detached = nullptr;

std::int32_t exitCodeOf(int status) noexcept
{
    return WIFSIGNALED(status) ? killedBySignal + WTERMSIG(status) : WEXITSTATUS(status);
}

/// Whether the child has ended; `options` may have WNOHANG.
bool awaitEnd(pid_t process, int options, std::int32_t* exitCode) noexcept
{
    int status = 0;
    pid_t ended = 0;
    do {
        ended = ::waitpid(process, &status, options);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0) return false;
    *exitCode = ended < 0 ? codeLost : exitCodeOf(status);
    return true;
}

void reapDetached() noexcept
{
    const RawGuard guard(s_detachedLock);
    ProcessRecord** link = &s_detached;
    while (ProcessRecord* const record = *link) {
        std::int32_t exitCode = 0;
        if (!awaitEnd(record->process, WNOHANG, &exitCode)) {
            link = &record->next;
            continue;
        }
        *link = record->next;
        destroyRecord(record);
    }
}

/// A pipe between parent and child. Its ends lie above the standard descriptors, so that putting
/// one into its place in the child never hits another.
class Pipe {
public:
    Pipe() noexcept = default;
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        for (const int end : m_ends) closeEnd(end);
    }

    ORVResult open() noexcept
    {
        if (::pipe2(m_ends, O_CLOEXEC) != 0) return lastError();
        for (int& end : m_ends) {
            if (end > STDERR_FILENO) continue;
            const int raised = ::fcntl(end, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
            if (raised < 0) return lastError();
            ::close(end);
            end = raised;
        }
        return S_OK;
    }

    int readEnd() const noexcept { return m_ends[0]; }
    int writeEnd() const noexcept { return m_ends[1]; }
    ORVHandle giveReadEnd() noexcept { return give(m_ends[0]); }
    ORVHandle giveWriteEnd() noexcept { return give(m_ends[1]); }

private:
    static void closeEnd(int end) noexcept
    {
        if (end >= 0) ::close(end);
    }

    static ORVHandle give(int& end) noexcept
    {
        const ORVHandle handle = fileHandleFromDescriptor(end);
        end = -1;
        return handle;
    }

    int m_ends[2] = {-1, -1};
};

/// What a program is started with, in the system's form.
class Launch {
public:
    ORVResult prepare(const char16_t* program, const char16_t* commandLine,
                      const char16_t* workingDirectory, const char16_t* const* environment) noexcept
    {
        const char16_t* const justProgram[] = {program, nullptr};
        CommandWords words;
        ORVResult result = commandLine != nullptr ? words.split(commandLine) : S_OK;
        if (result < 0) return result;
        const char16_t* const* const arguments = commandLine != nullptr ? words.get() : justProgram;
        if (arguments[0] == nullptr) return E_INVALIDARG;

        result = m_arguments.assign(arguments);
        if (result >= 0 && environment != nullptr) result = m_environment.assign(environment);
        if (result >= 0 && workingDirectory != nullptr) result = m_folder.assign(workingDirectory);
        if (result >= 0) result = setProgram(program, arguments[0]);
        return result;
    }

    ORVResult run(const Pipe& input, const Pipe& output, const Pipe& error,
                  pid_t* process) const noexcept
    {
        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        if (::posix_spawn_file_actions_init(&actions) != 0) return E_OUTOFMEMORY;
        int failure = ::posix_spawnattr_init(&attributes);
        if (failure == 0) {
            failure = addActions(&actions, input, output, error);
            if (failure == 0) failure = setSignals(&attributes);
            if (failure == 0) failure = spawn(actions, attributes, process);
            ::posix_spawnattr_destroy(&attributes);
        }
        ::posix_spawn_file_actions_destroy(&actions);
        return ORVResultFromNative(failure);
    }

private:
    ORVResult setProgram(const char16_t* program, const char16_t* firstWord) noexcept
    {
        m_isSearched = program == nullptr && !hasPath(firstWord);
        if (m_isSearched) return S_OK;
        NativePath path;
        const ORVResult result = path.assign(program != nullptr ? program : firstWord);
        if (result < 0) return result;

        // The child changes its folder before it looks for the program.
        const bool relative = path.get()[0] != '/' && path.get()[0] != 0;
        char folder[PATH_MAX] = "";
        if (relative && ::getcwd(folder, sizeof folder) == nullptr) return lastError();
        std::snprintf(m_program, sizeof m_program, "%s%s%s", folder, relative ? "/" : "",
                      path.get());
        return S_OK;
    }

    static bool hasPath(const char16_t* word) noexcept
    {
        if (hasDrive(word)) return true;
        while (*word != 0 && !isSeparator(*word)) ++word;
        return *word != 0;
    }

    int addActions(posix_spawn_file_actions_t* actions, const Pipe& input, const Pipe& output,
                   const Pipe& error) const noexcept
    {
        int failure = ::posix_spawn_file_actions_adddup2(actions, input.readEnd(), STDIN_FILENO);
        if (failure == 0) {
            failure = ::posix_spawn_file_actions_adddup2(actions, output.writeEnd(), STDOUT_FILENO);
        }
        if (failure == 0) {
            failure = ::posix_spawn_file_actions_adddup2(actions, error.writeEnd(), STDERR_FILENO);
        }
        if (failure == 0) {
            failure = ::posix_spawn_file_actions_addclosefrom_np(actions, STDERR_FILENO + 1);
        }
        if (failure == 0 && m_folder.get()[0] != 0) {
            failure = ::posix_spawn_file_actions_addchdir_np(actions, m_folder.get());
        }
        return failure;
    }

    static int setSignals(posix_spawnattr_t* attributes) noexcept
    {
        sigset_t blocked;
        sigset_t defaulted;
        ::sigemptyset(&blocked);
        ::sigemptyset(&defaulted);
        ::sigaddset(&defaulted, SIGPIPE);
        ::posix_spawnattr_setsigmask(attributes, &blocked);
        ::posix_spawnattr_setsigdefault(attributes, &defaulted);
        return ::posix_spawnattr_setflags(attributes,
                                          POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    int spawn(const posix_spawn_file_actions_t& actions, const posix_spawnattr_t& attributes,
              pid_t* process) const noexcept
    {
        char** const arguments = m_arguments.get();
        char** const variables = m_environment.get() != nullptr ? m_environment.get() : environ;
        return m_isSearched
                   ? ::posix_spawnp(process, arguments[0], &actions, &attributes, arguments,
                                    variables)
                   : ::posix_spawn(process, m_program, &actions, &attributes, arguments, variables);
    }

    NarrowList m_arguments;
    NarrowList m_environment; ///< empty for that of this process
    NativePath m_folder;      ///< empty for that of this process
    char m_program[2 * PATH_MAX] = "";
    bool m_isSearched = false;
};

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVProcessCreate(const char16_t* program, const char16_t* commandLine,
                           const char16_t* workingDirectory, const char16_t* const* environment,
                           std::uint32_t /*flags*/, ORVHandle* out,
                           ORVStandardHandles* standardHandles) noexcept
{
    if (standardHandles == nullptr) return E_POINTER;
    *standardHandles = {ORV_NO_HANDLE, ORV_NO_HANDLE, ORV_NO_HANDLE};
    reapDetached();

    ORVResult result = createRecord<ProcessRecord>(out);
    if (result < 0) return result;
    auto* const record = recordOf<ProcessRecord>(*out);

    Launch launch;
    Pipe input;
    Pipe output;
    Pipe error;
    result = launch.prepare(program, commandLine, workingDirectory, environment);
    for (Pipe* const pipe : {&input, &output, &error}) {
        if (result >= 0) result = pipe->open();
    }
    if (result >= 0) result = launch.run(input, output, error, &record->process);
    if (result < 0) {
        destroyRecord(record);
        *out = ORV_NO_HANDLE;
        return result;
    }
    *standardHandles = {input.giveWriteEnd(), output.giveReadEnd(), error.giveReadEnd()};
    return S_OK;
}

ORVResult ORVProcessJoin(ORVHandle process, std::int32_t* exitCode) noexcept
{
    auto* const record = recordOf<ProcessRecord>(process);
    if (record == nullptr) return invalidHandle;
    if (exitCode == nullptr) return E_POINTER;
    awaitEnd(record->process, 0, exitCode);
    destroyRecord(record);
    return S_OK;
}

ORVResult ORVProcessDetach(ORVHandle process) noexcept
{
    auto* const record = recordOf<ProcessRecord>(process);
    if (record == nullptr) return invalidHandle;
    {
        const RawGuard guard(s_detachedLock);
        record->next = s_detached;
        s_detached = record;
    }
    reapDetached();
    return S_OK;
}

ORVResult ORVProcessGetExitCode(ORVHandle process, std::int32_t* exitCode) noexcept
{
    auto* const record = recordOf<ProcessRecord>(process);
    if (record == nullptr) return invalidHandle;
    if (exitCode == nullptr) return E_POINTER;
    if (!awaitEnd(record->process, WNOHANG, exitCode)) return stillRunning;
    destroyRecord(record);
    return S_OK;
}

std::uint32_t ORVProcessGetID() noexcept
{
    return static_cast<std::uint32_t>(::getpid());
}
