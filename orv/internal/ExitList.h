#pragma once

namespace orv::internal {

/// A clean-up that the library's unload runs, the newest first. A constant-initialised static of
/// whoever builds something on first use:
///
///     constinit ExitNode releaseComparator{[] { ... }};
///     ...
///     atUnload(releaseComparator);
struct ExitNode {
    void (*cleanUp)();
    ExitNode* next = nullptr;
};

/// Adds `node`, which must not be in the list. Threads: any.
void atUnload(ExitNode& node) noexcept;

/// Runs and forgets the clean-ups, the newest first.
void runExitList();

} // namespace orv::internal
