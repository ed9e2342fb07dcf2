#include "orv/log/MultiProcessor.h"

#include "orv/Failure.h"
#include "orv/collections/internal/LinkedListCursor.h"
#include "orv/sync/Lock.h"

namespace orv::log {

MultiProcessor::MultiProcessor() : m_processors(makeReference<collections::quark::LinkedList>()) {}

MultiProcessor::~MultiProcessor() noexcept(false) = default;

Reference<MultiProcessor> MultiProcessor::create()
{
    return Reference<MultiProcessor>(new MultiProcessor);
}

void MultiProcessor::addProcessor(ILogProcessor* processor)
{
    if (processor == nullptr) throwResult(E_POINTER);
    m_processors->add(processor);
}

void MultiProcessor::process(const ILogEntry* entry)
{
    const sync::Lock lock(m_lock);
    collections::internal::LinkedListCursor walk(*m_processors);
    while (walk.hasNext()) static_cast<ILogProcessor*>(walk.next())->process(entry);
}

} // namespace orv::log
