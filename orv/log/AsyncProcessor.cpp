#include "orv/log/AsyncProcessor.h"

#include "orv/Failure.h"
#include "orv/log/internal/AsyncProcessorImpl.h"

#include <exception>
#include <utility>

#include <cxxabi.h>

namespace orv::log {

AsyncProcessor::AsyncProcessor(Reference<AsyncProcessorImpl> impl) : m_impl(std::move(impl)) {}

AsyncProcessor::~AsyncProcessor() noexcept(false)
{
    try {
        m_impl->stop();
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled, which nobody may stop
    } catch (...) {
        if (std::uncaught_exceptions() == 0) throw;
    }
}

Reference<AsyncProcessor> AsyncProcessor::create(ILogProcessor* target, std::int32_t threadCount)
{
    if (target == nullptr) throwResult(E_POINTER);
    auto impl = makeReference<AsyncProcessorImpl>(target, threadCount);
    // Where a thread cannot be started, the destructor stops those before it.
    Reference<AsyncProcessor> processor(new AsyncProcessor(impl));
    impl->start();
    return processor;
}

void AsyncProcessor::process(const ILogEntry* entry)
{
    m_impl->process(entry);
}

} // namespace orv::log
