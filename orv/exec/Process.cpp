#include "orv/exec/Process.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"

#include <utility>

namespace orv::exec {
namespace {

/// Our end of the child's standard output or error, closed with the stream and by nothing else.
class PipeInput : public io::FileInputStream {
public:
    explicit PipeInput(ORVHandle pipe) : FileInputStream(pipe, true) {}
    void close() override {}
};

/// Our end of the child's standard input.
class PipeOutput : public io::FileOutputStream {
public:
    explicit PipeOutput(ORVHandle pipe) : FileOutputStream(pipe, true) {}
    void close() override {}
    void end() { FileOutputStream::close(); }
};

/// The stream on `pipe`, which is made and becomes the owner of the pipe at the first call.
template <class Stream, class Base>
Reference<Base> streamOn(ORVHandle& pipe, Reference<Base>& stream)
{
    if (!stream) {
        stream = makeReference<Stream>(pipe);
        pipe = ORV_NO_HANDLE;
    }
    return stream;
}

} // namespace

Process::Process(const char16_t* program, const char16_t* commandLine,
                 const char16_t* workingDirectory, const char16_t* const* environment,
                 std::uint32_t flags)
{
    throwIfFailed(ORVProcessCreate(program, commandLine, workingDirectory, environment, flags,
                                   &m_handle, &m_pipes));
}

Process::~Process() noexcept(false)
{
    if (m_handle != ORV_NO_HANDLE) ORVProcessDetach(m_handle);
    for (const ORVHandle pipe : {m_pipes.error, m_pipes.output, m_pipes.input}) {
        if (pipe != ORV_NO_HANDLE) ORVFileClose(pipe);
    }
}

std::int32_t Process::join()
{
    checkJoinable();
    const Result result = ORVProcessJoin(m_handle, &m_exitCode);
    if (failed(result)) throw ResultException(result, u"process join failed");
    m_handle = ORV_NO_HANDLE;
    return m_exitCode;
}

bool Process::tryJoin()
{
    checkJoinable();
    if (failed(ORVProcessGetExitCode(m_handle, &m_exitCode))) return false;
    m_handle = ORV_NO_HANDLE;
    return true;
}

std::int32_t Process::getExitCode() const
{
    if (m_handle == ORV_NO_HANDLE) return m_exitCode;
    throw IllegalStateException(u"process has not been joined");
}

std::uint32_t Process::getID() const
{
    throwResult(E_NOT_AVAILABLE);
}

std::uint32_t Process::getCurrentID() noexcept
{
    return ORVProcessGetID();
}

Reference<io::InputStream> Process::getInputStream()
{
    return streamOn<PipeInput>(m_pipes.output, m_inputStream);
}

Reference<io::OutputStream> Process::getOutputStream()
{
    return streamOn<PipeOutput>(m_pipes.input, m_outputStream);
}

Reference<io::InputStream> Process::getErrorStream()
{
    return streamOn<PipeInput>(m_pipes.error, m_errorStream);
}

void Process::endOutput()
{
    static_cast<PipeOutput&>(*getOutputStream()).end();
}

void Process::checkJoinable() const
{
    if (m_handle == ORV_NO_HANDLE) throw IllegalStateException(u"process already joined");
}

} // namespace orv::exec
