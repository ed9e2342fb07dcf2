#pragma once

#include "tools/orv/Arguments.h"

#include "orv/Exception.h"
#include "orv/Reference.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"

/// \file
/// The bytes that a command reads and writes: -in and -out, else the standard streams.

namespace tool {

/// Runs `action`; a failure is told by `text`.
template <class Action>
auto named(const orv::String& text, Action action)
{
    try {
        return action();
    } catch (const orv::Exception& exception) {
        throw Failure{text, exception.getResult()};
    }
}

/// The file named by -in, else standard input.
orv::Reference<orv::io::InputStream> openInput(const Arguments& arguments);

/// The file named by -out, emptied, else standard output.
orv::Reference<orv::io::OutputStream> openOutput(const Arguments& arguments);

/// Throws UsageError where -in and -out are one file: opening the output empties it, which must
/// not happen to the input.
void refuseOneFileForBoth(const Arguments& arguments);

} // namespace tool
