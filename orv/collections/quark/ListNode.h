#pragma once

#include "orv/IORVUnknown.h"

namespace orv::collections::quark {

/// A place of a LinkedList's ring. Hosts meet it only inside ElementCursor.
struct ListNode {
    ListNode* next;
    ListNode* previous;
    IORVUnknown* element; ///< with a count, null in the sentinel
};

} // namespace orv::collections::quark
