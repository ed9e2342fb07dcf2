#pragma once

#include "compat/CORVCmdLineElement.h"

/// What a CORVCmdLineParser knows of an option before parsing; its values are the default ones.
class ORV_API COptionDefinition : public CORVCmdLineElement {
public:
    ~COptionDefinition() noexcept(false) override;

protected:
    COptionDefinition(const orv::String& name, std::int32_t valueCount);

private:
    friend class orv::util::internal::CommandLineCore<CORVCmdLineParser>;

    std::int32_t m_takes;
    bool m_hasDefaults = false;
};
