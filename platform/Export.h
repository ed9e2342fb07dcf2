#pragma once

/// Marks what `liborvcore` offers to other libraries and programs.
#define ORVCORE_API __attribute__((visibility("default")))
