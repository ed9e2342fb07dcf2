#include "orv/util/IniFileException.h"

namespace orv::util {

IniFileException::~IniFileException() noexcept(false) = default;

} // namespace orv::util
