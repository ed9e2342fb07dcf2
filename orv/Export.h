#pragma once

/// Marks what `liborvcl` offers to its hosts.
#define ORV_API __attribute__((visibility("default")))
