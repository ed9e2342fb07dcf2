#include "orv/log/quark/QuarkProcessor.h"

#include "orv/Failure.h"
#include "orv/log/ILogEntry.h"
#include "orv/log/quark/ILogEntry.h"

namespace orv::log::quark {

namespace {

Reference<ILogEntry> binaryFace(const ::orv::log::ILogEntry* entry)
{
    void* face = nullptr;
    // Queries take counts, and counting is const.
    const Result result =
        const_cast<::orv::log::ILogEntry*>(entry)->QueryInterface(ILogEntry::IID, &face);
    if (failed(result)) throwResult(E_NOINTERFACE);
    return Reference<ILogEntry>::adopt(static_cast<ILogEntry*>(face));
}

} // namespace

QuarkProcessor::QuarkProcessor(::orv::log::quark::ILogProcessor* target) : m_target(target) {}

QuarkProcessor::~QuarkProcessor() noexcept(false) = default;

Reference<::orv::log::ILogProcessor>
QuarkProcessor::create(::orv::log::quark::ILogProcessor* target)
{
    if (target == nullptr) throwResult(E_POINTER);
    return Reference<::orv::log::ILogProcessor>(new QuarkProcessor(target));
}

void QuarkProcessor::process(const ::orv::log::ILogEntry* entry)
{
    const Reference<ILogEntry> face = binaryFace(entry);
    throwIfFailed(m_target->Process(face.get()));
}

} // namespace orv::log::quark
