// A library for ExecTest, which also defines the symbol orvSampleNothing as 0.

#include "orv/Export.h"

extern "C" ORV_API int orvSampleTwice(int number)
{
    return 2 * number;
}
