#include "orv/crypto/MessageDigest.h"

namespace orv::crypto {

MessageDigest::~MessageDigest() noexcept(false) = default;

} // namespace orv::crypto
